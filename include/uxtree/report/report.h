// Reference strings and input-data tables of reports.
//
// A reference string names a data column or one of its label rows. It begins with "?$OP:":
//
//   data         ?$OP:<type>=<.><index>  or, with a separator character,
//                ?$OP:<type>=<separator><index>
//   label row    ?$OP:<separator><row>=<prefix><index>  or
//                ?$OP:<separator>"<name>"=<prefix><index>
//
// Both end with the suffix character, when there is one, and then the tail number, when that is
// above 0. A character of 0 is none.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
// Writes a data string. typeChar 0 is "A". typeFlags, when above 0: low 16 bits 1 append " G" to
// the type, 2 append the high 16 bits in parentheses. 1, or 0 for a null out.
UXTREE_API int report_get_escaped_data_string(UX_OUT CStringUTF8* out, int index, int dotted,
                                              char typeChar, char suffix, int typeFlags,
                                              char separator, int tailNumber)
    UX_RETURNS(done, unusable = 0);
// Writes a label string. labelRow -9 with a labelName writes the name, any other row its number.
// The prefix is typeChar, or "." when dotted. 1, or 0 for a null out.
UXTREE_API int report_get_escaped_label_data_string(UX_OUT CStringUTF8* out, int index,
                                                    int labelRow, char suffix, int tailNumber,
                                                    int dotted, char separator,
                                                    UX_OPT const char* labelName, char typeChar)
    UX_RETURNS(done, unusable = 0);
// Appends strings for index + 1 to a string array: a data string (type "F") without labelRows;
// otherwise one string per row in order, a data string for the rows -5 and -1 and a label string
// (separator "E") for every other. The suffix is "X" for set 0, "Y" for set 1 and so on. Always 1.
UXTREE_API int report_get_set_data_string(UX_APPENDS UX_STRINGS UXScriptObject* out, int index,
                                          int reserved, UX_OPT UX_INTS UXScriptObject* labelRows,
                                          UX_OPT const char* labelName, unsigned char set)
    UX_RETURNS(says_nothing);
// The same for index as it stands, with the parts of both kinds of strings given. 1, or 0 when out
// is no string array.
UXTREE_API int report_get_escaped_data_string_ex(
    UX_APPENDS UX_STRINGS UXScriptObject* out, int index, UX_OPT UX_INTS UXScriptObject* labelRows,
    int suffix, int dataDotted = 0, int dataTypeChar = 0, int typeFlags = 0, int dataSeparator = 0,
    int dataTailNumber = 0, int labelTailNumber = 0, int labelDotted = 0, int labelSeparator = 'E',
    UX_OPT const char* labelName = nullptr, int labelTypeChar = 0) UX_RETURNS(done, unusable = 0);
// Replaces everything between the marker, which must stand first, and the first "=" by type; type 0
// only deletes. 1, or 0 with text untouched for a text without marker, letter or "=".
UXTREE_API int report_set_escaped_data_string_type(UX_INOUT CStringUTF8* text, char type)
    UX_RETURNS(done, not_found = 0);
// Finds or creates the row of one variable in an input-data table, "R" and its number, and its
// cells "C1" to "C8": role, data and range references, weight type, weight data, parameters a, b,
// c. Cells that the weight method does not use are not made, and none is removed. Labels are
// localized.
//
//   row               receives the row; may be null
//   set, variable     zero-based; the row's number is variablesPerSet * set + variable + 1
//   dataIndex         one-based index of the data, for the references
//   suffix, tailNumber  end the references
//   paramTree         its nodes in depth-first order hold three parameters per variable; may be
//                     null. The triple is that of paramIndex or, when that is negative, of
//                     variablesPerSet * paramSet + variable. A missing node leaves the cell's
//                     value.
//   weightColumn      zero-based, for the reference of the weight data
//   rowLabel          English; null or empty for none
//
// 1, or 0 for a bad table.
UXTREE_API int report_make_input_data_table_var_row(
    UX_OPT UX_OUT UXXmlWrapperBase* row, UX_EDITS UXXmlWrapperBase* table, int set, int variable,
    int dependent, int dataIndex, int suffix, int tailNumber, int paramSet, int variablesPerSet,
    int weightMethod, UX_OPT UX_MAY_BE_INVALID UX_IN UXXmlWrapperBase* paramTree, int weightColumn,
    UX_OPT const char* rowLabel, int paramIndex) UX_RETURNS(done, unusable = 0);
// Labels the cells of every variable's row again and copies the existing parameter cells again,
// each row from its own set and variable. Creates and removes nothing. The number of rows; -1 for a
// bad table or parameter tree.
UXTREE_API int report_update_input_data_table(UX_EDITS UXXmlWrapperBase* table,
                                              UX_IN UXXmlWrapperBase* paramTree,
                                              int variablesPerSet) UX_RETURNS(count, unusable = -1);
}
