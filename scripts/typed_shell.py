# SPDX-License-Identifier: MIT
"""The program on a terminal of its own, typed into line by line."""

import os
import pty
import select
import signal
import sys

FIRST_PROMPT = ") "


class TypedShell:
    def __init__(self, program, directory):
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(directory)
            os.closerange(3, 256)
            for name in signal.SIGPIPE, signal.SIGXFSZ:  # which this language ignores
                signal.signal(name, signal.SIG_DFL)
            os.execve(program, ["shell"], {"PATH": "/usr/bin:/bin", "HOME": directory, "LANG": "C.UTF-8"})
        self._read(FIRST_PROMPT)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.terminal)
        os.waitpid(self.pid, 0)

    def _read(self, end):
        """What the program prints up to `end`, without it."""
        text = ""
        while not text.endswith(end):
            if not select.select([self.terminal], [], [], 30)[0]:
                sys.exit(f"no {end!r} in {text!r}")
            text += os.read(self.terminal, 4096).decode()
        return text.removesuffix(end).replace("\r", "")

    def type(self, line, end):
        """Types a line; returns the answer up to the prompt `end`."""
        os.write(self.terminal, f"{line}\n".encode())
        return self._read(end).removeprefix(f"{line}\n")
