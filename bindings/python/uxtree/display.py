"""What notebooks show."""

import html

# A notebook is not the place for a million nodes.
MOST_NODES = 2000
MOST_LEVELS = 60


def tree_html(top):
    """A tree that folds and unfolds."""
    left = MOST_NODES
    parts = []
    todo = [(top, 0)]
    while todo:
        node, level = todo.pop()
        if isinstance(node, str):
            parts.append(node)
            continue
        if left == 0:
            parts.append("<div>&hellip; more nodes are not shown</div>")
            left = -1
        if left < 0:
            continue
        left -= 1
        head = _head(node)
        if len(node) == 0 or level == MOST_LEVELS:
            more = " &hellip;" if len(node) else ""
            parts.append(f"<div style='padding-left:1em'>{head}{more}</div>")
            continue
        opened = " open" if level == 0 else ""
        parts.append(f"<details{opened} style='padding-left:1em'><summary>{head}</summary>")
        todo.append(("</details>", 0))
        todo += [(child, level + 1) for child in reversed(_first(node, left + 1))]
    return f"<div style='font-family:monospace'>{''.join(parts)}</div>"


def _first(node, count):
    children = []
    for child in node:
        children.append(child)
        if len(children) == count:
            break
    return children


def _short(text, most=200):
    return html.escape(text if len(text) <= most else text[: most - 1] + "…")


def _head(node):
    attributes = "".join(
        f" <span style='color:#777'>{html.escape(name)}=&quot;{_short(text)}&quot;</span>"
        for name, text in node.attribute_items())
    value = node.value
    shown = f" {_short(value)}" if value else ""
    return f"<b>{html.escape(node.tag)}</b>{attributes}{shown}"


def table_html(table, most=60):
    """A table with its first rows."""
    head = "".join(f"<th>{_short(str(name))}</th>" for name in table.names)
    rows = "".join(
        "<tr>" + "".join(f"<td>{'' if cell is None else _short(str(cell))}</td>" for cell in row) + "</tr>"
        for row in table.rows()[:most])
    more = f"<caption>{len(table)} rows, of which {most} are shown</caption>"
    return f"<table>{more if len(table) > most else ''}<tr>{head}</tr>{rows}</table>"


def spectrum_html(spectrum):
    """A picture by matplotlib when it is there, else a plain one."""
    title = html.escape(repr(spectrum))
    return f"<div>{_picture(spectrum)}<div>{title}</div></div>"


def _picture(spectrum):
    try:
        import io
        from matplotlib.backends.backend_svg import FigureCanvasSVG
        from matplotlib.figure import Figure
    except ImportError:
        return plain_svg(spectrum)
    figure = Figure(figsize=(7, 3), layout="tight")
    FigureCanvasSVG(figure)
    spectrum.plot(figure.subplots())
    text = io.StringIO()
    figure.savefig(text, format="svg")
    return text.getvalue()[text.getvalue().index("<svg"):]


def plain_svg(spectrum, width=640, height=240):
    """A polygon of the counts; of channels that share a column of the picture the highest."""
    counts = spectrum.counts
    columns = min(width, len(counts))
    high = max(float(counts.max()), 1.0) if columns else 1.0
    points = []
    for column in range(columns):
        first = column * len(counts) // columns
        last = max((column + 1) * len(counts) // columns, first + 1)
        y = height - max(0.0, float(counts[first:last].max())) / high * (height - 4)
        points.append(f"{column * width / columns:.1f},{y:.1f}")
    return (f"<svg xmlns='http://www.w3.org/2000/svg' width='{width}' height='{height}' "
            f"viewBox='0 0 {width} {height}'><polyline fill='none' stroke='#1f77b4' "
            f"points='{' '.join(points)}'/></svg>")
