// Trees, strings, arrays and errors for C, and for every language that can call C.
//
// The script entry points (uxtree/uxtree_c.h) take handles of nodes, strings and script arrays. Here
// they are made, filled, read and given back. All of it works on the embedded host.
//
// Ownership: who calls ux_node_new, ux_node_copy, ux_load, ux_load_memory, ux_string_new,
// ux_array_new, ux_select_compile or ux_selected_new gives the result back to the matching
// ux_..._free, once. A handle keeps the whole tree that its node belongs to; freeing a handle never
// removes the node. Texts and numbers that a function yields stay with the object they come from,
// and are valid until it changes or is freed.
//
// Null is allowed for every pointer and makes a call fail unless its comment says more. So does a
// handle whose node was removed, a handle that refers to nothing, and a text that is not UTF-8.
// Nothing is changed then, and ux_last_error says why. A tree and its handles belong to one thread
// at a time.
#ifndef UXTREE_KIT_C_H
#define UXTREE_KIT_C_H

#include "uxtree/kit/export.h"

// What the elements of an array are.
enum { UX_ARRAY_INTS = 1, UX_ARRAY_DOUBLES = 2, UX_ARRAY_BOOLS = 3, UX_ARRAY_STRINGS = 4 };

// What a selection found. The document holds the root element.
enum {
    UX_SELECTED_DOCUMENT = 0,
    UX_SELECTED_ELEMENT = 1,
    UX_SELECTED_ATTRIBUTE = 2,
    UX_SELECTED_TEXT = 3
};

#ifdef __cplusplus
#include <cstddef>

#include "uxtree/host/node.h"
#include "uxtree/host/script_object.h"
#include "uxtree/host/string.h"
#include "uxtree/kit/select.h"
extern "C" {
#else
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

typedef uint32_t DWORD;
typedef struct UXXmlWrapperBase UXXmlWrapperBase;  // a handle of a tree node
typedef struct UXScriptObject UXScriptObject;      // an array of the script language
typedef struct CStringUTF8 CStringUTF8;            // a string of the host
typedef struct UXSelection UXSelection;            // a compiled path
typedef struct UXSelected UXSelected;              // what a path found
#endif

// --- nodes

// A handle to the root of a new tree, which is one element with this tag. Null for a tag makes a
// handle that refers to nothing yet, for functions to put their results in. Null when the tag is no
// element name, or there is no memory.
UXKIT_API UXXmlWrapperBase* ux_node_new(UX_NULL_COUNTS const char* tag) UX_RETURNS(handle);
// A handle to a deep copy of the node, which is the root of a tree of its own. Null for a handle
// without a node.
UXKIT_API UXXmlWrapperBase* ux_node_copy(UX_IN const UXXmlWrapperBase* node) UX_RETURNS(handle);
// Gives a handle back. Null is passed over.
UXKIT_API void ux_node_free(UX_OPT UX_IN UXXmlWrapperBase* node);
// 1 when the handle refers to a node; 0 for null, for a handle that refers to nothing, and once the
// node was removed.
UXKIT_API int ux_node_valid(UX_OPT UX_MAY_BE_INVALID UX_IN const UXXmlWrapperBase* node)
    UX_RETURNS(yes, no = 0);
// 1 when both handles refer to the same node.
UXKIT_API int ux_node_same(UX_IN const UXXmlWrapperBase* a, UX_IN const UXXmlWrapperBase* b)
    UX_RETURNS(yes, no = 0);
// How to load, added up: 0, or UX_LOAD_LAYOUT to keep what the tree does not hold (comments, white
// space, quotes, encoding; costs the size of the file and four bytes for each element).
enum { UX_LOAD_LAYOUT = 1 };
// How to save, added up. 0 writes a document that was loaded with UX_LOAD_LAYOUT, or a copy of one,
// with the bytes it was read from, except where it was changed, in its own encoding; any other tree
// in UTF-8 without white space of its own, with the IDs of all nodes. With a layout, nodes that got
// their ID since are written without it unless the file had IDs; the last two flags say otherwise.
enum {
    UX_SAVE_PLAIN = 1,     // as a tree without a layout
    UX_SAVE_INDENTED = 2,  // elements on lines of their own, two blanks a level, without comments
    UX_SAVE_IDS = 4,       // with the IDs of all nodes
    UX_SAVE_NO_IDS = 8     // without IDs that the file does not have; refused for a plain form
};
// Loads an XML file and yields a handle to its root. Null when the file cannot be read or is no
// well-formed XML, and for unknown flags: ux_last_error tells why and where.
UXKIT_API UXXmlWrapperBase* ux_load(UX_FILE const char* path, unsigned int flags) UX_RETURNS(handle)
    UX_BLOCKS;
// The same for the bytes of a document in memory, which need not end in NUL.
UXKIT_API UXXmlWrapperBase* ux_load_memory(UX_IN const char* bytes, size_t size, unsigned int flags)
    UX_RETURNS(handle);
// Writes the node as the root of an XML file. 1, or 0 with the old file whole: for unknown flags and
// those that exclude each other, for a text that XML or a name that the file's encoding cannot hold,
// and when the file cannot be written.
UXKIT_API int ux_save(UX_IN const UXXmlWrapperBase* node, UX_FILE const char* path,
                      unsigned int flags) UX_RETURNS(done, not_done = 0) UX_BLOCKS;
// The bytes that ux_save would write. 1, or 0 with out as it was.
UXKIT_API int ux_save_memory(UX_IN const UXXmlWrapperBase* node, unsigned int flags,
                             UX_OUT CStringUTF8* out) UX_RETURNS(done, not_done = 0);
// Finds the node at the end of a path of tags below node, "a/b": each step takes the first child
// with the tag. An empty path leads to node itself. 1 with the node in out, which may be node;
// otherwise 0, and out is as it was.
UXKIT_API int ux_node_child(UX_IN const UXXmlWrapperBase* node, UX_IN const char* path,
                            UX_OUT UXXmlWrapperBase* out) UX_RETURNS(done, not_found = 0);
// The child at a position from 0. 1 with the child in out; otherwise 0, and out is as it was.
UXKIT_API int ux_node_child_at(UX_IN const UXXmlWrapperBase* node, int index,
                               UX_OUT UXXmlWrapperBase* out) UX_RETURNS(done, not_found = 0);
// The parent. 1 with the parent in out; 0 for a root, and out is as it was.
UXKIT_API int ux_node_parent(UX_IN const UXXmlWrapperBase* node, UX_OUT UXXmlWrapperBase* out)
    UX_RETURNS(done, not_found = 0);
// The number of children; -1 for a handle without a node.
UXKIT_API int ux_node_count(UX_IN const UXXmlWrapperBase* node) UX_RETURNS(count, unusable = -1);
// The tag, the text value ("" when there is none), and the node as XML without a declaration. 1, or
// 0 with out as it was.
UXKIT_API int ux_node_tag(UX_IN const UXXmlWrapperBase* node, UX_OUT CStringUTF8* out)
    UX_RETURNS(done, unusable = 0);
UXKIT_API int ux_node_value(UX_IN const UXXmlWrapperBase* node, UX_OUT CStringUTF8* out)
    UX_RETURNS(done, unusable = 0);
UXKIT_API int ux_node_xml(UX_IN const UXXmlWrapperBase* node, UX_OUT CStringUTF8* out)
    UX_RETURNS(done, unusable = 0);
// The attribute "Label", or the tag when that is missing or empty. 1, or 0 with out as it was.
UXKIT_API int ux_node_label(UX_IN const UXXmlWrapperBase* node, UX_OUT CStringUTF8* out)
    UX_RETURNS(done, unusable = 0);
// Writes the text value; null or "" clears it. The children stay. 1, or 0 with the value as it was
// for a text that XML cannot hold.
UXKIT_API int ux_node_set_value(UX_EDITS UXXmlWrapperBase* node, UX_OPT const char* value)
    UX_RETURNS(done, not_done = 0);
// The text of an attribute. 1; 0 with out as it was when the node does not have it.
UXKIT_API int ux_node_attr(UX_IN const UXXmlWrapperBase* node, UX_IN const char* name,
                           UX_OUT CStringUTF8* out) UX_RETURNS(done, not_found = 0);
// Writes an attribute; null removes it. 1, also when there was nothing to remove; 0 for a name that
// is no attribute name and for a text that XML cannot hold.
UXKIT_API int ux_node_set_attr(UX_EDITS UXXmlWrapperBase* node, UX_IN const char* name,
                               UX_NULL_COUNTS const char* value) UX_RETURNS(done, not_done = 0);
// Appends an element to the children. 1 with it in out, which may be null; 0 when the tag is no
// element name.
UXKIT_API int ux_node_add(UX_EDITS UXXmlWrapperBase* node, UX_IN const char* tag,
                          UX_OPT UX_OUT UXXmlWrapperBase* out) UX_RETURNS(done, not_done = 0);
// Removes the node with everything below it from its tree. Every handle into it refers to nothing
// afterwards; the handles are still to be freed.
UXKIT_API int ux_node_remove(UX_EDITS UXXmlWrapperBase* node) UX_RETURNS(done, unusable = 0);

// --- strings

// A string with this text; null for a text is "". Null when the text is not UTF-8.
UXKIT_API CStringUTF8* ux_string_new(UX_OPT const char* text) UX_RETURNS(handle);
// Gives a string back. Null is passed over.
UXKIT_API void ux_string_free(UX_OPT UX_IN CStringUTF8* string);
// The text; "" for null.
UXKIT_API const char* ux_string_text(UX_OPT UX_IN const CStringUTF8* string) UX_RETURNS(borrowed);
// The number of bytes; -1 for null.
UXKIT_API int ux_string_length(UX_IN const CStringUTF8* string) UX_RETURNS(count, unusable = -1);

// --- arrays

// An empty array of UX_ARRAY_INTS, UX_ARRAY_DOUBLES, UX_ARRAY_BOOLS or UX_ARRAY_STRINGS. Null for
// any other kind.
UXKIT_API UXScriptObject* ux_array_new(int kind) UX_RETURNS(handle);
// Gives an array back. Null is passed over.
UXKIT_API void ux_array_free(UX_OPT UX_ANY UXScriptObject* array);
// The number of elements; -1 for null and for an object that is no array.
UXKIT_API int ux_array_size(UX_ANY UXScriptObject* array) UX_RETURNS(count, unusable = -1);
// The elements, ux_array_size of them. Null for an array of another kind, and for an empty one.
UXKIT_API const int* ux_array_ints(UX_INTS UXScriptObject* array) UX_RETURNS(borrowed);
UXKIT_API const double* ux_array_doubles(UX_DOUBLES UXScriptObject* array) UX_RETURNS(borrowed);
UXKIT_API const bool* ux_array_bools(UX_BOOLS UXScriptObject* array) UX_RETURNS(borrowed);
// The text at a position from 0. Null for an array of another kind, and for a position outside it.
UXKIT_API const char* ux_array_string(UX_STRINGS UXScriptObject* array, int index)
    UX_RETURNS(borrowed);
// Fills the array with count values; what it held is gone. values may be null when count is 0. 1,
// or 0 with the array as it was for another kind, a count below 0, and one that memory cannot hold.
UXKIT_API int ux_array_set_ints(UX_OUT UX_INTS UXScriptObject* array,
                                UX_OPT UX_IN const int* values, int count)
    UX_RETURNS(done, not_done = 0);
UXKIT_API int ux_array_set_doubles(UX_OUT UX_DOUBLES UXScriptObject* array,
                                   UX_OPT UX_IN const double* values, int count)
    UX_RETURNS(done, not_done = 0);
UXKIT_API int ux_array_set_bools(UX_OUT UX_BOOLS UXScriptObject* array,
                                 UX_OPT UX_IN const bool* values, int count)
    UX_RETURNS(done, not_done = 0);
// Appends a text. 1, or 0 with the array as it was.
UXKIT_API int ux_array_add_string(UX_APPENDS UX_STRINGS UXScriptObject* array,
                                  UX_IN const char* text) UX_RETURNS(done, not_done = 0);

// --- selections

// Compiles a path in the short form of XPath 1.0, such as "//b[@a='v']/c"; docs/selection.md has
// the table of all there is. It runs on any number of trees, in several threads at once if they
// like. Null when it is not understood: ux_last_error tells why, and ux_last_error_column where, as
// a byte of the path from 1.
UXKIT_API UXSelection* ux_select_compile(UX_IN const char* path) UX_RETURNS(handle);
// Gives a compiled path back. Null is passed over; results of it stay.
UXKIT_API void ux_select_free(UX_OPT UX_IN UXSelection* selection);
// A place for what a path finds, which is nothing yet.
UXKIT_API UXSelected* ux_selected_new(void) UX_RETURNS(handle);
// Gives it back. Null is passed over.
UXKIT_API void ux_selected_free(UX_OPT UX_IN UXSelected* found);
// Selects from a node: a path without "/" in front starts there, one with "/" at the document that
// the node is in. found receives what there is, in the order of the document and nothing twice, in
// place of what it held. It refers to the tree, and is to be read before the tree changes.
//
//   mixed  receives the element whose text decides the answer and stands beside child elements in
//          an order that the tree does not hold, when that is why there is none
//
// Returns how many there are.
UXKIT_API int ux_select_run(UX_IN const UXSelection* selection, UX_IN const UXXmlWrapperBase* node,
                            UX_OUT UXSelected* found, UX_OPT UX_OUT UXXmlWrapperBase* mixed)
    UX_RETURNS(count, unusable = -1, mixed_text = -2);
// How many there are.
UXKIT_API int ux_selected_count(UX_IN const UXSelected* found) UX_RETURNS(count, unusable = -1);
// What stands at a position from 0: UX_SELECTED_ELEMENT and so on. -1 for a position outside.
UXKIT_API int ux_selected_kind(UX_IN const UXSelected* found, int index)
    UX_RETURNS(count, unusable = -1);
// The element at a position; of an attribute or a text the element that has it; of the document its
// root. 1 with it in out; otherwise 0, and out is as it was.
UXKIT_API int ux_selected_node(UX_IN const UXSelected* found, int index,
                               UX_OUT UXXmlWrapperBase* out) UX_RETURNS(done, unusable = 0);
// The name of an attribute, "" of anything else. 1, or 0 with out as it was.
UXKIT_API int ux_selected_attr(UX_IN const UXSelected* found, int index, UX_OUT CStringUTF8* out)
    UX_RETURNS(done, unusable = 0);
// The text: the value of an attribute, a text, and of an element all texts in it joined. 1, or with
// out as it was 0, and mixed_text where it depends on text beside child elements.
UXKIT_API int ux_selected_text(UX_IN const UXSelected* found, int index, UX_OUT CStringUTF8* out)
    UX_RETURNS(done, unusable = 0, mixed_text = -2);

// --- errors

// Why the last call of a ux_ function of this thread failed; "" when it did not. For a load it tells
// the file and the place. The text stays until the next such call of this thread. This function and
// the two below leave the reason alone.
UXKIT_API const char* ux_last_error(void) UX_RETURNS(borrowed);
// Line and column, from 1, of what a load or ux_select_compile refused; 0 without a position.
UXKIT_API int ux_last_error_line(void) UX_RETURNS(stored);
UXKIT_API int ux_last_error_column(void) UX_RETURNS(stored);
// What a code means that a function of the libraries has returned: its name, as in "duplicate_id",
// and one sentence. function is the name of an entry point or of a function of this header. Null
// for a function that nobody knows, and for a code that it does not return. Both texts live as long
// as the library is loaded.
UXKIT_API const char* ux_code_name(UX_IN const char* function, int code) UX_RETURNS(borrowed);
UXKIT_API const char* ux_describe(UX_IN const char* function, int code) UX_RETURNS(borrowed);

// What the values of a tree have against being collected or set, in parts: the same that
// uxtree_get_values_with_ids and uxtree_set_values_by_ids tell as a text. setting 0 looks as
// collecting does, which names the last broken rule or else the first missing identifier, and goes
// on; any other value looks as setting does, which the first broken rule stops.
//
//   idAttribute      "DataID" when null or empty
//   inheritedRepeat  the RepeatID under which tree itself stands; 0 for none
//   node             receives the node at fault
//   identifier       receives its identifier as far as it was combined, -1 for none
//   repeat           receives the RepeatID that the node inherits
//
// Returns 0 when there is nothing, and the outputs are as they were; else what is wrong.
UXKIT_API int ux_values_problem(UX_IN const UXXmlWrapperBase* tree, int setting,
                                UX_OPT const char* idAttribute, int inheritedRepeat,
                                UX_OPT UX_OUT UXXmlWrapperBase* node, UX_OPT UX_OUT int* identifier,
                                UX_OPT UX_OUT int* repeat)
    UX_RETURNS(number, no_problem = 0, unusable = -1, repeat_overlaps = 1, repeat_out_of_range = 2,
               too_large = 3, node_overlaps = 4, node_out_of_range = 5, missing_id = 6);

#ifdef __cplusplus
}
#endif
#endif
