// Documents that keep the layout of their files.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"

namespace uxtest {

// The root of a document that is loaded for editing.
inline UXXmlWrapperBase edited_document(const std::string& bytes) {
    UXXmlWrapperBase root;
    EXPECT_EQ(UXLoadForEditingFromMemory(&root, bytes.data(), bytes.size()), 1)
        << UXGetLastLoadError() << "\n"
        << bytes;
    return root;
}

}  // namespace uxtest
