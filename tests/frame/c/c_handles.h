/* What the host gives to a C program: trees, strings and script arrays. */
#ifndef UXTREE_TESTS_C_HANDLES_H
#define UXTREE_TESTS_C_HANDLES_H

#include "uxtree/uxtree_c.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A handle to the root of a document parsed from well-formed XML, or an invalid one for null. */
UXXmlWrapperBase* handle_new(const char* xml);
int handle_is_valid(const UXXmlWrapperBase* handle);
/* The serialised node; valid until the next call. */
const char* handle_text(const UXXmlWrapperBase* handle);
void handle_free(UXXmlWrapperBase* handle);

CStringUTF8* string_new(const char* text);
const char* string_text(const CStringUTF8* string);
void string_free(CStringUTF8* string);

UXScriptObject* ints_new(int count, const int* values);
int ints_count(UXScriptObject* ints);
int ints_at(UXScriptObject* ints, int index);
UXScriptObject* texts_new(int count, const char* const* values);
int texts_count(UXScriptObject* texts);
const char* texts_at(UXScriptObject* texts, int index);
void script_object_free(UXScriptObject* object);

#ifdef __cplusplus
}
#endif
#endif
