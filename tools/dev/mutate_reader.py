#!/usr/bin/env python3
"""Seeds faults into the strict reader, one at a time, and checks that its tests catch each.

Usage: tools/dev/mutate_reader.py [NUMBER...]

A fault is a replacement of text in one file of src/xml/. The tests of the reader are compiled with
the changed file in front of the real one and must fail; without a fault they must pass. The result
is 1 when a fault goes unnoticed, or when its text is not found any more: then the list below is to
be brought up to date. Takes half a minute for each fault.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
READER = "strict_reader.h"
SCAN = "scan.h"

# What goes wrong, the file, the text, and what stands in its place.
FAULTS = [
    ("attributes may come twice", READER,
     "if (name->stamp == stamp_) return fail(window_.begin());  // twice", ""),
    ("']]>' is text", READER,
     "if (*behind == '>' && behind - at >= 2) return give_up_at(piece);", ""),
    ("']]>' across windows is text", READER,
     "at = std::max(at, behind - 2);", "at = behind;"),
    ("line ends in a row are one", READER,
     "char* const end = at + (behind - at) / 2;", "char* const end = at + 1;"),
    ("'--' may stand in a comment", READER,
     "return at != nullptr && at[2] == '>' ? at + 3 : nullptr;",
     "while (at != nullptr && at[2] != '>') at = skip_to<'-', '-'>(at + 1);\n"
     "        return at == nullptr ? nullptr : at + 3;"),
    ("the end of a comment may not stand across windows", READER,
     "if (at == window_.end() && at != begin && at[-1] == kFirst) --at;", ""),
    ("the end of a section may not stand across windows", READER,
     "if (at != piece && at[-1] == ']') --at;", ""),
    ("an instruction may be called XML", READER,
     "if (reserved) return nullptr;", ""),
    ("attributes need no blank between them", READER,
     "            return fail(at);\n        }\n    }\n    // The name of a start tag.",
     "            --at; if (*at == '\"' || *at == '\\'') { *at = ' '; continue; } return fail(at);\n"
     "        }\n    }\n    // The name of a start tag."),
    ("a foreseen tag may go on", READER,
     "if (is_kind(behind, kNameStop) && static_cast<signed char>(behind) >= 0) {", "{"),
    ("a foreseen long attribute is known by its first bytes", "known_names.h",
     "(stands_at(bytes, end) && bytes[length] == '=' && bytes[length + 1] == '\"');", "true;"),
    ("a name at the end of the window is complete when its tag is read on", READER,
     "tag_ != nullptr && reached_ != window_.end();", "tag_ != nullptr;"),
    ("an attribute is read again when its tag is read on", READER,
     "                reached_ = at;\n            }\n            if (at[0] == '/'",
     "            }\n            if (at[0] == '/'"),
    ("an end tag fits when it begins like the name", READER,
     "                if (*p == '>') {\n                    sink_.end();",
     "                while (!is_kind(*p, kNameStop)) ++p;\n"
     "                if (*p == '>') {\n                    sink_.end();"),
    ("a name is known by its ASCII start", READER,
     "if (static_cast<signed char>(at[length]) < 0) return new_name(at, isNew);", ""),
    ("long names are known by their first 16 bytes", READER,
     "if (!known->tail_stands_at(at, window_.end())) return new_name(at, isNew);", ""),
    ("a name ahead ends where it is no longer ASCII", "names_ahead.h",
     "if (before != '<') return behind == '=';\n        return", "return before != '<' ||"),
    ("names ahead outlive the window", "names_ahead.h",
     "        taken_ = found_ = 0;\n", ""),
    ("a name ahead is that of the next tag", "names_ahead.h",
     "taken_ < found_ && place(taken_).text.data() == at ?", "taken_ < found_ ?"),
    ("a slash stands in names", SCAN,
     "_mm_andnot_si128(slashes, bytes_between(block, '-', ':'))",
     "_mm_or_si128(slashes, bytes_between(block, '-', ':'))"),
    ("a CR stays a CR", READER,
     "*at = '\\n';", ""),
    ("blanks written as references are not kept", READER,
     "if (reference.code <= ' ') sink_.keep();", ""),
    ("sections do not keep blanks", READER,
     "        sink_.keep();\n        return section(at + 9);", "        return section(at + 9);"),
    ("text at the end of the window is lost", READER,
     "        if (at != piece) sink_.text(piece, at);\n        const bool more = refill(at);",
     "        const bool more = refill(at);"),
    ("U+FFFF is a character", SCAN,
     "return first == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE ? 0 : 3;", "return 3;"),
    ("surrogates are characters", SCAN,
     "if (first == 0xED) return byte(1) < 0xA0 ? 3 : 0;", ""),
    ("overlong forms are characters", SCAN,
     "bytes_between(block, 0xC2, 0xDF)", "bytes_between(block, 0xC0, 0xDF)"),
    ("overlong forms are letters of a word", SCAN,
     "_mm_andnot_si128(overlong, pairs)", "pairs"),
    ("surrogates are characters among others", SCAN,
     "bytes_between(block, 0xE1, 0xEC)", "bytes_between(block, 0xE1, 0xED)"),
    ("the third byte of a character may be any", SCAN,
     "const unsigned third = three << 2;",
     "const unsigned third = three << 2 & bits_of(bytes_between(block, 0x80, 0xBF));"),
    ("the end of a comment may be overlooked behind other letters", SCAN,
     "_mm_cmpeq_epi8(block, _mm_set1_epi8('-')),", "_mm_setzero_si128(),"),
    ("control characters are text", SCAN,
     "return _mm_andnot_si128(lines, _mm_cmplt_epi8(block, firstPlain));",
     "(void)lines; (void)firstPlain; return _mm_cmplt_epi8(block, _mm_setzero_si128());"),
    ("numbers of references may be any", "references.cpp",
     "p == first || *p != ';' || !is_xml_character(code)", "p == first || *p != ';'"),
    ("CR LF in a value is two blanks", "references.cpp",
     "at += 2;", "at += 1;"),
    ("what is not unescaped yet is overwritten", "references.cpp",
     "bytes - target >= 16 - count", "bytes >= target"),
]


def passes(folder):
    """Do the tests, compiled with the files in folder in front of those of src/, pass?"""
    program = folder / "test"
    sources = [ROOT / "tests/xml/strict_reader_test.cpp", ROOT / "tests/xml/events.cpp",
               ROOT / "tests/support/generated_xml.cpp", folder / "xml/window.cpp",
               folder / "xml/references.cpp", folder / "xml/decoded_source.cpp",
               folder / "xml/file_encoding.cpp", ROOT / "src/base/platform_posix.cpp",
               ROOT / "src/base/seeded_hash.cpp", ROOT / "src/base/xml_names.cpp"]
    subprocess.run(["g++", "-std=c++20", "-O1", "-w", f"-I{folder}", f"-I{ROOT}/src",
                    f"-I{ROOT}/include", f"-I{ROOT}/tests", *map(str, sources), "-o", str(program),
                    "-lgmock", "-lgtest", "-lgtest_main", "-lexpat", "-lpthread"], check=True)
    try:
        run = subprocess.run([program, "--gtest_brief=1"], timeout=120,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    except subprocess.TimeoutExpired:
        return False
    return run.returncode == 0


def with_fault(fault):
    """Compiles and runs the tests with the fault; None is no fault at all."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shutil.copytree(ROOT / "src/xml", folder / "xml")
        if fault is not None:
            _, file, text, other = fault
            path = folder / "xml" / file
            content = path.read_text()
            if content.count(text) != 1:
                return None
            path.write_text(content.replace(text, other))
        return passes(folder)


def main():
    wanted = [int(number) for number in sys.argv[1:]] or range(len(FAULTS) + 1)
    good = True
    for number in wanted:
        fault = FAULTS[number - 1] if number > 0 else None
        result = with_fault(fault)
        if number == 0:
            verdict = "passes" if result else "FAILS without any fault"
        else:
            verdict = {None: "NOT FOUND", True: "UNNOTICED", False: "caught"}[result]
        good = good and verdict in ("passes", "caught")
        print(f"{number:3} {verdict:10} {fault[0] if fault else 'no fault'}", flush=True)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
