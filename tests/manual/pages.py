# SPDX-License-Identifier: MIT
"""The pages of the manual and what the program says of itself, and whether the two agree.

    pages.py PROGRAM            holds the pages against the program; prints what differs, ends with 1
    pages.py --write PROGRAM    writes the help texts and the aliases into the pages first
"""

import re
import subprocess
import sys
from pathlib import Path

MANUAL = Path(__file__).resolve().parents[2] / "docs" / "manual"
HECHO = re.compile(r"```ayuda\n.*?^```\n\n- Alias: [^\n]*\n", re.M | re.S)  # what --write puts below a heading
LLAMADA = re.compile(r"`([a-z_0-9]+)\(([23])\)`")


def pages():
    return sorted(MANUAL.glob("[0-9]-*.md"))


def sections(page):
    """(line of the heading, name of the command, text below the heading) of each section of a page."""
    text = page.read_text(encoding="utf-8")
    headings = list(re.finditer(r"^## (\S+)\n", text, re.M))
    ends = [heading.start() for heading in headings[1:]] + [len(text)]
    return [
        (text.count("\n", 0, heading.start()) + 1, heading[1], text[heading.end() : end])
        for heading, end in zip(headings, ends)
    ]


def ask(program, lines):
    """What the program prints for each of the lines."""
    mark = "\x1f"
    typed = "".join(f"{line}\n" for line in (f"prompt {mark}", *lines))
    printed = subprocess.run([program], input=typed, stdout=subprocess.PIPE, text=True, check=True).stdout
    answers = printed.split(mark)[1:-1]
    if len(answers) != len(lines):
        sys.exit(f"{program} answers {len(answers)} of {len(lines)} lines")
    return answers


def commands(program):
    """Name to (help text, aliases) of every command, in the order of the program's table."""
    aliases = {}
    for row in ask(program, ["checkalias"])[0].split("\n***")[1:]:
        name, _, rest = row.partition(":")
        aliases[name] = [alias for alias in dict.fromkeys(rest.split()) if alias != name]
    helps = ask(program, [f"help {name}" for name in aliases])
    return {name: (text, aliases[name]) for name, text in zip(aliases, helps)}


def generated(text, aliases):
    return f"```ayuda\n{text}```\n\n- Alias: {', '.join(f'`{alias}`' for alias in aliases) or 'ninguno'}\n"


def write(known):
    for page in pages():
        text = page.read_text(encoding="utf-8")
        for _, name, body in sections(page):
            if name in known:
                made = generated(*known[name])
                rest = HECHO.sub("", body, count=1).lstrip("\n")
                old, new = f"## {name}\n{body}", f"## {name}\n\n{made}{rest}"
                text = text.replace(old, new, 1)
        if text != page.read_text(encoding="utf-8"):
            page.write_text(text, encoding="utf-8")
            print(f"written: {page.name}")


def complaints(known):
    """What is wrong with the pages, a line each."""
    seen = {}
    for page in pages():
        for line, name, body in sections(page):
            where = f"{page.name}:{line}: {name}"
            if name not in known:
                yield f"{where} is no command"
                continue
            if name in seen:
                yield f"{where} has a section in {seen[name]} too"
            seen[name] = page.name
            text, aliases = known[name]
            if not body.startswith("\n" + generated(text, aliases)):
                yield f"{where}: not the program's help text and aliases (run scripts/manual)"
            if not re.search(r"^- Llamadas: ", body, re.M):
                yield f"{where}: no line «- Llamadas: »"
            if "**Si falla.**" not in body:
                yield f"{where}: no «**Si falla.**»"
            names = "|".join(re.escape(word) for word in (name, *aliases))
            examples = "".join(re.findall(r"^```sesion\n(.*?)^```", body, re.M | re.S))
            if not re.search(rf"^(shell [a-z])?> *({names})( |$)", examples, re.M):
                yield f"{where}: no example that runs it"
    if len(pages()) == 7:
        for name in known.keys() - seen.keys():
            yield f"{name} has no section"


def main():
    program = sys.argv[-1]
    known = commands(program)
    if "--write" in sys.argv:
        write(known)
    wrong = sorted(complaints(known))
    print(*wrong, sep="\n", end="\n" if wrong else "")
    print(f"{len(known)} commands, {sum(len(sections(page)) for page in pages())} sections, {len(wrong)} complaints")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
