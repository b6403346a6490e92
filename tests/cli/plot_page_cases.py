"""The page of n42 plot, as a browser draws it. Cannot be tried without Chromium."""
import base64
import hashlib
import json
import pathlib
import re
import shutil
import struct
import subprocess
import zlib

from harness import Skip

EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "spectrum.n42"
CURVE_COLOURS = [(0x1f, 0x6f, 0xeb), (0xd9, 0x48, 0x0f), (0x2b, 0x8a, 0x3e), (0x9c, 0x36, 0xb5)]


def test_AllowsNoScriptButItsOwn(tool):
    tool.run(["n42", "plot", str(EXAMPLE), "-o", "page.html"])
    page = tool.path("page.html").read_text()
    policy = re.search('Content-Security-Policy" content="([^"]*)"', page).group(1)
    script = page[page.index("<script>") + len("<script>"):page.rindex("</script>")]
    digest = base64.b64encode(hashlib.sha256(script.encode()).digest()).decode()
    assert f"script-src 'sha256-{digest}'" in policy, policy
    assert policy.startswith("default-src 'none';"), policy
    assert not re.search(r'<[^>]* on[a-z]+="', page), "a handler in an attribute would not run"


def open_page(tool, *args, what=""):
    """Opens page.html, showing what; yields what the browser writes on standard output and standard error."""
    program = shutil.which("chromium") or shutil.which("chromium-browser")
    if not program:
        raise Skip("no Chromium, so the page is not opened")
    done = subprocess.run(
        [program, "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
         f"--user-data-dir={tool.path('profile')}", "--enable-logging=stderr", "--v=0",
         "--window-size=1000,600", "--virtual-time-budget=2000", *args,
         tool.path("page.html").as_uri() + what],
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


def region_of(counts, first, last):
    """Gross and net counts and centroid of channels from 0, the background being a line between
    the means of three channels on either side."""
    left, right = sum(counts[first - 3:first]) / 3, sum(counts[last + 1:last + 4]) / 3
    width = last - first + 1
    below = [left + (right - left) * (i + 0.5) / width for i in range(width)]
    net = [c - b for c, b in zip(counts[first:last + 1], below)]
    return sum(counts[first:last + 1]), sum(net), \
        sum((first + i) * n for i, n in enumerate(net)) / sum(net)


def regions_in(document):
    rows = re.findall(r'data-gross="([^"]*)" data-net="([^"]*)" data-centroid="([^"]*)" '
                      r'data-first="([^"]*)" data-last="([^"]*)"', document)
    return [[float(value) for value in row] for row in rows]


def near(one, other):
    return abs(one - other) <= 1e-6 * max(abs(one), abs(other), 1)


def test_PageSumsRegionsLikeTheLibrary(tool):
    tool.write("page.html", tool.run(["n42", "plot", "-f", "html", "-s", "2", str(EXAMPLE)]).out)
    spectra = json.loads(tool.run(["n42", "export", "-f", "json", "-s", "2", str(EXAMPLE)]).out)

    document, messages = open_page(tool, "--dump-dom", what="#region=600:720")
    assert "CONSOLE" not in messages, messages
    rows = regions_in(document)
    assert len(rows) == 2, rows
    for spectrum, (gross, net, centroid, first, last) in zip(spectra, rows):
        energies = spectrum["energies"]
        inside = [i for i, energy in enumerate(energies) if 600 <= energy <= 720]
        assert (inside[0] + 1, inside[-1] + 1) == (first, last)
        wanted = region_of(spectrum["counts"], inside[0], inside[-1])
        whole = int(wanted[2])
        energy = energies[whole] + (energies[whole + 1] - energies[whole]) * (wanted[2] - whole)
        assert near(gross, wanted[0]) and near(net, wanted[1]), (gross, net, wanted)
        assert abs(centroid - energy) < 1e-3, (centroid, energy)

    document, _ = open_page(tool, "--dump-dom", what="#region=200:250&channel&rates&sum&linear")
    rows = regions_in(document)
    assert len(rows) == 3, rows
    for spectrum, (gross, net, centroid, first, last) in zip(spectra, rows):
        wanted = region_of(spectrum["counts"], 199, 249)
        assert (first, last) == (200, 250)
        assert near(gross, wanted[0] / spectrum["liveSeconds"])
        assert near(net, wanted[1] / spectrum["liveSeconds"])
        assert abs(centroid - wanted[2] - 1) < 1e-6
    counts = sum(sum(spectrum["counts"][199:250]) for spectrum in spectra)
    seconds = sum(spectrum["liveSeconds"] for spectrum in spectra)
    assert near(rows[2][0], counts / seconds), (rows[2], counts / seconds)
    assert "Mean of 2: " in document


def test_PageRefusesWhatItCannotShow(tool):
    tool.write("t.n42", "<N42InstrumentData><Measurement><Spectrum><ChannelData>1 2</ChannelData>"
               "</Spectrum><Spectrum><ChannelData>1 2 3</ChannelData></Spectrum></Measurement>"
               "</N42InstrumentData>")
    tool.write("page.html", tool.run(["n42", "plot", "-f", "html", "t.n42"]).out)
    document, messages = open_page(tool, "--dump-dom", what="#rates&sum&channel")
    assert "CONSOLE" not in messages, messages
    assert re.search(r'<button id="rates"[^>]*disabled', document)
    assert re.search(r'<button id="energy"[^>]*disabled', document)
    assert '<p id="total">No sum: ' in document
