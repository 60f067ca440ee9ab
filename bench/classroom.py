# SPDX-License-Identifier: MIT
"""What a class costs in memory: starts N shells at once, each through the launcher on a terminal of its own, waits until
every one stands at its prompt, and prints what they and their helpers hold. Arguments: the launcher, N (500)."""

import collections
import fcntl
import os
import pty
import resource
import select
import signal
import struct
import sys
import tempfile
import termios
import time


def kernel_memory():
    """KiB that the kernel itself holds for processes: their page tables and stacks, and its records."""
    with open("/proc/meminfo") as info:
        return sum(int(line.split()[1]) for line in info
                   if line.startswith(("PageTables:", "KernelStack:", "SUnreclaim:")))


def start(launcher, home):
    pid, terminal = pty.fork()
    if pid == 0:
        fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 80, 0, 0))
        os.environ.update(HOME=home, TERM="xterm", LANG="C.UTF-8")
        os.execv(launcher, [launcher])
    return pid, terminal


def wait_for_prompt(terminal):
    seen, end = b"", time.monotonic() + 120
    while b"%) " not in seen:
        if not select.select([terminal], [], [], max(0, end - time.monotonic()))[0]:
            sys.exit(f"no prompt in {seen!r}")
        seen += os.read(terminal, 4096)


def family(pids):
    """These processes and what descends from them."""
    parents = collections.defaultdict(list)
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/stat") as stat:
                parents[int(stat.read().rpartition(")")[2].split()[1])].append(int(name))
        except FileNotFoundError:
            pass
    for pid in (found := list(pids)):
        found += parents[pid]
    return found


def main():
    launcher, count = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 500
    resource.setrlimit(resource.RLIMIT_NOFILE, (4096, resource.getrlimit(resource.RLIMIT_NOFILE)[1]))
    with tempfile.TemporaryDirectory() as home:
        before = kernel_memory()
        students = [start(launcher, home) for _ in range(count)]
        try:
            for _, terminal in students:
                wait_for_prompt(terminal)
            time.sleep(1)  # what the kernel counts settles
            kernel = kernel_memory() - before
            pss, number = collections.Counter(), collections.Counter()
            for pid in family(pid for pid, _ in students):
                with open(f"/proc/{pid}/comm") as comm, open(f"/proc/{pid}/smaps_rollup") as rollup:
                    name = comm.read().strip()
                    pss[name] += next(int(line.split()[1]) for line in rollup if line.startswith("Pss:"))
                    number[name] += 1
        finally:
            for pid, terminal in students:
                os.close(terminal)
                os.kill(pid, signal.SIGHUP)
                os.waitpid(pid, 0)
    for name in pss:
        print(f"{name}: {number[name]} processes, PSS {pss[name] / number[name]:.0f} KiB each")
    print(f"{count} students: {sum(pss.values()) / count:.0f} KiB each and {kernel / count:.0f} KiB in the kernel, "
          f"{(sum(pss.values()) + kernel) / 1024:.0f} MiB in all")


main()
