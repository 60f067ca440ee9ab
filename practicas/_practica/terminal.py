# SPDX-License-Identifier: MIT
"""A shell on a pseudo-terminal of its own, and what the kernel tells of it: whether it reads, ended, or is busy."""

import array
import fcntl
import os
import platform
import re
import resource
import select
import signal
import struct
import termios
import time

COLUMNAS, FILAS = 80, 24
PILA = 8 << 20  # bytes

# Number of the system call read, by machine.
_READ = {"x86_64": 0, "aarch64": 63, "riscv64": 63, "loongarch64": 63, "i686": 3, "armv7l": 3, "ppc64le": 3, "s390x": 3}


def _leer(camino):
    try:
        with open(camino, encoding="ascii", errors="replace") as f:
            return f.read()
    except OSError:
        return ""


def _limitar_pila():
    """The usual stack: without a limit it never overflows, and the kernel lays the address space out the other way round."""
    _, duro = resource.getrlimit(resource.RLIMIT_STACK)
    if duro == resource.RLIM_INFINITY or duro > PILA:
        resource.setrlimit(resource.RLIMIT_STACK, (PILA, duro))


def descendientes(pid):
    """The process and all that it brought about and are still its descendants."""
    todos = [pid]
    for uno in todos:
        todos += map(int, _leer(f"/proc/{uno}/task/{uno}/children").split())
    return todos


def _duerme(pid):
    return _leer(f"/proc/{pid}/stat").rpartition(")")[2].split()[:1] == ["S"]


def _veces_cedida(pid):
    """How often the process has gone to sleep by itself: it grows with every read that waits."""
    encontrado = re.search(r"^voluntary_ctxt_switches:\s*(\d+)", _leer(f"/proc/{pid}/status"), re.M)
    return int(encontrado.group(1)) if encontrado else -1


class Terminal:
    """One shell. salida gathers what it and its children print."""

    def __init__(self, programa, directorio, entorno, eco=False):
        self._maestro, self._esclavo = os.openpty()
        self._nombre = os.ttyname(self._esclavo)
        modos = termios.tcgetattr(self._esclavo)
        modos[1] &= ~termios.OPOST  # the bytes as the program writes them
        if not eco:
            modos[3] &= ~termios.ECHO
        termios.tcsetattr(self._esclavo, termios.TCSANOW, modos)
        fcntl.ioctl(self._esclavo, termios.TIOCSWINSZ, struct.pack("HHHH", FILAS, COLUMNAS, 0, 0))
        os.set_blocking(self._maestro, False)
        self.salida = bytearray()
        self.estado = None  # once ended: exit status, or the name of the signal
        self._leia = None  # who was reading when the last line was typed, and how often it had slept
        self._sincronias = 0
        self.pid = os.fork()
        if self.pid == 0:
            self._ser_programa(programa, directorio, entorno)

    def _ser_programa(self, programa, directorio, entorno):
        try:
            os.setsid()
            fcntl.ioctl(self._esclavo, termios.TIOCSCTTY, 0)
            for df in (0, 1, 2):
                os.dup2(self._esclavo, df)
            os.closerange(3, os.sysconf("SC_OPEN_MAX") if os.sysconf("SC_OPEN_MAX") < 1 << 20 else 1 << 16)
            for senal in signal.valid_signals() - {signal.SIGKILL, signal.SIGSTOP}:
                signal.signal(senal, signal.SIG_DFL)
            signal.pthread_sigmask(signal.SIG_SETMASK, ())
            os.umask(0o022)
            _limitar_pila()
            os.chdir(directorio)
            os.execve(programa, [programa], entorno)
        finally:
            os._exit(127)

    def fileno(self):
        return self._maestro

    def bombear(self):
        """Takes in what has been printed so far, without waiting."""
        try:
            while True:
                trozo = os.read(self._maestro, 65536)
                if not trozo:
                    return
                self.salida += trozo
        except OSError:  # nothing there, or nobody on the other side any more
            return

    def sincronizar(self):
        """Takes in all that was printed before this call: what a program wrote travels through the kernel for a while,
        in order, so a mark of our own put after it shows when all of it has come."""
        self._sincronias += 1
        marca = b"\x1c%d\x1c" % self._sincronias
        os.write(self._esclavo, marca)
        limite = time.monotonic() + 20
        while (sitio := self.salida.find(marca)) < 0 and time.monotonic() < limite:
            select.select([self._maestro], [], [], 1)
            self.bombear()
        if sitio >= 0:
            del self.salida[sitio : sitio + len(marca)]

    def _lector(self):
        """(pid, times slept) of the process that waits in a read of this terminal, or None."""
        for pid in descendientes(self.pid):
            llamada = _leer(f"/proc/{pid}/syscall").split()
            if not llamada and pid == self.pid and self._duerme_tras_prompt():
                return pid, _veces_cedida(pid)
            # A traced process stops before a call and after it, and looks then as if it were in it; but it does not sleep.
            if len(llamada) > 1 and llamada[0] == str(_READ.get(platform.machine(), 0)) and _duerme(pid):
                try:
                    destino = os.readlink(f"/proc/{pid}/fd/{int(llamada[1], 16)}")
                except OSError:
                    continue
                if destino in (self._nombre, "/dev/tty"):
                    return pid, _veces_cedida(pid)
        return None

    def _duerme_tras_prompt(self):
        """Where the kernel does not tell what a process waits for (another user's, or no such file)."""
        return self.salida.endswith(b"\x1f") and _duerme(self.pid)

    def _sin_leer(self):
        """Typed bytes that nobody has taken yet."""
        cuantos = array.array("i", [0])
        fcntl.ioctl(self._esclavo, termios.FIONREAD, cuantos)
        return cuantos[0]

    def lee(self):
        """Whether somebody waits for the next line: a reader asleep, everything typed taken, and not the same sleep as
        when the last line was typed."""
        lector = self._lector()
        return lector is not None and lector != self._leia and self._sin_leer() == 0

    def lee_otro_programa(self):
        """Whether it is not a shell that waits for the next line."""
        lector = self._lector()
        try:
            return lector is not None and not os.path.samefile(
                f"/proc/{lector[0]}/exe", f"/proc/{self.pid}/exe"
            )
        except OSError:
            return False

    def teclear(self, octetos):
        self._leia = self._lector()
        while octetos:
            try:
                octetos = octetos[os.write(self._maestro, octetos) :]
            except BlockingIOError:
                self.bombear()
                time.sleep(0.002)

    def olvidar_lectura(self):
        """The next lee() is content with a reader that has been asleep since before."""
        self._leia = None

    def ha_terminado(self):
        if self.estado is None:
            pid, estado = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                self.estado = (
                    os.WEXITSTATUS(estado)
                    if os.WIFEXITED(estado)
                    else signal.Signals(os.WTERMSIG(estado)).name.removeprefix("SIG")
                )
        return self.estado is not None

    def actividad(self):
        """What its processes are doing: changes as long as they get anywhere. A process that computes counts as
        settled once it has had a tenth of a second of processor, so a starved one does not pass for an endless one."""
        resumen = [len(self.salida), self._sin_leer()]
        for pid in descendientes(self.pid):
            campos = _leer(f"/proc/{pid}/stat").rpartition(")")[2].split()
            if len(campos) < 13:
                continue
            gastado = int(campos[11]) + int(campos[12])
            if campos[0] in "RD":
                resumen.append((pid, "R", min(gastado, os.sysconf("SC_CLK_TCK") // 10), campos[0] == "D"))
            else:
                resumen.append((pid, campos[0], _veces_cedida(pid)))
        return resumen

    def calculando(self):
        """Whether some process of it wants the processor and has had little of it so far."""
        return any(uno[1] == "R" and uno[2] < os.sysconf("SC_CLK_TCK") // 10 for uno in self.actividad()[2:])

    def cerrar(self):
        """Ends the program if it still runs, and gives the terminal back."""
        if not self.ha_terminado():
            os.kill(self.pid, signal.SIGKILL)
            os.waitpid(self.pid, 0)
            self.estado = "KILL"
        os.close(self._maestro)
        os.close(self._esclavo)
