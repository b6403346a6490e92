"""First steps from Python's ctypes: what first_steps.c does, without a compiler.

    python3 first_steps_ctypes.py LIBRARY TREE RESULT THEME

LIBRARY is libuxtree_kit.so, which brings the other libraries along.
"""

import ctypes
import sys

INTS, STRINGS = 1, 4  # UX_ARRAY_INTS, UX_ARRAY_STRINGS

kit = ctypes.CDLL(sys.argv[1])
for name in ("ux_load", "ux_load_memory", "ux_node_new", "ux_string_new", "ux_array_new"):
    getattr(kit, name).restype = ctypes.c_void_p  # a handle; ctypes would cut it to 32 bits
for name in ("ux_last_error", "ux_string_text", "ux_array_string", "ux_describe", "ux_code_name"):
    getattr(kit, name).restype = ctypes.c_char_p
kit.ux_array_ints.restype = ctypes.POINTER(ctypes.c_int)


class Owned:
    """A handle that is given back at the end of a with block."""

    def __init__(self, handle, free):
        if handle is None:
            raise SystemExit("cannot load: " + kit.ux_last_error().decode())
        self.pointer = ctypes.c_void_p(handle)
        self.free = free

    def __enter__(self):
        return self.pointer

    def __exit__(self, *_):
        self.free(self.pointer)


def load(path):
    return Owned(kit.ux_load(path.encode(), 0), kit.ux_node_free)


def array(kind):
    return Owned(kit.ux_array_new(kind), kit.ux_array_free)


def string():
    return Owned(kit.ux_string_new(None), kit.ux_string_free)


def checked(function, *arguments):
    """Calls an entry point that yields a count, and tells a code below 0 in words."""
    code = getattr(kit, function)(*arguments)
    if code < 0:
        raise SystemExit(f"{function}: {kit.ux_describe(function.encode(), code).decode()}")
    return code


def set_value(tree, identifier, value):
    with array(INTS) as ids, array(STRINGS) as values:
        kit.ux_array_set_ints(ids, (ctypes.c_int * 1)(identifier), 1)
        kit.ux_array_add_string(values, value.encode())
        return checked("uxtree_set_values_by_ids", tree, ids, values, 0, None, 0, None, None)


def print_value(tree, path):
    node = Owned(kit.ux_node_new(None), kit.ux_node_free)
    with node as found, string() as text:
        kit.ux_node_child(tree, path.encode(), found)
        kit.ux_node_value(found, text)
        print(f"{path} = {kit.ux_string_text(text).decode()}")


def main():
    source, result, theme = sys.argv[2:5]
    with load(source) as tree, array(INTS) as ids, array(STRINGS) as values:
        count = checked("uxtree_get_values_with_ids", tree, ids, values, 1, 0, 0, None, 0, None)
        if kit.uxtree_tree_save_values_with_ids(theme.encode(), ids, values, b"before", None) != 1:
            raise SystemExit(f"{theme}: cannot be written")
        first = kit.ux_array_string(values, 0).decode()
        print(f"{count} values, the first is {kit.ux_array_ints(ids)[0]}: {first}")
        set_value(tree, 33, "12")
        print_value(tree, "Find/LocalPoints")
        if kit.ux_save(tree, result.encode(), 0) != 1:
            raise SystemExit("cannot save: " + kit.ux_last_error().decode())

    with load(result) as tree, array(INTS) as ids, array(STRINGS) as values, string() as comment:
        kit.uxtree_tree_read_values_with_ids(theme.encode(), ids, values, comment)
        count = checked("uxtree_set_values_by_ids", tree, ids, values, 0, None, 0, None, None)
        print(f'theme "{kit.ux_string_text(comment).decode()}": {count} values')
        print_value(tree, "Find/LocalPoints")

    if kit.ux_load_memory(b"<a>\n  <b></a>", 13, 0) is None:
        place = f"line {kit.ux_last_error_line()}, column {kit.ux_last_error_column()}"
        print(f"{place}: {kit.ux_last_error().decode()}")


main()
