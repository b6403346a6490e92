/* What the sweep of the C header works on: a world of objects for one call, and what it expects. */
#ifndef UXTREE_TESTS_C_SWEEP_H
#define UXTREE_TESTS_C_SWEEP_H

#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <uxtree/kit/version.h>
#include <uxtree/uxtree_c.h>

#include "frame/memory/failing_new.h"

enum { kEach = 4, kNumbers = 8 };
static const char kFile[] = "c_sweep_file.xml";
static const char kTree[] =
    "<r DataID='1' Label='R' a='1'><a DataID='11' Label='A' n='5'>1</a>"
    "<b DataID='12' Label='B'><c DataID='13' Label='C'>2</c></b></r>";

typedef struct World {
    UXXmlWrapperBase* nodes[kEach]; /* roots of trees of the same content */
    UXXmlWrapperBase* outs[kEach];
    UXXmlWrapperBase* invalid;
    UXXmlWrapperBase* removed;
    CStringUTF8* texts[kEach];
    UXSelection* selection;
    UXSelected* selected; /* several elements */
    UXScriptObject *ints[kEach], *doubles[kEach], *bools[kEach], *strings[kEach];
    int number[kNumbers];
    double real[kNumbers];
    bool flag[kNumbers];
    tagDescStatResults statistics;
    tagHistogramStatsResult histogram;
} World;

static int failures = 0;
static int trials = 0;

static void expect(int holds, const char* function, const char* parameter, const char* how) {
    if (holds) return;
    ++failures;
    fprintf(stderr, "%s: %s is %s: unexpected result\n", function, parameter, how);
}

static World make_world(void) {
    World w;
    UXXmlWrapperBase* tree = ux_load_memory(kTree, sizeof kTree - 1, 0);
    int i;
    memset(&w, 0, sizeof w);
    for (i = 0; i < kEach; ++i) {
        w.nodes[i] = ux_load_memory(kTree, sizeof kTree - 1, 0);
        w.outs[i] = ux_node_new(NULL);
        w.texts[i] = ux_string_new("text");
        w.ints[i] = ux_array_new(UX_ARRAY_INTS);
        w.doubles[i] = ux_array_new(UX_ARRAY_DOUBLES);
        w.bools[i] = ux_array_new(UX_ARRAY_BOOLS);
        w.strings[i] = ux_array_new(UX_ARRAY_STRINGS);
    }
    w.invalid = ux_node_new(NULL);
    w.removed = ux_node_new(NULL);
    ux_node_child(tree, "a", w.removed);
    ux_node_remove(w.removed);
    w.selection = ux_select_compile("//*");
    w.selected = ux_selected_new();
    ux_select_run(w.selection, w.nodes[0], w.selected, NULL);
    ux_node_free(tree);
    ++trials;
    return w;
}

static void expect_unchanged(const World* w, const char* function, const char* parameter,
                             const char* how) {
    UXXmlWrapperBase* tree = ux_load_memory(kTree, sizeof kTree - 1, 0);
    CStringUTF8* before = ux_string_new(NULL);
    CStringUTF8* after = ux_string_new(NULL);
    int i;
    ux_node_xml(tree, before);
    for (i = 0; i < kEach; ++i) {
        ux_node_xml(w->nodes[i], after);
        if (strcmp(ux_string_text(before), ux_string_text(after)) == 0) continue;
        ++failures;
        fprintf(stderr, "%s: %s is %s: a tree changed to %s\n", function, parameter, how,
                ux_string_text(after));
    }
    ux_string_free(after);
    ux_string_free(before);
    ux_node_free(tree);
}

/* Whatever was called, the trees can be read still. */
static void free_world(World* w, const char* function, const char* parameter, const char* how) {
    CStringUTF8* text = ux_string_new(NULL);
    int i;
    for (i = 0; i < kEach; ++i) {
        if (ux_node_valid(w->nodes[i]) == 1) {
            expect(ux_node_xml(w->nodes[i], text), function, parameter, how);
        }
        ux_node_free(w->nodes[i]);
        ux_node_free(w->outs[i]);
        ux_string_free(w->texts[i]);
        ux_array_free(w->ints[i]);
        ux_array_free(w->doubles[i]);
        ux_array_free(w->bools[i]);
        ux_array_free(w->strings[i]);
    }
    ux_string_free(text);
    ux_selected_free(w->selected);
    ux_select_free(w->selection);
    ux_node_free(w->removed);
    ux_node_free(w->invalid);
}

/* Begins a call in which an allocation fails, the first one being 0. */
static void run_short(long allocation) {
    failed = false;
    untilFailure = allocation;
}
/* Ends it; says whether there were so many allocations. */
static bool ran_short(void) {
    untilFailure = -1;
    return failed;
}
/* A function of the kit that fails for it says so. */
static void expect_shortage(int fails, const char* function) {
    const char* why = ux_last_error();
    if (fails && strstr(why, "out of memory") != NULL) return;
    ++failures;
    fprintf(stderr, "%s: %s short of memory: \"%s\"\n", function, fails ? "fails" : "works", why);
}

/* Scripts: how many of the functions are script entry points. One more of them passes a class by
 * value, which C cannot. */
static int report(int functions, int scripts) {
    remove(kFile);
    printf("%d functions, %d of them script entry points, %d calls, %d failures\n", functions,
           scripts, trials, failures);
    if (scripts + 1 != UXTREE_SCRIPT_COUNT) {
        fprintf(stderr, "expected %d script entry points\n", UXTREE_SCRIPT_COUNT);
        return 1;
    }
    return failures == 0 ? 0 : 1;
}

#endif
