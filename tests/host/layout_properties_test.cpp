// What must hold of every document that is edited and saved with its layout, tried at random.
#include <string>

#include <gtest/gtest.h>

#include "uxtree/host/embedded.h"
#include "uxtree/host/host.h"

#include "support/layout_model.h"
#include "support/test_tree.h"

namespace {

using uxtest::LayoutModel;
using uxtest::to_text;

constexpr std::uint32_t kDocuments = 3000;

UXXmlWrapperBase edited_document(const std::string& bytes) {
    UXXmlWrapperBase root;
    EXPECT_EQ(UXLoadForEditingFromMemory(&root, bytes.data(), bytes.size()), 1)
        << UXGetLastLoadError() << "\n"
        << bytes;
    return root;
}

std::string kept_bytes(const UXXmlWrapperBase& root, UXSaveIds ids = UXSaveIds::kWrite) {
    CStringUTF8 out;
    UXSaveOptions options;
    options.ids = ids;
    EXPECT_EQ(UXSaveToMemory(&root, &out, options, nullptr), 1) << UXGetLastSaveError();
    return {static_cast<const char*>(out), static_cast<std::size_t>(out.GetLength())};
}

TEST(UXSaveToMemory, GivesAnUnchangedDocumentItsBytes) {
    for (std::uint32_t seed = 0; seed < kDocuments; ++seed) {
        const std::string bytes = LayoutModel(seed).document();
        ASSERT_EQ(kept_bytes(edited_document(bytes)), bytes) << "seed " << seed;
    }
}

TEST(UXSaveToMemory, WhatIsSavedReadsAsTheEditedTree) {
    for (std::uint32_t seed = 0; seed < kDocuments; ++seed) {
        LayoutModel model(seed);
        const std::string before = model.document();
        UXXmlWrapperBase root = edited_document(before);
        for (int i = model.below(6); i >= 0; --i) model.edit(root);

        const std::string after = kept_bytes(root);

        const UXXmlWrapperBase again = edited_document(after);
        ASSERT_EQ(to_text(again), to_text(root)) << "seed " << seed << "\n"
                                                 << before << "\n--- became\n"
                                                 << after;
        ASSERT_EQ(kept_bytes(again), after) << "seed " << seed;
        ASSERT_EQ(kept_bytes(root), after) << "seed " << seed;
    }
}

TEST(UXSaveToMemory, SavesTheCloneOfADocumentAsTheDocument) {
    for (std::uint32_t seed = 0; seed < kDocuments / 10; ++seed) {
        LayoutModel model(seed);
        UXXmlWrapperBase root = edited_document(model.document());
        for (int i = model.below(4); i > 0; --i) model.edit(root);
        UXXmlWrapperBase clone;
        root.Clone(&clone, 0);

        ASSERT_EQ(kept_bytes(clone), kept_bytes(root)) << "seed " << seed;
    }
}

}  // namespace
