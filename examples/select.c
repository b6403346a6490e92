/* Selections in C: compile a path once, run it on files, print what it finds.
 *
 *   cc select.c $(pkg-config --cflags --libs uxtree_c) -o select
 *   ./select "//LocalPoints[. > 2]/@Label" dialog.xml
 */
#include <stdio.h>
#include <uxtree/uxtree_c.h>

/* One line of each thing that was found: its tag, "@" and the attribute, and its text. */
static int print_found(const UXSelected* found) {
    UXXmlWrapperBase* node = ux_node_new(NULL);
    CStringUTF8* tag = ux_string_new(NULL);
    CStringUTF8* name = ux_string_new(NULL);
    CStringUTF8* text = ux_string_new(NULL);
    int failed = 0;
    int i;
    for (i = 0; i < ux_selected_count(found) && !failed; ++i) {
        failed = ux_selected_node(found, i, node) != 1 || ux_node_tag(node, tag) != 1 ||
                 ux_selected_attr(found, i, name) != 1 || ux_selected_text(found, i, text) != 1;
        if (failed) {
            fprintf(stderr, "%s\n", ux_last_error());
        } else if (ux_selected_kind(found, i) == UX_SELECTED_ATTRIBUTE) {
            printf("%s@%s: %s\n", ux_string_text(tag), ux_string_text(name), ux_string_text(text));
        } else {
            printf("%s: %s\n", ux_string_text(tag), ux_string_text(text));
        }
    }
    ux_string_free(text);
    ux_string_free(name);
    ux_string_free(tag);
    ux_node_free(node);
    return failed;
}

static int print_file(const UXSelection* selection, const char* file) {
    UXXmlWrapperBase* tree = ux_load(file, 0);
    UXSelected* found = ux_selected_new();
    int failed = tree == NULL || ux_select_run(selection, tree, found, NULL) < 0;
    if (failed) {
        fprintf(stderr, "%s: %s\n", file, ux_last_error());
    } else {
        failed = print_found(found);
    }
    ux_selected_free(found);
    ux_node_free(tree);
    return failed;
}

int main(int argc, char** argv) {
    UXSelection* selection;
    int failed = 0;
    int i;
    if (argc < 3) {
        fprintf(stderr, "usage: select PATH FILE...\n");
        return 2;
    }
    selection = ux_select_compile(argv[1]);
    if (selection == NULL) {
        fprintf(stderr, "%s\n%*s^ %s\n", argv[1], ux_last_error_column() - 1, "", ux_last_error());
        return 2;
    }
    for (i = 2; i < argc; ++i) failed |= print_file(selection, argv[i]);
    ux_select_free(selection);
    return failed;
}
