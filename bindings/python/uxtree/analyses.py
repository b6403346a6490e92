"""Settings and results of analyses: import descriptions, ranges, weights, statistics, reports."""

import math

from ._core import raw
from .tree import Tree, check

# --- import descriptions


def prepare_description(path, *, preview=False):
    """Reads the description of an imported file into a tree in which repeated structures are arrays;
    yields the copy of its root. preview: the first elements of arrays only."""
    tree = Tree("Descriptions")
    code = raw.uxtree_XDE_prepare_XML(tree, path, 0x10000 if preview else 0)
    check("uxtree_XDE_prepare_XML", code, code == 0)
    return tree[0].copy()


def path_text(path):
    """A path of names as one text."""
    return raw.uxtree_XDE_treenode_path_array_to_string(list(path), True)[1]


def path_names(text):
    """The names in the text of a path."""
    return raw.uxtree_XDE_treenode_path_string_to_array(text, True)[1]


# --- ranges


def add_range(tree, x=None, y=None, z=None, *, range_type=0):
    """Appends a range with its slots to a range tree, and yields it."""
    node = raw.Node()
    code = raw.vctree_add_subrange_to_composite_range(node, tree, -1, 0, range_type)
    check("vctree_add_subrange_to_composite_range", code, code == 1)
    code = raw.vctree_set_composite_subrange_values(node, x, y, z, 0, range_type, 0, 1)
    check("vctree_set_composite_subrange_values", code, code == 1)
    return tree[len(tree) - 1]


def ranges(tree):
    """The ranges of a tree: for each the list of its sub-ranges."""
    found = []
    outer = raw.VCRangeTreeIterator(tree)
    while True:
        more, first = outer.Get()
        if not more:
            return found
        inner = raw.VCSubRangeTreeIterator(first)
        subranges = []
        while True:
            more, node = inner.Get()
            if not more:
                break
            subranges.append(node)
        found.append(subranges)


def renumber_ranges(tree, *, tags=True):
    """Numbers labels and, with tags, also the tags of the ranges anew."""
    raw.vctree_reenum_subranges_in_range_tree(tree, int(tags))


# --- weights of the fitter


def weight_methods():
    """The names of the weight methods, by number."""
    count, _, names = raw.VCTreeGetFitterWeightStrings(0, 0, name=False)
    check("VCTreeGetFitterWeightStrings", count, count >= 0)
    return names


def weight_method(method):
    """(name, needs data, needs a, needs b, needs c) of a weight method."""
    code, name, *uses = raw.uxtree_fitter_get_weight_mth_info(method)
    check("uxtree_fitter_get_weight_mth_info", code, code == 1)
    return (name, *map(bool, uses))


def weight(node):
    """The stored weight of a node: its method, a, b, c and data."""
    code, method, a, b, c = raw.vctree_extract_weight_info(node, None)
    check("vctree_extract_weight_info", code, code == 1)
    return {"method": method, "a": a, "b": b, "c": c, "data": node.value}


def expand_weight(stored):
    """The form of a stored weight that dialogs use."""
    expanded = Tree("WeightBranch")
    code = raw.vctree_fitter_data_weight_node_compact_to_expanded(expanded, stored)
    check("vctree_fitter_data_weight_node_compact_to_expanded", code, code == 1)
    return expanded


def store_weight(expanded, tag="Weight"):
    """The stored form of a weight in a dialog."""
    stored = Tree(tag)
    code = raw.vctree_fitter_data_weight_node_expanded_to_compact(stored, expanded)
    check("vctree_fitter_data_weight_node_expanded_to_compact", code, code == 1)
    return stored


def set_weight_method(expanded, method, *, data=None, a=None, b=None, c=None):
    """Gives a weight in a dialog another method, and values unless None."""
    code, _ = raw.vctree_update_fitter_data_weight_node(expanded, method, data, a, b, c, 0, 0)
    check("vctree_update_fitter_data_weight_node", code, code == 1)


# --- statistics


def results(tree):
    """[((row, column), node)] of the results of a statistics tree; a place of -1 is none."""
    found, node = [], None
    while True:
        more, node, place = raw.vctree_stats_enum_result_node(tree, node)
        if not more:
            return found
        found.append((place, node))


def statistics(node):
    """The statistics of a result by name, with "min" and "max"; nan where there is none."""
    fields, low, high = raw.vctree_stats_get_set_stats_results(node, None, None, None, 1)
    return {**fields, "min": low, "max": high}


def add_result(tree, row, column, fields, *, low=math.nan, high=math.nan):
    """Finds or appends the result of a place, counted from 0, and writes statistics by name; yields
    the node."""
    code, node = raw.vctree_stats_create_result_node(tree, (row, column))
    check("vctree_stats_create_result_node", code, code == 1)
    raw.vctree_stats_get_set_stats_results(node, fields, low, high, 0)
    return node


def results_table(tree):
    """The statistics of all results as a DataFrame, with the columns row and column."""
    from .table import frame_of
    rows = [{"row": place[0], "column": place[1], **statistics(node)}
            for place, node in results(tree)]
    names = list(rows[0]) if rows else ["row", "column"]
    return frame_of(names, [tuple(row.values()) for row in rows])


# --- strings of reports


def data_string(index, *, type="", suffix="", separator="", dotted=False, tail=0, type_flags=0):
    """The reference string of a data column."""
    code, text = raw.report_get_escaped_data_string(index, int(dotted), type, suffix, type_flags,
                                                    separator, tail)
    check("report_get_escaped_data_string", code, code == 1)
    return text


def label_string(index, row, *, name=None, type="", suffix="", separator="E", dotted=False, tail=0):
    """The reference string of a label row of a data column; row -9 with a name is the one of that
    name."""
    code, text = raw.report_get_escaped_label_data_string(index, row, suffix, tail, int(dotted),
                                                          separator, name, type)
    check("report_get_escaped_label_data_string", code, code == 1)
    return text


def retype(text, type):
    """The reference string with another type."""
    code, text = raw.report_set_escaped_data_string_type(text, type)
    check("report_set_escaped_data_string_type", code, code == 1)
    return text


def combine_labels(labels, *, prefix=True, always=False, strict=False):
    """Several labels as one that is an expression."""
    code, text = raw.uxtree_combine_data_label(list(labels), prefix, always, strict)
    check("uxtree_combine_data_label", code, code == 1)
    return text
