// Documents that are loaded for editing: unchanged they are saved byte for byte, and what is saved
// after edits reads back as the edited tree. The first byte says how many bytes choose edits, then
// these come, then the document.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/host/embedded.h"
#include "uxtree/host/node.h"

#include "support/layout_model.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

std::string text_of(const CStringUTF8& text) {
    return {static_cast<const char*>(text), static_cast<std::size_t>(text.GetLength())};
}

std::string xml_of(const UXXmlWrapperBase& node) {
    CStringUTF8 text;
    require(node.GetString(text, 0) != 0);
    return text_of(text);
}

UXSaveOptions options_of(UXSaveForm form) {
    UXSaveOptions options;
    options.form = form;
    options.ids = UXSaveIds::kWrite;
    return options;
}

bool save(const UXXmlWrapperBase& root, UXSaveForm form, std::string& bytes) {
    CStringUTF8 out;
    if (UXSaveToMemory(&root, &out, options_of(form), nullptr) == 0) {
        require(!UXGetLastSaveError().IsEmpty());
        return false;
    }
    bytes = text_of(out);
    return true;
}

// Texts that no file can hold, names that an encoding lacks, and what a document type declares may
// stand in the way of a save; nothing else may.
bool may_be_refused(std::string_view document, bool oddTexts) {
    const auto has = [&](std::string_view part) {
        return document.find(part) != std::string_view::npos;
    };
    const bool plain = std::all_of(document.begin(), document.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x80 && c != '\0';
    });
    return oddTexts || !plain || has("<!DOCTYPE") || has("encoding") || has("_ux_id");
}

void check_runs(const UXXmlWrapperBase& root) {
    const UXTextOrder order(root);
    require(order.IsKnown());
    std::vector<UXTextRun> runs;
    UXXmlWrapperBase node = root;
    do {
        CStringUTF8 scratch;
        std::string_view value;
        node.NodeValueView(value, scratch);
        if (!order.Runs(node, runs)) continue;
        std::size_t length = 0;
        int before = -1;
        for (const UXTextRun& run : runs) {
            require(run.length > 0 && run.childrenBefore > before &&
                    run.childrenBefore <= node.GetNodeCount());
            before = run.childrenBefore;
            length += run.length;
        }
        require(length == value.size());
    } while (node.NextBelow(root, nullptr, &node) != 0);
}

// Copies of branches within themselves grow without end.
bool is_large(const UXXmlWrapperBase& root) {
    constexpr int kMostNodes = 1000;
    int count = 0;
    UXXmlWrapperBase node = root;
    while (node.NextBelow(root, nullptr, &node) != 0) {
        if (++count > kMostNodes) return true;
    }
    return false;
}

class Edits {
public:
    Edits(std::string_view choices, std::string_view document)
        : choices_(choices), document_(document), model_([this] { return next(); }) {}

    // Do texts of the input itself become values?
    bool oddTexts = false;

    void run(UXXmlWrapperBase& root) {
        constexpr int kMostEdits = 40;
        for (int i = 0; i < kMostEdits && at_ < choices_.size() && !is_large(root); ++i) {
            if (model_.chance(80)) {
                model_.edit(root);
            } else {
                write_piece(root);
            }
        }
    }

private:
    std::uint32_t next() {
        return at_ < choices_.size() ? static_cast<unsigned char>(choices_[at_++]) : 0;
    }
    void write_piece(UXXmlWrapperBase& root) {
        oddTexts = true;
        const std::size_t from = std::min<std::size_t>(next(), document_.size());
        const std::string piece(document_.substr(from, next() % 12));
        if (model_.chance(50)) {
            root.SetString(piece.c_str());
        } else {
            root.SetPropertyValue("k", CStringUTF8(piece.c_str()));
        }
    }

    std::string_view choices_;
    std::string_view document_;
    std::size_t at_ = 0;
    uxtest::LayoutModel model_;
};

void check_saved(const UXXmlWrapperBase& root, UXSaveForm form, bool mayBeRefused) {
    std::string saved;
    if (!save(root, form, saved)) {
        require(mayBeRefused);
        return;
    }
    std::string again;
    require(save(root, form, again) && again == saved);
    UXXmlWrapperBase read;
    require(UXLoadForEditingFromMemory(&read, saved.data(), saved.size()) != 0);
    require(xml_of(read) == xml_of(root));
    require(save(read, UXSaveForm::kKeepLayout, again) && again == saved);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t count = std::min<std::size_t>(data[0], size - 1);
    const std::string_view choices = input.substr(1, count);
    const std::string_view document = input.substr(1 + count);
    UXXmlWrapperBase plain;
    UXXmlWrapperBase root;
    const bool isRead = plain.LoadFromMemory(document.data(), document.size()) != 0;
    require((UXLoadForEditingFromMemory(&root, document.data(), document.size()) != 0) == isRead);
    if (!isRead) return 0;
    require(xml_of(root) == xml_of(plain));
    std::string saved;
    require(save(root, UXSaveForm::kKeepLayout, saved) && saved == document);
    check_runs(root);

    Edits edits(choices, document);
    edits.run(root);
    const bool mayBeRefused = may_be_refused(document, edits.oddTexts);
    check_saved(root, UXSaveForm::kKeepLayout, mayBeRefused);
    check_saved(root, UXSaveForm::kIndented, mayBeRefused);
    check_saved(root, UXSaveForm::kPlain, mayBeRefused);
    check_runs(root);
    return 0;
}
