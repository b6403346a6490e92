// Attributes, values and node paths of import trees.
#pragma once

#include "uxtree/frame/export.h"
#include "uxtree/host/host.h"

UXTREE_API int vctree_XDE_XML_get_attributes(CWBOStringArray* names, CWBOStringArray* values,
                                             UXXmlWrapperBase* node, DWORD filter);
UXTREE_API int vctree_XDE_treenode_path_array_to_string(CStringUTF8* text,
                                                        const CWBOStringArray* path, bool escape);
UXTREE_API int vctree_XDE_treenode_path_string_to_array(CWBOStringArray* path, const char* text,
                                                        bool escape);
UXTREE_API int VCTreeXDETreenodeOnePathAsArrayToString(CStringUTF8& text,
                                                       const CWBOStringArray* path);
UXTREE_API int vctree_get_XDE_treenode_string_for_path_in_tree(CStringUTF8* name,
                                                               UXXmlWrapperBase* node);
UXTREE_API int vctree_find_XDE_treenode_from_path_in_tree(UXXmlWrapperBase* found,
                                                          UXXmlWrapperBase* tree,
                                                          CWBOStringArray* path, int start,
                                                          int byTagOnly, CWBOStringArray* rest,
                                                          int allowSlice);
UXTREE_API int VCTreeXDEConvertTreeValToString(CStringUTF8& out, UXXmlWrapperBase* node);
UXTREE_API int VCTreeXDEDatNavPrepareStandardSourceTree(UXXmlWrapperBase& tree,
                                                        CWBOStringArray* paths, DWORD flags);
extern "C" {
UXTREE_API int uxtree_XDE_get_attributes(UXScriptObject* names, UXScriptObject* values,
                                         UXXmlWrapperBase* node, DWORD filter);
UXTREE_API int uxtree_XDE_treenode_path_array_to_string(CStringUTF8* text, UXScriptObject* path,
                                                        bool escape);
UXTREE_API int uxtree_XDE_treenode_path_string_to_array(UXScriptObject* path, const char* text,
                                                        bool escape);
UXTREE_API int uxtree_XDE_treenode_one_path_as_array_to_string(CStringUTF8* text,
                                                               UXScriptObject* path);
UXTREE_API int uxtree_get_XDE_treenode_string_for_path_in_tree(CStringUTF8* name,
                                                               UXXmlWrapperBase* node);
UXTREE_API int uxtree_find_XDE_treenode_from_path_in_tree(UXXmlWrapperBase* found,
                                                          UXXmlWrapperBase* tree,
                                                          UXScriptObject* path, int start,
                                                          int byTagOnly, UXScriptObject* rest,
                                                          int allowSlice);
UXTREE_API int uxtree_XDE_convert_tree_val_to_string(CStringUTF8* out, UXXmlWrapperBase* node);
UXTREE_API int uxtree_XDE_convert_whole_tree_val_to_string(CStringUTF8* out,
                                                           UXXmlWrapperBase* node);
UXTREE_API int uxtree_XDE_DatNav_prepare_standard_source_tree(UXXmlWrapperBase* tree,
                                                              UXScriptObject* paths, DWORD flags);
UXTREE_API int uxtree_save_XDE_array_info(UXXmlWrapperBase* node, int rows, int cols);
UXTREE_API int uxtree_set_XDE_file_info_data_id(UXXmlWrapperBase* node, int dataId);
}
