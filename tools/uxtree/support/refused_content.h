// What is said of content that the host refused.
#pragma once

#include <string>
#include <string_view>

#include "uxtree/host/embedded.h"

#include "support/failure.h"

namespace uxtool {

// What bytes that are no UTF-8 probably mean.
class EncodingGuess {
public:
    void take(std::string_view bytes);
    // "" when all of it is UTF-8.
    std::string hint();

private:
    std::size_t look_at(std::string_view bytes);

    std::string cut_;  // the end of what was taken, where a character may be cut
    bool isUtf8_ = true;
    bool isWindows_ = false;
};

// Takes what was refused, block by block, and says why this thread's last load failed: where, with
// the place, and what helps. A short part of the content is held.
class RefusedContent {
public:
    // False when no more is needed.
    bool take(std::string_view block);
    // Throws one, too, for what is no XML at all.
    Failure failure(const std::string& name);

private:
    void take_line(std::string_view block);

    UXFileError error_ = UXGetLastLoadFailure();
    bool asksForEncoding_ =
        std::string_view(error_.message).find("invalid token") != std::string_view::npos;
    EncodingGuess encoding_;
    std::string start_;
    long long toSkip_ = error_.line - 1;  // lines in front of the wrong one
    std::string line_;                    // the wrong one, without what stands far before the place
    long long column_ = error_.column;    // in what is left of it
    bool hasLine_ = false;
};

}  // namespace uxtool
