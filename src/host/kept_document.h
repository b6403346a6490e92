// What a document is written as that keeps bytes of its source.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/layout_source.h"

namespace uxhost {

// What is to be written: bytes of a text and new ones, piece by piece.
class KeptText {
public:
    void copy(std::size_t begin, std::size_t end) {
        if (begin == end) return;
        if (!pieces_.empty() && pieces_.back().fromSource && pieces_.back().end == begin) {
            pieces_.back().end = end;
        } else {
            pieces_.push_back({begin, end, true});
        }
    }
    void put(std::string_view bytes) {
        if (bytes.empty()) return;
        const std::size_t begin = made_.size();
        made_ += bytes;
        if (!pieces_.empty() && !pieces_.back().fromSource && pieces_.back().end == begin) {
            pieces_.back().end = made_.size();
        } else {
            pieces_.push_back({begin, made_.size(), false});
        }
    }
    // Is it nothing but this range of the source?
    bool is_copy(std::size_t begin, std::size_t end) const {
        return pieces_.size() == 1 && pieces_[0].fromSource && pieces_[0].begin == begin &&
               pieces_[0].end == end;
    }
    std::size_t size() const {
        std::size_t size = 0;
        for (const Piece& piece : pieces_) size += piece.end - piece.begin;
        return size;
    }
    // Calls take with one piece after the other.
    template <typename Take>
    void for_each(std::string_view source, Take&& take) const {
        for (const Piece& piece : pieces_) {
            const std::string_view from = piece.fromSource ? source : std::string_view(made_);
            take(from.substr(piece.begin, piece.end - piece.begin));
        }
    }

private:
    struct Piece {
        std::size_t begin;
        std::size_t end;
        bool fromSource;
    };
    std::vector<Piece> pieces_;
    std::string made_;
};

struct KeptDocument {
    SourceText source;  // with the encoding of what is written
    KeptText text;
    std::size_t idsWritten = 0;  // new or changed ones
    std::size_t idsLeftOut = 0;
    std::size_t commentsLeftOut = 0;  // and processing instructions

    bool is_unchanged() const { return text.is_copy(0, source.text.size()); }
    // The bytes of the file, piece by piece.
    void for_each_piece(const std::function<void(std::string_view)>& take) const;
};

}  // namespace uxhost
