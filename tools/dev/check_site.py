#!/usr/bin/env python3
"""Checks that every link of a built site leads somewhere: files, and places within pages.

    tools/dev/check_site.py SITE_FOLDER

Links to other machines are listed by number only; nothing is fetched. Pages may load nothing from
elsewhere: a site must work where there is no network.
"""
import html.parser
import pathlib
import sys
import urllib.parse

LOADED = {"script", "img", "iframe", "source", "link"}


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.places, self.links = set(), []
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("id", "name"):
                self.places.add(value)
            elif name in ("href", "src") and value is not None:
                self.links.append((tag, value))


def problems(site):
    pages = {path.resolve(): Page(path) for path in sorted(site.rglob("*.html"))
             if path.name != "404.html"}  # served from anywhere, so its links begin at the top
    for path, page in pages.items():
        for tag, link in page.links:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme or parts.netloc:
                if tag in LOADED and parts.scheme != "data":
                    yield f"{path.name}: loads {link}"
                continue
            target = path
            if parts.path:
                target = (path.parent / urllib.parse.unquote(parts.path)).resolve()
            if target.is_dir():
                target /= "index.html"
            if not target.is_file():
                yield f"{path.name}: {link} leads nowhere"
            elif parts.fragment and target in pages and \
                    urllib.parse.unquote(parts.fragment) not in pages[target].places:
                yield f"{path.name}: {link} names a place that is not there"
    if len(pages) < 10:
        yield f"only {len(pages)} pages"


def main():
    found = list(problems(pathlib.Path(sys.argv[1])))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
