// The iterators of range trees, which the library has as classes.
#include "uxtree/analysis/ranges.h"

#include "node.h"
#include "parts.h"
#include "support.h"

namespace uxpy {
namespace {

template <typename Iterator>
auto get_next(Iterator& iterator) {
    UXXmlWrapperBase found;
    const int result = iterator.Get(found);
    return py::make_tuple(result, owned(from_node(std::move(found))));
}

template <typename Iterator>
std::unique_ptr<Iterator> make(const py::object& node) {
    return std::make_unique<Iterator>(handle_of(node.ptr(), "node"));
}

}  // namespace

void add_iterators(py::module_& raw) {
    py::class_<VCRangeTreeIterator> ranges(
        raw, "VCRangeTreeIterator",
        "Goes over the first sub-ranges of the ranges of a range tree.");
    define_init(ranges, make<VCRangeTreeIterator>, "rangeTree");
    ranges.def("IsHierarchical", &VCRangeTreeIterator::IsHierarchical)
        .def("Get", &get_next<VCRangeTreeIterator>,
             "Yields 1 and the node, or 0 and None at the end.");
    py::class_<VCSubRangeTreeIterator> subRanges(raw, "VCSubRangeTreeIterator",
                                                 "Goes over the sub-ranges of a range.");
    define_init(subRanges, make<VCSubRangeTreeIterator>, "firstSubRange");
    subRanges.def("Get", &get_next<VCSubRangeTreeIterator>,
                  "Yields 1 and the node, or 0 and None at the end and at a separator.");
}

}  // namespace uxpy
