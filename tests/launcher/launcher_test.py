# SPDX-License-Identifier: MIT
"""Drives the launcher through pipes and pseudo-terminals. Arguments: the launcher, the program, the shim to preload."""

import fcntl
import os
import pty
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

LAUNCHER, PROGRAM, SHIM = sys.argv[1:4]
LIMIT = 20  # seconds that any wait may last


class Terminal:
    """The launcher on a pseudo-terminal of its own, with a home of its own."""

    def __init__(self, home, columns=80, path=None):
        environment = {"HOME": home, "TERM": "xterm", "LD_PRELOAD": SHIM, "LANG": "C.UTF-8", "INPUTRC": "/dev/null",
                       "PATH": path or os.environ["PATH"]}
        self.pid, self.descriptor = pty.fork()
        if self.pid == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
            os.execve(LAUNCHER, [LAUNCHER], environment)
        self.seen = b""

    def expect(self, text):
        """Reads until `text` has come; returns everything up to it."""
        text, end = text.encode(), time.monotonic() + LIMIT
        while text not in self.seen:
            if not select.select([self.descriptor], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"no {text!r} in {self.seen!r}")
            try:
                self.seen += os.read(self.descriptor, 4096)
            except OSError:
                raise AssertionError(f"the end, and no {text!r} in {self.seen!r}") from None
        before, _, self.seen = self.seen.partition(text)
        return before.decode()

    def type(self, text):
        os.write(self.descriptor, text.encode())

    def end(self):
        """Waits for the launcher's end; returns its exit status and what was still printed."""
        try:
            while select.select([self.descriptor], [], [], LIMIT)[0]:
                self.seen += os.read(self.descriptor, 4096)
            os.kill(self.pid, signal.SIGKILL)
        except OSError:
            pass  # the other side is closed
        os.close(self.descriptor)
        return os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1]), self.seen.decode()


class Launcher(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.home = directory.name
        self.bare = os.path.join(self.home, "bin")  # a search path without rlwrap
        os.mkdir(self.bare)
        for tool in "mkdir", "stty":
            os.symlink(shutil.which(tool), os.path.join(self.bare, tool))

    def run_launcher(self, *arguments):
        return subprocess.run([LAUNCHER, *arguments], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                              timeout=LIMIT)

    def test_turns_into_the_program_away_from_a_terminal(self):
        script = b"search\nlistopen 5\nppid\nexecute\nhelp -all\nopen a b\nsegmentation\npid\n"
        sessions = [subprocess.run([program, "-p"], input=script, capture_output=True, timeout=LIMIT,
                                   env={**os.environ, "LD_PRELOAD": SHIM}) for program in (PROGRAM, LAUNCHER)]
        self.assertEqual(sessions[0].stdout, sessions[1].stdout)
        self.assertEqual(sessions[0].stderr, sessions[1].stderr)
        self.assertEqual(sessions[0].returncode, sessions[1].returncode)
        named = subprocess.run([LAUNCHER], input=b"", capture_output=True, timeout=LIMIT,
                               env={**os.environ, "LD_PRELOAD": SHIM})
        self.assertIn(f"Ejecutar {PROGRAM} -p".encode(), named.stdout)

    def test_says_once_what_rlwrap_would_give(self):
        for start in range(2):
            terminal = Terminal(self.home, path=self.bare)
            self.assertEqual("rlwrap" in terminal.expect("Iniciando shell"), start == 0)
            terminal.type("listopen 5\rexit\r")
            terminal.expect("descriptor: 3, offset: (  )-> no usado")
            status, rest = terminal.end()
            self.assertEqual(status, 0)
            self.assertNotIn("shell-docente:", rest)

    def test_says_which_signal_ended_the_program_and_what_would_have_saved_it(self):
        for typed, status, words in (("segmentation\r", 139, ("SEGV", "protectsegv", "sigunmask SEGV", "10-fallos.md")),
                                     ("\x03", 130, ("INT", "sighandler -Frestart INT", "00-primeros-pasos.md")),
                                     ("fpe\r", 136, ("FPE", "protectfpe", "10-fallos.md"))):
            for path in (self.bare, None) if shutil.which("rlwrap") else (self.bare,):
                with self.subTest(status=status, path=path):
                    terminal = Terminal(self.home, path=path)
                    terminal.expect("%) ")
                    terminal.type(typed)
                    code, rest = terminal.end()
                    self.assertEqual(code, status)
                    line = rest.strip().splitlines()[-1]
                    for word in (f"shell-docente: estado {status}", *words):
                        self.assertIn(word, line)
                    self.assertNotRegex(rest, "Segmentation|Floating")  # nor another word about it

    def test_hands_on_the_status_of_a_program_in_the_shell_s_place(self):
        terminal = Terminal(self.home)
        terminal.expect("%) ")
        terminal.type("execute /bin/false\r")
        code, rest = terminal.end()
        self.assertEqual(code, 1)
        self.assertNotIn("shell-docente:", rest)

    @unittest.skipUnless(shutil.which("rlwrap"), "rlwrap is not here")
    def test_edits_completes_and_remembers_lines(self):
        terminal = Terminal(self.home)
        terminal.expect("%) ")
        terminal.type("memfs-li\t-?\r")  # a name with a dash, completed whole
        terminal.expect("memfs-list -?")
        terminal.expect("memfs-list")
        open(os.path.join(self.home, "largo.txt"), "w").close()
        terminal.type(f"cat <{self.home}/larg\t\r")  # a file name glued to a redirection
        terminal.expect("largo.txt")
        terminal.type("sigmask\r")
        terminal.expect("SENALES")
        terminal.type("exit\r")
        self.assertEqual(terminal.end()[0], 0)
        self.assertTrue(os.path.exists(os.path.join(self.home, ".local/state/shell-docente/historial")))
        terminal = Terminal(self.home)
        terminal.expect("%) ")
        terminal.type("\x1b[A\x1b[A\r")  # the last line but one of the session before
        terminal.expect("SENALES")
        terminal.type("\x04")
        self.assertEqual(terminal.end()[0], 0)

    def test_starts_plainly_on_a_terminal_without_width(self):
        terminal = Terminal(self.home, columns=0)
        terminal.expect("%) ")
        terminal.type("exit\r")
        self.assertEqual(terminal.end()[0], 0)

    def test_answers_for_itself(self):
        self.assertRegex(self.run_launcher("--version").stdout, r"^shell-docente \d+\.\d+\.\d+\n$")
        self.assertIn("--practica", self.run_launcher("--help").stdout)
        absent = self.run_launcher("--manual", "nada")
        self.assertEqual((absent.returncode, absent.stdout), (1, ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
