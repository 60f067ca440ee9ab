# SPDX-License-Identifier: MIT
"""Types a short session of a practice sheet and has the viewer draw what the kernel knows of it then.

Arguments: the folder of the programs, that of the sheets, the numbers of the sheets (none: all that have a picture)."""

import glob
import os
import re
import shutil
import signal
import subprocess
import sys
import time

from typed_shell import FIRST_PROMPT, TypedShell

# {pid}: the shell's, a key that nobody else uses. {1}, {2}...: the addresses in what was printed, in order. "b> ": in a
# second shell. "kill -X ORDER": sends a signal to the child that runs that, or to the shell itself when it says so.
SHEETS = {
    1: ("1", ["open letras.txt cr rw", "writestr 3 abcdefghij", "dup 3", "lseek 4 2", "open letras.txt", "readstr 5 3",
              "open diario.txt cr wo ap", "writestr 6 uno"]),
    3: ("2", ["malloc 100", "malloc 30000000", "memfill {2} 3000000 1", "mmap carta.txt rw", "memfill {3} 7 88",
              "createshared {pid} 4096", "b> shared {pid}"]),
    4: ("2", ["mem -vars", "malloc 100", "mmap carta.txt r", "recurse 300"]),
    5: ("2", ["createshared {pid} 16384", "memfs-format {1}", "memfs-cp uno.txt {1}:uno", "memfs-cp dos.txt {1}:dos",
              "memfs-cp tres.txt {1}:tres", "memfs-del {1}:dos"]),
    8: ("4", ["search -path", "back sleep 1000", "back sleep 1001", "kill -STOP sleep 1001", "back true",
              "backpipe sleep 1002 % sleep 1003"]),
    9: ("3", ["sigignore USR1", "sighandler -Frestart INT", "sigmask USR2 TERM", "kill -USR2 shell"]),
}
FILES = {"carta.txt": "hola, mundo\n", "uno.txt": "1" * 4000, "dos.txt": "2" * 2500, "tres.txt": "3" * 3500}
PLACE = "/tmp/practica"  # a name that reads well in the picture


def children(pid):
    """The processes that a process has started, as numbers and command lines."""
    with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as listed:
        numbers = listed.read().split()
    found = {}
    for number in numbers:
        with open(f"/proc/{number}/cmdline", "rb") as line:
            found[int(number)] = line.read().rstrip(b"\0").replace(b"\0", b" ").decode()
    return found


def settle(pid):
    """Waits until every child runs its own program, or has ended."""
    deadline = time.monotonic() + 10
    while "shell" in children(pid).values():
        if time.monotonic() > deadline:
            sys.exit("a child does not become its program")
        time.sleep(0.01)


def send(line, pid):
    name, order = line.removeprefix("kill -").split(" ", 1)
    target = pid if order == "shell" else next(p for p, words in children(pid).items() if words == order)
    os.kill(target, signal.Signals["SIG" + name])


def play(lines, shell, other):
    addresses = []
    for line in lines:
        for number, address in enumerate(addresses, 1):
            line = line.replace(f"{{{number}}}", address)
        line = line.replace("{pid}", str(shell.pid))
        if line.startswith("kill -"):
            send(line, shell.pid)
        elif line.startswith("b> "):
            other.type(line.removeprefix("b> "), FIRST_PROMPT)
        else:
            addresses += re.findall(r" en (0x[0-9a-f]+)", shell.type(line, FIRST_PROMPT))
            settle(shell.pid)


def draw(programs, sheets, number):
    panels, lines = SHEETS[number]
    sheet = os.path.basename(glob.glob(f"{sheets}/{number:02}-*.md")[0])
    picture = f"{sheets}/imagenes/{sheet.removesuffix('.md')}.svg"
    os.makedirs(os.path.dirname(picture), exist_ok=True)
    os.mkdir(PLACE)
    try:
        for name, text in FILES.items():
            with open(f"{PLACE}/{name}", "w", encoding="ascii") as file:
                file.write(text)
        with TypedShell(f"{programs}/shell", PLACE) as shell, TypedShell(f"{programs}/shell", PLACE) as other:
            try:
                play(lines, shell, other)
                subprocess.run([f"{programs}/mirador", "--paneles", panels, "--svg", picture, str(shell.pid)], check=True,
                               env={"LC_ALL": "C.UTF-8"})
            finally:
                shell.type(f"delkey {shell.pid}", FIRST_PROMPT)
                for child in children(shell.pid):
                    os.kill(child, signal.SIGKILL)
    finally:
        shutil.rmtree(PLACE)
    print(picture)


def main():
    programs, sheets, *numbers = sys.argv[1:]
    for number in map(int, numbers or SHEETS):
        if number not in SHEETS:
            sys.exit(f"sheet {number} has no picture")
        draw(programs, sheets, number)


main()
