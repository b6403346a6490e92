// Collecting and setting in the short form that the tests of values use.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "uxtree/data/values.h"

#include "data/values_detail.h"
#include "support/test_tree.h"

namespace uxtest {

// Identifiers with their values, in order.
using Entries = std::vector<std::pair<int, std::string>>;

inline Entries entries(const CArray<int, int>& ids, const CWBOStringArray& values) {
    Entries out;
    for (int i = 0; i < ids.GetSize(); ++i) {
        out.emplace_back(ids[i], static_cast<const char*>(values[i]));
    }
    return out;
}

inline Entries collected(const UXXmlWrapperBase& tree, const ux::CollectOptions& options = {}) {
    CArray<int, int> ids;
    CWBOStringArray values;
    ux::ValueRecord record;
    record.values = &values;
    const int count = ux::_tree_get_values_by_ids(tree, ids, record, options);
    EXPECT_EQ(count, ids.GetSize());
    EXPECT_EQ(ids.GetSize(), values.GetSize());
    return entries(ids, values);
}
inline Entries collected(const char* xml, const ux::CollectOptions& options = {}) {
    return collected(TestTree(xml), options);
}

inline int set_values(const UXXmlWrapperBase& tree, const Entries& given,
                      const ux::SetOptions& options = {}) {
    CArray<int, int> ids;
    CWBOStringArray values;
    for (const auto& [id, value] : given) {
        ids.Add(id);
        values.Add(CStringUTF8(value.c_str()));
    }
    ux::ValueRecord record;
    record.values = &values;
    return ux::_tree_set_values_by_ids(tree, ids, record, options);
}

// The tree after setting, as text.
inline std::string after_setting(const char* xml, const Entries& given,
                                 const ux::SetOptions& options = {}) {
    TestTree tree(xml);
    set_values(tree, given, options);
    return tree.text();
}

}  // namespace uxtest
