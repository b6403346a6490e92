// The identifiers of repeated branches and nodes, read and written as attributes.
#include "marks/ids.h"

#include "frame/node_values.h"
#include "frame/results.h"
#include "marks/names.h"

namespace ux {
namespace {

int read_marker(const UXXmlWrapperBase& node, const char* name, int lowest, int& out) {
    out = int_attribute_of(node, name, -1);
    return out >= lowest && out <= kLargestRepeat ? kOk : kFail;
}

int write_marker(UXXmlWrapperBase& node, const char* name, int id) {
    return id >= 1 ? node.SetPropertyValue(name, id) : node.RemoveProperty(name);
}

}  // namespace

int read_repeat_id(const UXXmlWrapperBase& node, int& out) {
    return read_marker(node, kRepeatId, 0, out);
}

int write_repeat_id(UXXmlWrapperBase& node, int id) {
    return write_marker(node, kRepeatId, id);
}

int read_repeat_node_id(const UXXmlWrapperBase& node, int& out) {
    return read_marker(node, kRepeatNodeId, 1, out);
}

int write_repeat_node_id(UXXmlWrapperBase& node, int id) {
    return write_marker(node, kRepeatNodeId, id);
}

}  // namespace ux
