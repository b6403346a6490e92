// Documents as people write them, made at random, and random edits of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>

#include "uxtree/host/host.h"

#include "xml/file_encoding.h"

namespace uxtest {

// An encoding of files, with its name in declarations.
struct FileForm {
    const char* name;
    ux::xml::FileEncoding encoding;
};
inline constexpr FileForm kUtf8Form = {"UTF-8", ux::xml::FileEncoding::kUtf8};

struct EncodedDocument {
    std::string text;  // in UTF-8, a byte order mark included
    std::string bytes;
    ux::xml::FileEncoding encoding = ux::xml::FileEncoding::kUtf8;
};
// With the byte order mark that UTF-16 needs. Characters that the encoding lacks become others.
EncodedDocument encoded(std::string text, const FileForm& form);

class LayoutModel {
public:
    explicit LayoutModel(std::uint32_t seed) : draw_(std::mt19937(seed)) {}
    // Each choice takes one number of the source.
    explicit LayoutModel(std::function<std::uint32_t()> draw) : draw_(std::move(draw)) {}

    // Well-formed XML with comments, instructions, sections, references, odd white space, mixed
    // content; indented or not.
    std::string document(const FileForm& form = kUtf8Form);
    // The same in UTF-8 or another encoding, with a byte order mark or a declaration.
    EncodedDocument encoded_document();
    FileForm form();
    // Changes the tree below root, somewhere, in one of the ways that nodes offer.
    void edit(UXXmlWrapperBase& root) { edit(root, below(kKinds)); }
    // In such a way that every comment stays.
    void edit_gently(UXXmlWrapperBase& root);

    // A text for a value, most of them with something to escape.
    std::string value();
    int below(int limit) { return static_cast<int>(draw_() % static_cast<std::uint32_t>(limit)); }
    bool chance(int percent) { return below(100) < percent; }

private:
    static constexpr int kKinds = 13;

    void edit(UXXmlWrapperBase& root, int kind);
    void put_element(int level);
    void put_content(int level);
    void put_attributes();
    void put_misc(int level);
    std::string text();
    std::string indent(int level) const;
    UXXmlWrapperBase some_node(const UXXmlWrapperBase& root);
    void add(UXXmlWrapperBase& node);
    void move(UXXmlWrapperBase& root, UXXmlWrapperBase& node);
    void arrange(UXXmlWrapperBase& node);

    template <typename List>
    void shuffle(List& list);

    std::function<std::uint32_t()> draw_;
    std::string out_;
    std::string lineEnd_ = "\n";
    std::string step_ = "  ";
    bool lines_ = true;
    int budget_ = 0;
    int number_ = 0;
};

}  // namespace uxtest
