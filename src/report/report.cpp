// Reference strings of reports: made, and given another type.
#include "uxtree/report/report.h"

#include "base/ascii.h"
#include "data/labels_detail.h"
#include "frame/guards.h"
#include "frame/results.h"
#include "frame/script_args.h"
#include "frame/wrapping.h"

using namespace ux;

namespace {

constexpr char kDefaultType = 'A';
constexpr char kLabelSeparator = 'E';

constexpr int kNamedRow = -9;
constexpr int kNoRow = -1;
constexpr int kNoOtherRow = -5;

// The low 16 bits of the type flags choose what follows the type; the high 16 bits are a number.
constexpr unsigned kKindMask = 0xFFFF;
constexpr unsigned kNumberShift = 16;

struct Tail {
    char suffix = 0;
    int number = 0;
};
struct DataForm {
    bool dotted = false;
    char typeChar = 0;
    int typeFlags = 0;
    char separator = 0;
    int tailNumber = 0;
};
struct LabelForm {
    int tailNumber = 0;
    bool dotted = false;
    char separator = kLabelSeparator;
    CStringUTF8 rowName = {};  // its own copy: the caller's may be a text of the output
    char typeChar = 0;
};

void append_char(CStringUTF8& text, char c) {
    if (c != 0) text.AppendChar(c);
}

void append_tail(CStringUTF8& text, const Tail& tail) {
    if (tail.suffix == 0) return;  // Intended: a number without suffix prints nothing
    text.AppendChar(tail.suffix);
    if (tail.number > 0) text.AppendFormat("%d", tail.number);
}

void append_type_flags(CStringUTF8& text, int typeFlags) {
    if (typeFlags <= 0) return;
    const unsigned flags = static_cast<unsigned>(typeFlags);
    const unsigned kind = flags & kKindMask;
    if (kind == 1) text.Append(" G");
    if (kind == 2) text.AppendFormat(" (%u)", flags >> kNumberShift);
}

CStringUTF8 data_string(int index, const DataForm& form, char suffix) {
    CStringUTF8 text = kExpressionMarker;
    text.AppendChar(form.typeChar != 0 ? form.typeChar : kDefaultType);
    append_type_flags(text, form.typeFlags);
    text.AppendChar('=');
    // Intended: a separator takes the dot's place.
    if (form.separator == 0 && form.dotted) text.AppendChar('.');
    append_char(text, form.separator);
    text.AppendFormat("%d", index);
    append_tail(text, {suffix, form.tailNumber});
    return text;
}

CStringUTF8 label_string(int index, int row, const LabelForm& form, char suffix) {
    CStringUTF8 text = kExpressionMarker;
    append_char(text, form.separator);
    if (row == kNamedRow && !form.rowName.IsEmpty()) {
        text.AppendFormat("\"%s\"", static_cast<const char*>(form.rowName));
    } else {
        text.AppendFormat("%d", row);
    }
    text.AppendChar('=');
    if (form.typeChar == 0 && form.dotted) text.AppendChar('.');
    append_char(text, form.typeChar);
    text.AppendFormat("%d", index);
    append_tail(text, {suffix, form.tailNumber});
    return text;
}

// One data string without rows; otherwise one string per row, so that an empty list of rows
// appends nothing. An object that is no list of rows appends nothing either.
void append_strings(CWBOStringArray& out, int index, UXScriptObject* rowsObject, char suffix,
                    const DataForm& data, const LabelForm& label) {
    const CArray<int, int>* rows = int_vector(rowsObject);
    if (refused(rowsObject, rows)) return;
    if (rows == nullptr) {
        out.Add(data_string(index, data, suffix));
        return;
    }
    for (int i = 0; i < rows->GetSize(); ++i) {
        const int row = rows->GetAt(i);
        const bool isData = row == kNoRow || row == kNoOtherRow;
        out.Add(isData ? data_string(index, data, suffix)
                       : label_string(index, row, label, suffix));
    }
}

int retype(CStringUTF8& text, char type) {
    if (text.Find(kExpressionMarker) < 0) return kFail;
    // Intended: the type is expected behind a marker at the very start, wherever it was found.
    if (text.GetLength() <= kExpressionMarkerLength) return kFail;
    if (!is_letter(text[kExpressionMarkerLength])) return kFail;
    const int end = text.Find('=', kExpressionMarkerLength);
    if (end < 0) return kFail;
    text.Delete(kExpressionMarkerLength, end - kExpressionMarkerLength);
    if (type != 0) text.Insert(kExpressionMarkerLength, type);
    return kOk;
}

char as_char(int value) {
    return static_cast<char>(static_cast<unsigned char>(value));
}

}  // namespace

extern "C" {

int report_get_escaped_data_string(CStringUTF8* out, int index, int dotted, char typeChar,
                                   char suffix, int typeFlags, char separator, int tailNumber) {
    return at_boundary(kFail, [&] {
        if (out == nullptr) return kFail;
        *out =
            data_string(index, {dotted != 0, typeChar, typeFlags, separator, tailNumber}, suffix);
        return kOk;
    });
}

int report_get_escaped_label_data_string(CStringUTF8* out, int index, int labelRow, char suffix,
                                         int tailNumber, int dotted, char separator,
                                         const char* labelName, char typeChar) {
    return at_boundary(kFail, [&] {
        if (out == nullptr) return kFail;
        *out = label_string(index, labelRow,
                            {tailNumber, dotted != 0, separator, labelName, typeChar}, suffix);
        return kOk;
    });
}

int report_get_set_data_string(UXScriptObject* out, int index, int /*reserved*/,
                               UXScriptObject* labelRows, const char* labelName,
                               unsigned char set) {
    return at_boundary(kOk, [&] {
        CWBOStringArray* texts = string_array(out);
        if (texts == nullptr) return kOk;  // Intended: callers never ask whether it worked
        DataForm data;
        data.typeChar = 'F';
        LabelForm label;
        label.rowName = labelName;
        append_strings(*texts, wrapping_sum(index, 1), labelRows, as_char('X' + set), data, label);
        return kOk;
    });
}

int report_get_escaped_data_string_ex(UXScriptObject* out, int index, UXScriptObject* labelRows,
                                      int suffix, int dataDotted, int dataTypeChar, int typeFlags,
                                      int dataSeparator, int dataTailNumber, int labelTailNumber,
                                      int labelDotted, int labelSeparator, const char* labelName,
                                      int labelTypeChar) {
    return at_boundary(kFail, [&] {
        CWBOStringArray* texts = string_array(out);
        if (texts == nullptr) return kFail;
        const DataForm data{dataDotted != 0, as_char(dataTypeChar), typeFlags,
                            as_char(dataSeparator), dataTailNumber};
        const LabelForm label{labelTailNumber, labelDotted != 0, as_char(labelSeparator), labelName,
                              as_char(labelTypeChar)};
        append_strings(*texts, index, labelRows, as_char(suffix), data, label);
        return kOk;
    });
}

int report_set_escaped_data_string_type(CStringUTF8* text, char type) {
    return at_boundary(kFail, [&] { return text == nullptr ? kFail : retype(*text, type); });
}

}  // extern "C"
