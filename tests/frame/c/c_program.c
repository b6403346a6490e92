/* A plain C program that loads the library at run time and calls script entry points. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "c_handles.h"

static int failures = 0;

static void expect(bool holds, const char* what, int line) {
    if (holds) return;
    ++failures;
    fprintf(stderr, "line %d: %s\n", line, what);
}
#define EXPECT(condition) expect((condition), #condition, __LINE__)

static void* library;

static void* symbol(const char* name) {
    void* found = dlsym(library, name);
    if (found == NULL) {
        ++failures;
        fprintf(stderr, "%s\n", dlerror());
    }
    return found;
}
/* Declares a pointer `call` to an entry point, with the type that the header gives it. */
#define LOAD(call, entry)              \
    __typeof__(&entry) call;           \
    *(void**)(&call) = symbol(#entry); \
    if (call == NULL) return

static void finds_nodes(void) {
    UXXmlWrapperBase* tree = handle_new("<r><a DataID=\"7\"/><b><c Label=\"L\"/></b></r>");
    UXXmlWrapperBase* found = handle_new(NULL);
    CStringUTF8* path = string_new("");
    LOAD(by_tag, uxtree_get_node_by_tagname);
    LOAD(by_id, uxtree_get_node_by_id);
    LOAD(level, uxtree_get_level);

    EXPECT(by_tag(tree, found, "c", true, true, false) == 1);
    EXPECT(strcmp(handle_text(found), "<c Label=\"L\"></c>") == 0);
    EXPECT(level(path, found, NULL, 0) == 2);
    EXPECT(strcmp(string_text(path), "r.b.c") == 0);
    EXPECT(by_id(tree, found, 7, false) == 1);
    EXPECT(by_id(tree, found, 8, false) == 0);
    EXPECT(by_id(NULL, found, 7, false) == 0);

    string_free(path);
    handle_free(found);
    handle_free(tree);
}

static void edits_attributes(void) {
    UXXmlWrapperBase* tree = handle_new("<r n=\"5\"><a/></r>");
    LOAD(modify, uxtree_modify_attribute);
    LOAD(set_all, uxtree_set_attribute_to_all_nodes);

    EXPECT(modify(tree, "n", 2U, 1U));
    set_all(tree, "x", "v", true, false);
    EXPECT(strcmp(handle_text(tree), "<r n=\"6\"><a x=\"v\"></a></r>") == 0);

    handle_free(tree);
}

static void carries_values(void) {
    UXXmlWrapperBase* tree = handle_new("<r><a DataID=\"1\">x</a><b DataID=\"2\">y</b></r>");
    UXScriptObject* ids = ints_new(0, NULL);
    UXScriptObject* values = texts_new(0, NULL);
    const int one[] = {2};
    const char* const text[] = {"z"};
    UXScriptObject* newIds = ints_new(1, one);
    UXScriptObject* newValues = texts_new(1, text);
    LOAD(collect, uxtree_get_values_with_ids);
    LOAD(set, uxtree_set_values_by_ids);

    EXPECT(collect(tree, ids, values, 1, 0, 0, NULL, 0, NULL) == 2);
    EXPECT(ints_count(ids) == 2 && ints_at(ids, 0) == 1 && ints_at(ids, 1) == 2);
    EXPECT(texts_count(values) == 2 && strcmp(texts_at(values, 1), "y") == 0);
    EXPECT(set(tree, newIds, newValues, 0, NULL, 0, NULL, NULL) == 1);
    EXPECT(strstr(handle_text(tree), ">z</b>") != NULL);
    EXPECT(collect(tree, values, ids, 1, 0, 0, NULL, 0, NULL) == -1); /* types swapped */

    script_object_free(newValues);
    script_object_free(newIds);
    script_object_free(values);
    script_object_free(ids);
    handle_free(tree);
}

static void fills_records(void) {
    UXXmlWrapperBase* tree = handle_new(
        "<r><Details><N>3</N><Bandwidth>4</Bandwidth>"
        "<Gamtheta>0.5</Gamtheta></Details></r>");
    tagHistogramStatsResult details;
    LOAD(read, uxtree_stats_result_get_set_details);

    memset(&details, 0, sizeof details);
    EXPECT(read(tree, &details, 1) == 1);
    EXPECT(details.N == 3 && details.Bandwidth == 4);
    EXPECT(details.Gamtheta > 0.4 && details.Gamtheta < 0.6);

    handle_free(tree);
}

static void makes_report_strings(void) {
    CStringUTF8* text = string_new("");
    LOAD(data_string, report_get_escaped_data_string);
    LOAD(set_id, uxtree_make_one_set_ID);

    EXPECT(data_string(text, 3, 0, 0, 0, 0, 0, 0) == 1);
    EXPECT(strcmp(string_text(text), "?$OP:A=3") == 0);
    EXPECT(set_id(5, 1) == 536936453);

    string_free(text);
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s LIBRARY\n", argv[0]);
        return 2;
    }
    library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 2;
    }
    finds_nodes();
    edits_attributes();
    carries_values();
    fills_records();
    makes_report_strings();
    if (failures == 0) puts("all entry points answered as expected");
    return failures == 0 ? 0 : 1;
}
