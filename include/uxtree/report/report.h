// Reference strings and input-data tables of reports.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

extern "C" {
UXTREE_API int report_get_escaped_data_string(CStringUTF8* out, int index, int dotted,
                                              char typeChar, char suffix, int typeFlags,
                                              char separator, int tailNumber);
UXTREE_API int report_get_escaped_label_data_string(CStringUTF8* out, int index, int labelRow,
                                                    char suffix, int tailNumber, int dotted,
                                                    char separator, const char* labelName,
                                                    char typeChar);
UXTREE_API int report_get_set_data_string(UXScriptObject* out, int index, int reserved,
                                          UXScriptObject* labelRows, const char* labelName,
                                          unsigned char set);
UXTREE_API int report_get_escaped_data_string_ex(
    UXScriptObject* out, int index, UXScriptObject* labelRows, int suffix, int dataDotted = 0,
    int dataTypeChar = 0, int typeFlags = 0, int dataSeparator = 0, int dataTailNumber = 0,
    int labelTailNumber = 0, int labelDotted = 0, int labelSeparator = 'E',
    const char* labelName = nullptr, int labelTypeChar = 0);
UXTREE_API int report_set_escaped_data_string_type(CStringUTF8* text, char type);
UXTREE_API int report_make_input_data_table_var_row(
    UXXmlWrapperBase* row, UXXmlWrapperBase* table, int set, int variable, int dependent,
    int dataIndex, int suffix, int tailNumber, int paramSet, int variablesPerSet, int weightMethod,
    UXXmlWrapperBase* paramTree, int weightColumn, const char* rowLabel, int paramIndex);
UXTREE_API int report_update_input_data_table(UXXmlWrapperBase* table, UXXmlWrapperBase* paramTree,
                                              int variablesPerSet);
}
