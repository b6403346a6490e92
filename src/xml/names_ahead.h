// The names that a reader will meet next.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "xml/read_name.h"
#include "xml/scan.h"

namespace ux::xml {

// A table of many names is larger than the caches: each look into it waits for memory, unless that
// was asked for some names ago.
class NamesAhead {
public:
    // The window moved and begins there.
    void forget(char* begin) {
        taken_ = found_ = 0;
        behind_ = begin;
        takesAttributes_ = false;
    }
    // The name at `at`, in a tag of a window that ends at `end`; null when it is none that was seen.
    // Asks the sink for where it will look for it and for the next ones as they are found: some of
    // them may stand in values or comments and never be looked for.
    template <class Sink>
    const ReadName* find(char* at, const char* end, Sink& sink) {
        if (at[-1] != '<') takesAttributes_ = true;
        while (taken_ < found_ && place(taken_).text.data() < at) ++taken_;
        behind_ = std::max(behind_, at);
        while (found_ - taken_ < kMost && behind_ < end) look(sink);
        return taken_ < found_ && place(taken_).text.data() == at ? &place(taken_++) : nullptr;
    }

private:
    static constexpr std::size_t kMost = 32;

    ReadName& place(std::size_t number) { return names_[number % kMost]; }
    template <class Sink>
    void look(Sink& sink) {
        char* const at = behind_;
        char* const behind = skip_name_parts(at);
        if (is_kind(*at, kNameStart) && is_name(at[-1], *behind)) {
            ReadName& name = place(found_++);
            name = ReadName::at(at, static_cast<std::size_t>(behind - at));
            __builtin_prefetch(sink.slot_of(name));
        }
        behind_ = 1 + (takesAttributes_ ? find_name_opening<' '>(behind)
                                        : find_name_opening<'\0'>(behind));
    }
    // Of an element or an attribute, between two such bytes.
    static bool is_name(char before, char behind) {
        if (before != '<') return behind == '=';
        return behind == '>' || behind == '/' || is_blank(behind);
    }

    std::array<ReadName, kMost> names_;
    std::size_t found_ = 0;
    std::size_t taken_ = 0;
    char* behind_ = nullptr;        // all names in front of that were looked at
    bool takesAttributes_ = false;  // only once one was asked for: most repeat themselves
};

}  // namespace ux::xml
