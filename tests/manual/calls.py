# SPDX-License-Identifier: MIT
"""A page of the manual says of each command which system calls it makes. Runs its examples under strace and looks for
every call that a section cites as name(2) among those that the section's own lines brought about, lines with another
command left out.

    calls.py PROGRAM PAGE    ends with 1 when a cited call is not made, with 77 when nothing can be traced here
"""

import bisect
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.dont_write_bytecode = True
from pages import LLAMADA, sections  # noqa: E402

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "practicas"))
from _practica import notacion  # noqa: E402
from _practica.comprobar import Ejecucion, Falla, usuario_actual  # noqa: E402
from _practica.conductor import Conductor, Problema  # noqa: E402

NOTHING_TO_TRACE = 77
LINES_OF_THE_TOOL = 2  # what the practice tool types in a new shell; until then the program is being loaded

# Names of a call in the kernel, where they are not that of the manual. A text after the blank has to stand among the
# arguments, after a "!" it must not.
KERNEL = {
    "dup2": ["dup2", "dup3"],
    "exit": ["exit_group"],
    "fork": ["clone", "clone3", "fork"],
    "fstatat": ["newfstatat", "fstatat64", "statx"],
    "getdents": ["getdents64", "getdents"],
    "getrlimit": ["prlimit64", "getrlimit"],
    "link": ["link", "linkat"],
    "lseek": ["lseek", "_llseek"],
    "lstat": ["lstat", "lstat64", "newfstatat AT_SYMLINK_NOFOLLOW", "statx AT_SYMLINK_NOFOLLOW"],
    "mkdir": ["mkdir", "mkdirat"],
    "mmap": ["mmap", "mmap2"],
    "open": ["open", "openat"],
    "pause": ["pause", "ppoll"],
    "pipe": ["pipe", "pipe2"],
    "readlink": ["readlink", "readlinkat"],
    "rmdir": ["rmdir", "unlinkat AT_REMOVEDIR"],
    "seteuid": ["setresuid", "setresuid32"],
    "sigaction": ["rt_sigaction"],
    "sigprocmask": ["rt_sigprocmask"],
    "sigsuspend": ["rt_sigsuspend"],
    "stat": ["stat", "stat64", "newfstatat !AT_SYMLINK_NOFOLLOW", "statx !AT_SYMLINK_NOFOLLOW"],
    "symlink": ["symlink", "symlinkat"],
    "unlink": ["unlink", "unlinkat !AT_REMOVEDIR"],
    "waitpid": ["wait4", "waitpid"],
}
WITHOUT_A_CALL = {"time"}  # the C library finds the answer in memory that the kernel keeps for it (vDSO)

_LINE = re.compile(r"(\d+) +(\d+\.\d+) (?:(\w+)\(|<\.\.\. \w+ resumed>)(.*)")


def kernel_names(call):
    return [name.partition(" ") for name in KERNEL.get(call, [call])]


def made(call, traced):
    """Whether one of the traced (name, arguments) is this call. The shell reads and writes its own streams all the time:
    descriptors 0 to 2 do not prove that a command reads or writes."""
    for name, arguments in traced:
        for wanted, _, text in kernel_names(call):
            if name != wanted or (call in ("read", "write") and re.match(r"[012],", arguments)):
                continue
            if not text or (text[1:] not in arguments if text[0] == "!" else text in arguments):
                return True
    return False


def trace(program, page, calls):
    """Runs the page's sheet. [(time at which a step began, step)], [(time, name, arguments) of a call of a shell or of
    its children before they are another program]."""
    names = sorted({name for call in calls | {"read", "execve"} for name, _, _ in kernel_names(call)})
    with tempfile.TemporaryDirectory(prefix="manual.") as scratch:
        os.chmod(scratch, 0o755)
        traced_program = Path(scratch, "shell")
        order = ["strace", "-D", "-f", "--seccomp-bpf", "-q", "-q", "-ttt", "-s", "64", "-e", "signal=none"]
        order += ["-e", "trace=" + ",".join("?" + name for name in names)]
        # Two signals that the interpreter ignores are to be in the shell what they are in one started by hand.
        traced_program.write_text(
            f"#!{sys.executable} -I\nimport os, signal\n"
            "for number in signal.SIGPIPE, signal.SIGXFSZ: signal.signal(number, signal.SIG_DFL)\n"
            f"os.execvp('strace', {order!r} + ['-o', f'{scratch}/trace.{{os.getpid()}}', {os.path.abspath(program)!r}])\n"
        )
        traced_program.chmod(0o755)
        sheet = notacion.leer(page)
        steps = []
        with Conductor(str(traced_program), page.stem) as conductor:
            run = Ejecucion(sheet, conductor)
            for n, step in enumerate(sheet.pasos(usuario_actual())):
                steps.append((time.time(), step))
                run.paso(n)
            conductor.despedir()
        seen = []
        for file in Path(scratch).glob("trace.*"):
            lines_read, other_program = 0, set()
            for line in file.read_text(encoding="utf-8", errors="replace").splitlines():
                parts = _LINE.match(line)
                if not parts:
                    continue
                pid, when, name, arguments = parts.groups()
                lines_read += name == "read" and re.match(r'0, ".*\\n",', arguments) is not None
                if lines_read < LINES_OF_THE_TOOL:
                    continue
                if name and pid not in other_program:
                    seen.append((float(when), name, arguments))
                if "execve" in line and arguments.endswith("= 0"):
                    other_program.add(pid)
    return steps, seen


def section_of(step, found):
    """Name of the command whose section the step proves something of, or None: what a line with another command in it
    does is that command's doing."""
    for start, name, body in reversed(found):
        if start < step.linea:
            names = {name, *re.findall("`(.+?)`", re.search("^- Alias: (.*)", body, re.M)[1])}
            typed = isinstance(step, notacion.Orden) and not step.tecla and step.texto.split()[:1]
            return None if typed and typed[0] not in names else name
    return None


def check(program, page):
    """Complaints about one page, and how many citations held."""
    found = sections(page)
    cited = {name: dict.fromkeys(call for call, part in LLAMADA.findall(body) if part == "2") for _, name, body in found}
    wanted = [(name, call) for name in cited for call in cited[name] if call not in WITHOUT_A_CALL]
    try:
        steps, seen = trace(program, page, {call for _, call in wanted})
    except (Falla, Problema, notacion.Error) as reason:
        return [f"{page.name}: the examples do not pass under strace: {reason}"], 0
    by_section = {name: [] for name in cited}
    began = [when for when, _ in steps]
    for when, name, arguments in seen:
        at = bisect.bisect(began, when)
        section = section_of(steps[at - 1][1], found) if at else None
        if section:
            by_section[section].append((name, arguments))
    missing = [
        f"{page.name}: {name}: its example does not make the call {call}(2)"
        for name, call in wanted
        if not made(call, by_section[name])
    ]
    return missing, len(wanted) - len(missing)


def can_trace():
    try:
        return subprocess.run(["strace", "-D", "-o", "/dev/null", "true"], stderr=subprocess.DEVNULL).returncode == 0
    except FileNotFoundError:
        return False


def main():
    program, page = sys.argv[1:]
    if not can_trace():
        print("no strace here, or it may not trace: nothing checked")
        return NOTHING_TO_TRACE
    missing, held = check(program, Path(page))
    print(*missing, sep="\n", end="\n" if missing else "")
    print(f"{page}: {held} cited calls seen, {len(missing)} not")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
