// What a reader tells, as a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/large_memory.h"
#include "host/document.h"
#include "host/load_options.h"
#include "xml/scan.h"
#include "xml/start_tag.h"

namespace uxhost {

// Fills a new document. The text of an element is made of pieces; a piece is what stands between
// two tags.
class TreeSink {
public:
    // Of the options it keeps to the limits of nesting and elements, and to where texts are kept.
    explicit TreeSink(const LoadOptions& options);

    std::unique_ptr<DocumentHolder> take_document() { return std::move(holder_); }
    // Of the document and of text that has no place in it yet.
    std::size_t memory_bytes() const { return document_->memory_bytes() + text_.capacity(); }

    void restart();
    const std::string& refusal() const { return refusal_; }
    ux::xml::SinkName resolve(const ux::xml::ReadName& name);
    const void* slot_of(const ux::xml::ReadName& name) const {
        return document_->slot_of_name(name);
    }
    bool start(const ux::xml::StartTag& tag) {
        if (open_.size() >= mostOpen_ || ++elements_ > mostElements_) return refuse_more();
        Open* const parent = open_.empty() ? nullptr : &open_.back();
        if (parent != nullptr) finish_piece(*parent);
        Element* const above = parent == nullptr ? nullptr : parent->element;
        Element* const last = parent == nullptr ? nullptr : parent->last;
        Element& element = document_->append_loaded(above, last, tag.name.id);
        if (parent != nullptr) parent->last = &element;
        pieceIsKept_ = false;
        if (tag.count != 0) add_attributes(element, tag);
        open_.push_back({&element, nullptr, text_.size(), text_.size()});
        return true;
    }
    void end() {
        const Open& closed = open_.back();
        if (closed.last != nullptr) {
            finish_piece(open_.back());
            set_text(*closed.element, std::string_view(text_).substr(closed.textStart));
        } else if (text_.size() == closed.textStart) {
            if (!pending_.empty()) set_text(*closed.element, pending_);
        } else {
            flush();
            set_text(*closed.element, std::string_view(text_).substr(closed.textStart));
        }
        pending_ = {};
        pieceIsKept_ = false;
        text_.resize(closed.textStart);
        open_.pop_back();
        if (!open_.empty()) open_.back().pieceStart = text_.size();
    }
    void text(const char* begin, const char* end) {
        if (!pending_.empty()) flush();
        pending_ = {begin, static_cast<std::size_t>(end - begin)};
    }
    void keep() { pieceIsKept_ = true; }
    void flush() {
        text_.append(pending_);
        pending_ = {};
    }

private:
    struct Open {
        Element* element;
        Element* last;           // its last child so far
        std::size_t textStart;   // of the element's text in text_
        std::size_t pieceStart;  // of the piece that is being read
    };

    // A piece of white space alone stands between elements for the reader's eye: it is dropped,
    // unless it was written as a reference or as CDATA.
    void finish_piece(Open& parent) {
        if (text_.size() == parent.pieceStart && !pieceIsKept_ &&
            (pending_.empty() || ux::xml::is_all_blank(pending_.data(), pending_.size()))) {
            pending_ = {};
            return;
        }
        finish_kept_piece(parent);
    }
    void finish_kept_piece(Open& parent);
    bool refuse_more();
    void add_attributes(Element& element, const ux::xml::StartTag& tag);
    void add_one_by_one(Element& element, const ux::xml::StartTag& tag);
    void set_text(Element& element, std::string_view text);

    std::unique_ptr<DocumentHolder> holder_;
    Document* document_ = nullptr;
    std::size_t mostOpen_;
    std::uint64_t mostElements_;
    std::uint64_t mostInMemory_;
    std::uint64_t elements_ = 0;
    std::uint32_t idName_ = 0;  // the number of the reserved attribute's name, if it was met
    std::vector<Open, ux::LargeMemory<Open>> open_;
    std::string text_;          // of the open elements, one behind the other
    std::string_view pending_;  // follows text_; where the reader has it
    bool pieceIsKept_ = false;
    std::string refusal_;
};

}  // namespace uxhost
