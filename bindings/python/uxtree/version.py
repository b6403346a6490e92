"""Which versions of the libraries the package works with."""


def require(built_for, found):
    """Raises ImportError when the libraries that were found are not those the module was built for,
    nor later ones that keep what those promise: below 1.0 each minor version may break it."""
    wanted, given = (tuple(int(part) for part in text.split(".")) for text in (built_for, found))
    stable = 1 if wanted[0] else 2
    if given[:stable] != wanted[:stable] or given < wanted:
        raise ImportError(f"this package was built for version {built_for} of the uxtree libraries, "
                          f"and finds version {found}")
