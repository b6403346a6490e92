// Fixed helpers of the host: tokens, numbers, names and files. None depends on the locale.
#pragma once

#include <string_view>

#include "uxtree/host/array.h"
#include "uxtree/host/export.h"
#include "uxtree/host/string.h"

// Splits text at separator into tokens (emptied first) and yields their number. A quote character
// toggles quoting anywhere in a token and is removed; doubled inside a quoted stretch it is one
// quote; an unclosed one runs to the end; 0 means no quoting. Empty tokens are kept, and an empty
// or null text has none. With a blank as separator any run of space, TAB, CR and LF separates and
// there are no empty tokens.
UXHOST_API int UXGetTokens(CWBOStringArray& tokens, const char* text, char separator, char quote);

// Splits text at every occurrence of separator, without quoting; empty pieces are kept. Yields the
// number of pieces, 0 for an empty or null text.
UXHOST_API int UXSeparateByString(CWBOStringArray& pieces, const char* text, const char* separator);

// Joins the tokens with separator between them; yields their number.
UXHOST_API int UXJoinTokens(CStringUTF8& out, const CWBOStringArray& tokens, const char* separator);

// One decimal number with optional sign, fraction and exponent, in white space; no hexadecimal,
// infinity or NaN. False, with value untouched, for anything else. The integer form truncates
// toward zero and wraps 2147483648 to 4294967295 (flag words).
UXHOST_API bool UXParseDouble(std::string_view text, double& value);
UXHOST_API bool UXParseInt(std::string_view text, int& value);

// The number at the start of text, as atoi reads it: white space, a sign, digits; 0 when there are
// none. Numbers beyond 32 bits become the nearest one.
UXHOST_API int UXLeadingInt(const char* text);

// The first of %.15g, %.16g and %.17g that reads back equal. A value that is not finite has no
// decimal text and is written as the missing value.
UXHOST_API void UXFormatDouble(double value, CStringUTF8& out);

// The double that stands for an absent value.
UXHOST_API double UXMissingValue();

// Is the text a name that an element or attribute may have? A colon is an ordinary character.
UXHOST_API bool UXIsName(std::string_view text);

// 0 when path is a regular file that can be read, else -1.
UXHOST_API int UXAccess(const char* path, int mode);
