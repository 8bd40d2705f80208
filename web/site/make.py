#!/usr/bin/env python3
"""Makes the site of docs/ and docs/zh/: static files that need no server.
usage: make.py PACKAGE FOLDER"""

import base64
import html
import os
import re
import shutil
import subprocess
import sys
from urllib.parse import urlencode

here = os.path.dirname(os.path.abspath(__file__))
root = os.path.dirname(os.path.dirname(here))
sys.path.insert(0, os.path.dirname(here))
from bundle import bundle  # noqa: E402

PAGES = ["tutorial", "language", "gallery", "variables", "each", "prepared", "errors", "python", "scale", "windows",
         "web", "hosts", "architecture", "testing"]
MODULES = ["words", "dom", "numbers", "tokens", "suggestion", "study", "formula_field", "outcome", "page",
           "definitions", "csv", "table", "graph", "plot", "link", "table_part",
           "playground", "main"]
WORDS = {
    "en": {"lang": "en", "playground": "Playground", "manual": "Manual", "other": "中文",
           "other_lang": "zh-CN", "skip": "To the content", "contents": "On this page",
           "foot": "Everything on this page is computed by the engine in your browser. Nothing is sent anywhere.",
           "try": "Change it here", "open": "Open in the playground"},
    "zh": {"lang": "zh-CN", "playground": "试算", "manual": "手册", "other": "English",
           "other_lang": "en", "skip": "跳到正文", "contents": "本页内容",
           "foot": "本页的一切都由浏览器中的引擎计算，不向任何地方发送任何内容。",
           "try": "在这里修改", "open": "在试算中打开"},
}
FOLDERS = {"en": "docs", "zh": "docs/zh"}
OTHER = {"en": "zh", "zh": "en"}

with open(os.path.join(here, "page.html"), encoding="utf-8") as file:
    TEMPLATE = file.read()


def source_of(language, page):
    return os.path.join(root, FOLDERS[language], page + ".md")


def has_page(language, page):
    return page == "index" or os.path.exists(source_of(language, page))


def title_of(language, page):
    with open(source_of(language, page), encoding="utf-8") as source:
        return re.sub(r"`", "", source.readline().removeprefix("# ").strip())


def to_html(markdown):
    return subprocess.run(["cmark-gfm", "-e", "table", "-t", "html"], input=markdown,
                          capture_output=True, text=True, check=True).stdout


def slug(text):
    return re.sub(r"\s", "-", re.sub(r"[^\w\s-]", "", html.unescape(text).lower()).strip())


def plain(markup):
    return re.sub(r"<[^>]*>", "", markup)


def row(kind, formula, outcome="", name=""):
    attributes = f' data-row="{kind}"'
    if name:
        attributes += f' data-name="{html.escape(name)}"'
    if outcome:
        attributes += f' data-wanted="{html.escape(outcome)}"'
    shown = f"<label>{html.escape(name)} =</label> " if name else ""
    result = f" <samp>{html.escape(outcome)}</samp>" if outcome else ""
    return f"<div{attributes}>{shown}<code>{html.escape(formula)}</code>{result}</div>"


def live(rows, heading=""):
    return f'<div class="live">{heading}{"".join(rows)}</div>'


def formulas(text):
    """A block of formulas as rows; calls on lists and sequences stay as they are."""
    if re.search(r"^\[.*, (a list|in sequence)\]$", text, flags=re.M):
        return f'<pre class="code"><code>{html.escape(text)}</code></pre>'
    blocks, rows = [], []
    for line in text.strip().split("\n"):
        if line.startswith("[") and line.endswith("]"):
            if rows:
                blocks.append(live(rows))
            rows = []
        elif line.startswith("let "):
            name, value = line[4:].split(" = ", 1)
            rows.append(row("given", value.strip(), name=name.strip()))
        elif line.strip():
            formula, _, outcome = line.rpartition(" --> ")
            formula = formula.strip()
            is_check = formula.startswith("check ")
            rows.append(row("check" if is_check else "formula",
                            formula.removeprefix("check ") if is_check else formula, outcome.strip()))
    return "".join(blocks + [live(rows)])


def unquoted(word):
    return word[1:-1] if word[:1] == "'" == word[-1:] else word


def playground_link(state, wanted, words):
    told = f' data-wanted="{html.escape(wanted)}"' if wanted else ""
    address = html.escape("index.html#" + urlencode([("formula", ""), *state]))
    return f'<p class="try"><a href="{address}"{told}>{words["open"]}</a></p>'


def opened(text, files, words):
    """Files of definitions and tables that a session computes, as links to the playground."""
    links = []
    lines = text.strip("\n").split("\n")
    for at, line in enumerate(lines):
        made = re.fullmatch(r"\$ printf '([^']*)' > (\S+)", line)
        if made:
            files[made[2]] = made[1].replace("\\n", "\n").replace("%%", "%")
            continue
        found = re.fullmatch(r"\$ morandel (calc|each) (\S+)(.*)", line)
        if not found or found[2] not in files:
            continue
        following = next((i for i in range(at + 1, len(lines)) if lines[i].startswith("$ ")), len(lines))
        outcome = "\n".join(lines[at + 1:following])
        additions = re.findall(r" --add '([^=']+?) *= *([^']*)'", found[3])
        is_plain = re.sub(r" --add '[^']*'", "", found[3]) == "" and "morandel:" not in outcome
        wanted = outcome if is_plain else ""
        if found[1] == "calc":
            links.append(playground_link([("definitions", files[found[2]])], wanted, words))
        elif additions:
            columns = [("column", f"{title}={formula}") for title, formula in additions]
            links.append(playground_link([("csv", files[found[2]]), *columns], wanted, words))
    return "".join(links)


def sessions(text, words):
    """The formulas that a session computes, as rows below it."""
    rows = []
    lines = text.strip("\n").split("\n")
    for at, line in enumerate(lines):
        found = re.fullmatch(r"\$ morandel (?:--lang zh )?(?:eval )?('[^']*')((?: [^\s=']+=(?:'[^']*'|[^\s']+))*)", line)
        if not found:
            continue
        following = next((i for i in range(at + 1, len(lines)) if lines[i].startswith("$ ")), len(lines))
        outcome = " ".join(lines[at + 1:following])
        # What is warned of stands in front of what is printed.
        outcome = lines[following - 1] if outcome.startswith(("morandel: warning", "morandel: 警告")) else outcome
        number = re.search(r"\((?:error|错误) (\d+)\)", outcome)
        wanted = f"error {number[1]}" if number else "printed " + outcome
        block = []
        for pair in re.findall(r" ([^\s=']+)=('[^']*'|[^\s']+)", found[2]):
            block.append(row("given", unquoted(pair[1]), name=pair[0]))
        block.append(row("formula", unquoted(found[1]), wanted))
        rows.append(live(block))
    if not rows:
        return ""
    return f'<div class="tries"><p class="try">{words["try"]}</p>{"".join(rows)}</div>'


def code(found, words, files):
    language, text = found[1] or "", html.unescape(found[2])
    if language == "formulas":
        return formulas(text)
    kind = f' data-language="{language}"' if language else ""
    block = f'<pre class="code"{kind} tabindex="0"><code>{html.escape(text)}</code></pre>'
    if language != "console":
        return block
    return block + sessions(text, words) + opened(text, files, words)


def link(found, language):
    """Links between documents become links between pages; those to other files of the tree, text."""
    address, text = html.unescape(found[1]), found[2]
    if re.match(r"[a-z]+:|#", address):
        return found[0]
    path, _, fragment = address.partition("#")
    target = os.path.normpath(os.path.join(FOLDERS[language], path))
    for other, folder in FOLDERS.items():
        page = os.path.basename(target).removesuffix(".md")
        if os.path.dirname(target) == folder and target.endswith(".md") and has_page(other, page):
            away = "" if other == language else f"../{other}/"
            hash_part = f"#{fragment}" if fragment else ""
            return f'<a href="{away}{page}.html{html.escape(hash_part)}">{text}</a>'
    return text


def picture(found, language, folder):
    path = os.path.normpath(os.path.join(root, FOLDERS[language], html.unescape(found[1])))
    name = os.path.basename(path)
    shutil.copy(path, os.path.join(folder, "assets", name))
    return f'<img src="../assets/{name}" alt="{found[2]}" loading="lazy">'


def joined(body):
    """Chinese text has no blanks between its lines, but for blocks of code."""
    parts = re.split(r"(<pre>.*?</pre>)", body, flags=re.S)
    wide = "[\u2e80-\u9fff\uff00-\uffef]"
    parts[::2] = [re.sub(f"(?<={wide})\n(?={wide})", "", part) for part in parts[::2]]
    return "".join(parts)


def content(language, page, folder):
    words = WORDS[language]
    with open(source_of(language, page), encoding="utf-8") as source:
        body = joined(to_html(source.read()))
    contents, files = [], {}

    def heading(found):
        name = slug(plain(found[2]))
        if found[1] == "2":
            contents.append(f'<li><a href="#{name}">{plain(found[2])}</a></li>')
        return f'<h{found[1]} id="{name}">{found[2]}</h{found[1]}>'

    body = re.sub(r"<h([1-4])>(.*?)</h\1>", heading, body)
    body = re.sub(r'<a href="([^"]*)">(.*?)</a>', lambda found: link(found, language), body, flags=re.S)
    body = re.sub(r'<img src="([^"]*)" alt="([^"]*)" />',
                  lambda found: picture(found, language, folder), body)
    body = re.sub(r'<pre><code(?: class="language-(\w+)")?>(.*?)</code></pre>',
                  lambda found: code(found, words, files), body, flags=re.S)
    body = body.replace("<table>", '<div class="wide" tabindex="0"><table>').replace("</table>", "</table></div>")
    # The switch at the top is on every page.
    body = re.sub(r"(?:中文：|English: )<a [^>]*>[^<]*</a>[.。]?", "", body)
    body = re.sub(r"<p>\s*</p>\n?", "", body)
    aside = ""
    if len(contents) > 1:
        aside = f'<nav class="contents" aria-label="{words["contents"]}"><p>{words["contents"]}</p><ul>{"".join(contents)}</ul></nav>'
    return f'<div class="manual">{aside}<article>{body}</article></div>'


def write_page(folder, language, page, title, body):
    words = WORDS[language]
    items = []
    for other in PAGES:
        if has_page(language, other):
            current = ' aria-current="page"' if other == page else ""
            items.append(f'<li><a href="{other}.html"{current}>{html.escape(title_of(language, other))}</a></li>')
    counterpart = page if has_page(OTHER[language], page) else "index"
    replacements = {
        **words,
        "title": html.escape(title),
        "body": body,
        "items": "".join(items),
        "switch": f"../{OTHER[language]}/{counterpart}.html",
        "keeps": " data-keeps-state" if page == "index" else "",
        "current": ' aria-current="page"' if page == "index" else "",
        "kind": "playground" if page == "index" else "page",
    }
    text = re.sub(r"\{\{(\w+)\}\}", lambda found: replacements[found[1]], TEMPLATE)
    with open(os.path.join(folder, language, page + ".html"), "w", encoding="utf-8") as out:
        out.write(text)


def playground(language):
    with open(os.path.join(here, f"playground.{language}.html"), encoding="utf-8") as source:
        text = source.read()
    with open(os.path.join(here, f"start.{language}.txt"), encoding="utf-8") as source:
        start = source.read()
    # Sections of what the playground begins with.
    sections = re.findall(r"^\[(\w+)\]\n(.*?)\n(?=\[|\Z)", start, flags=re.M | re.S)
    pairs = []
    for name, body in sections:
        pairs += [(name, line) for line in body.split("\n")] if name in ("value", "column") else [(name, body)]
    return text.replace("{{start}}", html.escape(urlencode([(n, b.strip()) for n, b in pairs if b.strip()])))


def scripts(package, folder):
    with open(os.path.join(package, "morandel.wasm"), "rb") as wasm:
        encoded = base64.b64encode(wasm.read()).decode()
    engine = bundle([os.path.join(package, name) for name in ("memory.js", "exchange.js", "engine.js")])
    with open(os.path.join(folder, "assets", "engine.js"), "w", encoding="utf-8") as out:
        out.write(f'"use strict";\n(() => {{\n{engine}\n'
                  "globalThis.startMorandel = async () => {\n"
                  "    const bytes = Uint8Array.from(atob(encoded), (c) => c.charCodeAt(0));\n"
                  "    return start((await WebAssembly.instantiate(bytes, imports)).instance);\n"
                  f'}};\nconst encoded =\n    "{encoded}";\n}})();\n')
    pages = bundle([os.path.join(here, name + ".js") for name in MODULES])
    with open(os.path.join(folder, "assets", "pages.js"), "w", encoding="utf-8") as out:
        out.write(f'"use strict";\n(() => {{\n{pages}}})();\n')


def main(package, folder):
    shutil.rmtree(folder, ignore_errors=True)
    for name in ("assets", *FOLDERS):
        os.makedirs(os.path.join(folder, name))
    scripts(package, folder)
    for name in ("style.css", "choose.js", "icon.svg"):
        shutil.copy(os.path.join(here, name), os.path.join(folder, "assets", name))
    shutil.copy(os.path.join(here, "index.html"), folder)
    for language in FOLDERS:
        write_page(folder, language, "index", WORDS[language]["playground"], playground(language))
        for page in PAGES:
            if has_page(language, page):
                write_page(folder, language, page, title_of(language, page), content(language, page, folder))


if __name__ == "__main__":
    main(*sys.argv[1:])
