#!/usr/bin/env python3
"""Turns the documents into pages that a browser shows: Windows opens no Markdown files.

make-pages.py FOLDER FILE.md...    writes FILE.html for each and the pictures they show into FOLDER

Headings get the names that links inside the documents use. A link that leads nowhere among the pages is an error.
"""
import html
import os
import re
import shutil
import subprocess
import sys

PAGE = """<!DOCTYPE html>
<html lang="{language}">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title}</title>
<style>
body {{ font: 15px/1.6 "Segoe UI", "Microsoft YaHei", sans-serif; max-width: 60em; margin: 2em auto; padding: 0 1em }}
h1, h2, h3 {{ line-height: 1.25; margin-top: 1.6em }}
img {{ max-width: 100% }}
table {{ border-collapse: collapse }}
td, th {{ border: 1px solid #ccc; padding: .3em .6em; text-align: left; vertical-align: top }}
code, pre {{ font-family: Consolas, monospace; background: #f3f3f3 }}
pre {{ padding: .6em; overflow-x: auto }}
</style>
{body}</html>
"""


def anchor(heading):
    """The name of a heading as links in the documents write it."""
    text = html.unescape(re.sub(r"<[^>]+>", "", heading)).strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def page_name(markdown):
    return os.path.basename(markdown).removesuffix(".md").lower() + ".html"


def convert(markdown, pages):
    """The page of a document; links to documents among the pages lead to their pages, those to others vanish."""
    body = subprocess.run(["cmark-gfm", "--extension", "table", markdown], check=True, capture_output=True,
                          encoding="utf-8").stdout
    body = re.sub(r"<(h[1-6])>(.*?)</\1>",
                  lambda found: f'<{found[1]} id="{anchor(found[2])}">{found[2]}</{found[1]}>', body)

    def link(found):
        target, mark, part = found[1].partition("#")
        if not target.endswith(".md"):
            return found[0]
        if os.path.basename(target) not in pages:
            return found[2]
        return f'<a href="{page_name(target)}{mark}{part}">{found[2]}</a>'

    body = re.sub(r'<a href="([^":]*)">(.*?)</a>', link, body)
    title = html.unescape(re.sub(r"<[^>]+>", "", re.search(r"<h1[^>]*>(.*?)</h1>", body)[1]))
    language = "zh-CN" if re.search("[\u4e00-\u9fff]", title) else "en"
    return PAGE.format(language=language, title=html.escape(f"X9CAN: {title}"), body=body)


def check_links(written):
    names = {page: set(re.findall(r' id="([^"]*)"', text)) for page, text in written.items()}
    for page, text in written.items():
        for address in re.findall(r'<a href="([^":]*)"', text):
            target, mark, part = html.unescape(address).partition("#")
            target = target or page
            # cmark writes what is not ASCII in percent signs.
            part = re.sub(r"(%[0-9A-Fa-f]{2})+", lambda found: bytes.fromhex(found[0].replace("%", "")).decode(), part)
            if target not in names or mark and part not in names[target]:
                sys.exit(f"make-pages: {page}: the link to {address} leads nowhere")


def main():
    folder, files = sys.argv[1], sys.argv[2:]
    pages = {os.path.basename(file) for file in files}
    written = {page_name(file): convert(file, pages) for file in files}
    check_links(written)
    os.makedirs(folder, exist_ok=True)
    for page, text in written.items():
        with open(os.path.join(folder, page), "w", encoding="utf-8", newline="\r\n") as out:
            out.write(text)
    for file in files:
        for picture in re.findall(r'<img src="([^":]*)"', written[page_name(file)]):
            target = os.path.join(folder, picture)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copyfile(os.path.join(os.path.dirname(file), picture), target)


if __name__ == "__main__":
    main()
