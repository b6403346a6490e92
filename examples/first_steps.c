/* First steps in C: load a tree, collect its values, change one, save, and keep a theme.
 *
 *   cc first_steps.c $(pkg-config --cflags --libs uxtree_c) -o first_steps
 *   ./first_steps dialog.xml result.xml theme.xml
 */
#include <stdio.h>
#include <string.h>

#include <uxtree/uxtree_c.h>

/* Why the last call failed, with the place in a file that could not be read. */
static int complain(const char* what) {
    fprintf(stderr, "%s: %s\n", what, ux_last_error());
    return 1;
}

/* The same for an entry point, whose result says why. */
static int explain(const char* function, int code) {
    fprintf(stderr, "%s: %s (%s)\n", function, ux_describe(function, code),
            ux_code_name(function, code));
    return 1;
}

static int collect(UXXmlWrapperBase* tree, UXScriptObject* ids, UXScriptObject* values) {
    return uxtree_get_values_with_ids(tree, ids, values, 1, 0, 0, NULL, 0, NULL);
}

/* Writes one value under an identifier. */
static int set_value(UXXmlWrapperBase* tree, int id, const char* value) {
    UXScriptObject* ids = ux_array_new(UX_ARRAY_INTS);
    UXScriptObject* values = ux_array_new(UX_ARRAY_STRINGS);
    int code = -1;
    if (ux_array_set_ints(ids, &id, 1) == 1 && ux_array_add_string(values, value) == 1) {
        code = uxtree_set_values_by_ids(tree, ids, values, 0, NULL, 0, NULL, NULL);
    }
    ux_array_free(values);
    ux_array_free(ids);
    return code;
}

/* The text of the node at the end of a path. */
static void print_value(const UXXmlWrapperBase* tree, const char* path) {
    UXXmlWrapperBase* node = ux_node_new(NULL);
    CStringUTF8* text = ux_string_new(NULL);
    if (ux_node_child(tree, path, node) == 1 && ux_node_value(node, text) == 1) {
        printf("%s = %s\n", path, ux_string_text(text));
    } else {
        complain(path);
    }
    ux_string_free(text);
    ux_node_free(node);
}

static int work(UXXmlWrapperBase* tree, const char* result, const char* theme) {
    UXScriptObject* ids = ux_array_new(UX_ARRAY_INTS);
    UXScriptObject* values = ux_array_new(UX_ARRAY_STRINGS);
    int code = collect(tree, ids, values);
    int failed = 1;
    if (code < 0) {
        explain("uxtree_get_values_with_ids", code);
    } else if (uxtree_tree_save_values_with_ids(theme, ids, values, "before", NULL) != 1) {
        fprintf(stderr, "%s: cannot be written\n", theme);
    } else {
        printf("%d values, the first is %d: %s\n", code, ux_array_ints(ids)[0],
               ux_array_string(values, 0));
        code = set_value(tree, 33, "12");
        print_value(tree, "Find/LocalPoints");
        failed = code != 1 ? explain("uxtree_set_values_by_ids", code)
                           : ux_save(tree, result, 0) != 1 ? complain(result) : 0;
    }
    ux_array_free(values);
    ux_array_free(ids);
    return failed;
}

/* Brings back the values that a theme holds. */
static int apply_theme(UXXmlWrapperBase* tree, const char* theme) {
    UXScriptObject* ids = ux_array_new(UX_ARRAY_INTS);
    UXScriptObject* values = ux_array_new(UX_ARRAY_STRINGS);
    CStringUTF8* comment = ux_string_new(NULL);
    int code = -1;
    if (uxtree_tree_read_values_with_ids(theme, ids, values, comment) == 1) {
        code = uxtree_set_values_by_ids(tree, ids, values, 0, NULL, 0, NULL, NULL);
        printf("theme \"%s\": %d values\n", ux_string_text(comment), code);
    }
    ux_string_free(comment);
    ux_array_free(values);
    ux_array_free(ids);
    return code < 0 ? explain("uxtree_set_values_by_ids", code) : 0;
}

int main(int argc, char** argv) {
    UXXmlWrapperBase* tree;
    int failed;
    if (argc != 4) {
        fprintf(stderr, "usage: first_steps TREE RESULT THEME\n");
        return 2;
    }
    tree = ux_load(argv[1], 0);
    if (tree == NULL) return complain("cannot load");
    failed = work(tree, argv[2], argv[3]);
    ux_node_free(tree);
    if (failed) return failed;

    tree = ux_load(argv[2], 0); /* what was saved */
    if (tree == NULL) return complain("cannot load");
    failed = apply_theme(tree, argv[3]);
    print_value(tree, "Find/LocalPoints");
    ux_node_free(tree);
    if (failed) return failed;

    tree = ux_load_memory("<a>\n  <b></a>", 13, 0);
    if (tree == NULL) {
        printf("line %d, column %d: %s\n", ux_last_error_line(), ux_last_error_column(),
               ux_last_error());
    }
    ux_node_free(tree);
    return 0;
}
