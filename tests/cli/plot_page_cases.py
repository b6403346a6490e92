"""The page of n42 plot, as a browser draws it. Cannot be tried without Chromium."""
import pathlib
import re
import shutil
import struct
import subprocess
import zlib

from harness import Skip

EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "spectrum.n42"
CURVE_COLOURS = [(0x1f, 0x6f, 0xeb), (0xd9, 0x48, 0x0f), (0x2b, 0x8a, 0x3e), (0x9c, 0x36, 0xb5)]


def open_page(tool, *args):
    """Opens page.html; yields what the browser writes on standard output and standard error."""
    program = shutil.which("chromium") or shutil.which("chromium-browser")
    if not program:
        raise Skip("no Chromium, so the page is not opened")
    done = subprocess.run(
        [program, "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
         f"--user-data-dir={tool.path('profile')}", "--enable-logging=stderr", "--v=0",
         "--window-size=1000,600", "--virtual-time-budget=2000", *args,
         tool.path("page.html").as_uri()],
        capture_output=True, timeout=120, check=True, cwd=tool.folder)
    return done.stdout.decode(), done.stderr.decode()


def nearest_of(left, above, corner):
    guess = left + above - corner
    return min((abs(guess - left), 0, left), (abs(guess - above), 1, above),
               (abs(guess - corner), 2, corner))[2]


# What each filter method of PNG foretells of a byte from the one to its left, above, and both.
PREDICTIONS = [lambda left, above, corner: 0, lambda left, above, corner: left,
               lambda left, above, corner: above,
               lambda left, above, corner: (left + above) // 2, nearest_of]


def pixels(png):
    """Rows of pixels of an 8-bit PNG without interlacing."""
    width, height, depth, kind = struct.unpack(">IIBB", png[16:26])
    assert depth == 8 and kind in (2, 6), (depth, kind)
    size, at, packed = (3 if kind == 2 else 4), 8, b""
    while at < len(png):
        length, name = struct.unpack(">I4s", png[at:at + 8])
        packed += png[at + 8:at + 8 + length] if name == b"IDAT" else b""
        at += length + 12
    raw, rows = zlib.decompress(packed), []
    blank = bytes(size)  # left of the first pixel of a row
    above = blank + bytes(width * size)
    for start in range(0, height * (width * size + 1), width * size + 1):
        predict = PREDICTIONS[raw[start]]
        row = bytearray(blank)
        for i, byte in enumerate(raw[start + 1:start + 1 + width * size]):
            row.append((byte + predict(row[i], above[i + size], above[i])) & 255)
        above = row
        rows.append([tuple(row[i:i + 3]) for i in range(size, len(row), size)])
    return rows


def test_PageDrawsItsCurvesWithoutAWordOnTheConsole(tool):
    page = tool.run(["n42", "plot", "-f", "html", str(EXAMPLE)])
    assert page.code == 0, page.err
    tool.write("page.html", page.out)

    document, messages = open_page(tool, "--dump-dom")
    assert "CONSOLE" not in messages, messages
    points = re.search(r'data-points="(\d+)"', document)
    assert points and int(points.group(1)) > 4 * 500, document[:300]
    assert document.count('type="checkbox"') == 4

    open_page(tool, f"--screenshot={tool.path('page.png')}")
    seen = {}
    for row in pixels(tool.path("page.png").read_bytes()):
        for colour in row[:700]:  # the place of the curves, without the legend
            seen[colour] = seen.get(colour, 0) + 1
    for colour in CURVE_COLOURS:
        near = sum(n for c, n in seen.items() if all(abs(a - b) < 40 for a, b in zip(c, colour)))
        assert near > 200, (colour, near)
