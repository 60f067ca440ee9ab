# SPDX-License-Identifier: MIT
"""Types lines into the program on a terminal and draws what it answered. Arguments: the program, the picture to write."""

import os
import re
import sys
import tempfile

from rich.console import Console
from rich.terminal_theme import TerminalTheme
from rich.text import Text

from typed_shell import FIRST_PROMPT, TypedShell

LINES = """\
open notas.txt cr rw
writestr 3 hola mundo
dup 3
lseek 4 5
readstr 3 5
listopen 5
protectsegv
segmentation
sigmask
""".splitlines()
HIDDEN = "search -path", "prompt %B>%b"  # before the picture begins
PROMPT = "practica> "
THEME = TerminalTheme((30, 34, 42), (220, 223, 228),
                      [(30, 34, 42), (224, 108, 117), (152, 195, 121), (229, 192, 123), (97, 175, 239), (198, 120, 221),
                       (86, 182, 194), (220, 223, 228)])


def main():
    program, picture = sys.argv[1:]
    console = Console(record=True, width=72, file=open(os.devnull, "w"), color_system="truecolor")
    with tempfile.TemporaryDirectory() as scratch:
        directory = os.path.join(scratch, "practica")
        os.mkdir(directory)
        with TypedShell(program, directory) as shell:
            shell.type(HIDDEN[0], FIRST_PROMPT)
            shell.type(HIDDEN[1], PROMPT)
            for line in LINES:
                answer = shell.type(line, PROMPT)
                console.print(Text.assemble((PROMPT, "green"), (line, "bold")))
                console.print(Text(answer.rstrip("\n").expandtabs()), end="\n" if answer else "")
    console.save_svg(picture, title="shell-docente", theme=THEME)
    with open(picture, encoding="utf-8") as drawn:
        svg = drawn.read()
    # No fonts from elsewhere: a page that shows the picture asks nobody for anything.
    svg = re.sub(r"\s*@font-face \{.*?\}", "", svg, flags=re.DOTALL)
    svg = svg.replace("font-family: Fira Code, monospace", "font-family: ui-monospace, Menlo, Consolas, monospace")
    with open(picture, "w", encoding="utf-8") as drawn:
        drawn.write(svg)


main()
