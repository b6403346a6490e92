// Converting the text of a range by way of a module of the host.
#include "data/range_text.h"

#include "uxtree/host/services.h"

#include "frame/runtime_module.h"

namespace ux {
namespace {

using ConvertFunction = int(CStringUTF8* text);

ConvertFunction* load_converter() {
    void* const module = open_runtime_module(
        {UXGetHostServices().utilityModule, "UXTREE_HOST_UTILITY_MODULE", "libuxhostutil.so"});
    if (module == nullptr) return nullptr;
    auto* const convert = find_runtime_function<ConvertFunction>(
        module, "wbutil_range_string_convert_numeric_separator");
    if (convert == nullptr) close_runtime_module(module);
    return convert;
}

}  // namespace

void convert_numeric_separator(CStringUTF8& text) {
    static ConvertFunction* const convert = load_converter();
    if (convert != nullptr) convert(&text);
}

}  // namespace ux
