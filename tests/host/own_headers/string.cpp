// The long members of the own string.
#include "uxtree/host/string.h"

#include <cstdlib>

#include <locale.h>

int CStringUTF8::CompareNoCase(const char* text) const {
    CStringUTF8 mine(*this);
    CStringUTF8 other(text);
    mine.MakeLower();
    other.MakeLower();
    return mine.Compare(other);
}
int CStringUTF8::Replace(const char* oldText, const char* newText) {
    const std::string wanted(View(oldText));
    const std::string replacement(View(newText));
    int count = 0;
    if (wanted.empty()) return 0;
    for (std::size_t at = text_.find(wanted); at != std::string::npos; ++count) {
        text_.replace(at, wanted.size(), replacement);
        at = text_.find(wanted, at + replacement.size());
    }
    return count;
}
void CStringUTF8::FormatV(const char* format, va_list args) {
    static const locale_t neutral = newlocale(LC_ALL_MASK, "C", locale_t());
    const locale_t previous = uselocale(neutral);  // a decimal point in every locale
    char* made = nullptr;
    const int length = format == nullptr ? -1 : vasprintf(&made, format, args);
    uselocale(previous);
    text_.assign(length < 0 ? "" : made, Size(length));
    std::free(length < 0 ? nullptr : made);
}
void CStringUTF8::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}
void CStringUTF8::AppendFormat(const char* format, ...) {
    CStringUTF8 addition;
    va_list args;
    va_start(args, format);
    addition.FormatV(format, args);
    va_end(args);
    *this += addition;
}
