# SPDX-License-Identifier: MIT
"""Runs the steps of a sheet: shells on terminals, lines for sh, files; and clears away what they leave."""

import ctypes
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time

from . import comparar
from .terminal import Terminal, descendientes

_PR_SET_CHILD_SUBREAPER = 36
_IPC_RMID = 0
_libc = ctypes.CDLL(None, use_errno=True)

ARRANQUE = 60  # seconds for a shell to reach its first prompt (eighteen of them are the systemd warning's)
LIMITE = 30  # seconds for a step to come to rest
QUIETO = 0.3  # a shell that does not read counts as settled when nothing has moved for so long
PACIENCIA = 1.0  # seconds for output that is not what is expected to become it
PACIENCIA_CON_HIJOS = 8.0  # the same while processes of the sheet are still running


class Problema(Exception):
    """The program did not do what a step needs: it did not start, or did not come to rest."""


class Conductor:
    """The scratch directory of a sheet, its shells and everything that they start. Use it in a with."""

    def __init__(self, programa, nombre, shells=1):
        """nombre: of the scratch directory. shells: how many will be started in all, as far as is known."""
        self._programa = os.path.abspath(programa)
        self._base = tempfile.mkdtemp(prefix="practica.")
        os.chmod(self._base, 0o755)
        self.directorio = os.path.join(self._base, nombre)
        os.mkdir(self.directorio)
        self._entorno = {
            "PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
            "HOME": self.directorio,
            "USER": "root" if os.geteuid() == 0 else "usuario",
            "TERM": "dumb",
            "LC_ALL": "C.UTF-8",
        }
        self.terminales = {}
        self.prompts = {}  # what each shell last showed before it began to read
        self._leian = set()  # the shells that were reading when the step began
        self._pids = set()
        self._segmentos = set(_segmentos())
        # Processes that a shell leaves behind become our children, so that they can be found and ended.
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        # Where the program begins with its long warning about systemd, all shells sit through it together.
        self._preparados = [self._arrancar() for _ in range(shells if avisa_de_systemd() else 0)]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self._cerrar_todo()
            self._recoger_procesos()
            for ident in self._segmentos_propios():
                _libc.shmctl(ident, _IPC_RMID, None)
        finally:
            shutil.rmtree(self._base, onerror=_borrar_a_la_fuerza)

    def terminal(self, nombre):
        """The shell of that name, started when there is none; it reads."""
        if nombre not in self.terminales:
            self.terminales[nombre] = terminal = self._preparados.pop() if self._preparados else self._arrancar()
            self._hasta_que_lea(terminal)
            # The prompt's line must not stand in the historic, which -c empties whole.
            for orden in (f"prompt {comparar.PROMPT}\n", "historic -c\n"):
                terminal.teclear(orden.encode())
                self._hasta_que_lea(terminal)
            self._olvidar(nombre)
        return self.terminales[nombre]

    def _arrancar(self):
        terminal = Terminal(self._programa, self.directorio, self._entorno)
        self._pids.add(terminal.pid)
        return terminal

    def _cerrar_todo(self):
        while self._preparados:
            self._preparados.pop().cerrar()
        for nombre in list(self.terminales):
            self.terminales.pop(nombre).cerrar()

    def _hasta_que_lea(self, terminal):
        limite = time.monotonic() + ARRANQUE
        while not terminal.lee():
            self._bombear(0.002)
            if terminal.ha_terminado():
                raise Problema(f"{self._programa} no arranca: termina con {terminal.estado}")
            if time.monotonic() > limite:
                raise Problema(f"{self._programa} no llega a leer su primera línea")
        terminal.sincronizar()

    def crear_fichero(self, nombre, contenido):
        camino = os.path.join(self.directorio, nombre)
        with open(camino, "w", encoding="utf-8") as f:
            f.write(contenido)
        os.chmod(camino, 0o755 if contenido.startswith("#!") else 0o644)

    def teclear(self, nombre, texto, tecla=None):
        """Types a line, or a key; somebody must read for a line."""
        terminal = self.terminal(nombre)
        if tecla is None:
            self._reposar({nombre}, False)
            self.prompts[nombre] = ""
        self._empezar()
        terminal.teclear(tecla if tecla is not None else texto.encode() + b"\n")

    def ejecutar(self, texto):
        """Runs a line with sh in the scratch directory; what it printed."""
        self._empezar()
        with tempfile.TemporaryFile() as salida:
            proceso = subprocess.Popen(
                ["sh", "-c", texto],
                cwd=self.directorio,
                env=self._entorno,
                stdin=subprocess.DEVNULL,
                stdout=salida,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
            self._pids.add(proceso.pid)
            limite = time.monotonic() + LIMITE
            while proceso.poll() is None:
                self._bombear(0.002)
                if time.monotonic() > limite:
                    os.killpg(proceso.pid, signal.SIGKILL)
                    proceso.wait()
                    raise Problema("la línea de sh no termina")
            salida.seek(0)
            return salida.read()

    def _empezar(self):
        self._leian = {nombre for nombre, terminal in self.terminales.items() if terminal.lee()}

    def esperar(self, previa=b"", actor=None, leer=(), fin=False, satisface=None):
        """Waits until the shells have come to rest and what was printed satisfies, or cannot be hoped to any more.
        previa: what the step printed elsewhere. leer: the shells that have to read again. fin: whether one has to end.
        Returns the lines printed."""
        exigidas = (self._leian - {actor}) | set(leer)
        self._reposar(exigidas, fin)
        desde, vistas = time.monotonic(), None
        while True:
            for terminal in self.terminales.values():
                terminal.sincronizar()
            octetos = previa + b"".join(t.salida for t in self._en_orden(actor))
            if octetos != vistas:
                vistas, lineas = octetos, comparar.limpiar(octetos)
                if satisface is None or satisface(lineas):
                    break
            if time.monotonic() - desde > (PACIENCIA_CON_HIJOS if self._hay_hijos() else PACIENCIA):
                break
            self._bombear(0.02)
            self._reposar(exigidas, fin)
        for nombre in self.terminales:
            self._olvidar(nombre)
        return lineas

    def _olvidar(self, nombre):
        """What a shell has printed is accounted for."""
        salida = self.terminales[nombre].salida
        if salida:
            self.prompts[nombre] = comparar.prompt_final(salida)
        salida.clear()

    def probar(self, nombre, texto, tecla, al_salir):
        """A line or key that no sheet asks for: types it and hands over what comes, as it comes, until somebody reads
        again or the shell has ended. Returns the lines printed."""
        self.teclear(nombre, texto, tecla)
        terminal, dicho, desde = self.terminales[nombre], 0, time.monotonic()
        while True:
            if tecla is not None and time.monotonic() - desde > QUIETO:
                terminal.olvidar_lectura()  # a key may do nothing at all
            descansa = terminal.lee() or terminal.ha_terminado()
            if descansa:
                terminal.sincronizar()
            hasta = comparar.fin_de_lo_entero(terminal.salida)
            if hasta > dicho:
                al_salir(comparar.visible(bytes(terminal.salida[dicho:hasta])))
                dicho = hasta
            if descansa:
                break
            self._bombear(0.02)
        lineas = comparar.limpiar(bytes(terminal.salida))
        self._olvidar(nombre)
        return lineas

    def impreso(self):
        """The lines that have come and that no step has accounted for."""
        return comparar.limpiar(b"".join(terminal.salida for terminal in self.terminales.values()))

    def _en_orden(self, actor):
        return sorted(self.terminales.values(), key=lambda t: t is not self.terminales.get(actor))

    def _hay_hijos(self):
        vivos = [t for t in self.terminales.values() if not t.ha_terminado()]
        return any(len(descendientes(t.pid)) > 1 or not t.lee() for t in vivos)

    def _reposar(self, exigidas, fin):
        """Until every shell reads or has ended, or, where nobody asks for that, does not get any further."""
        limite, quieta, antes = time.monotonic() + LIMITE, time.monotonic(), None
        while True:
            self._bombear(0.002)
            por_llegar = []
            for nombre, terminal in self.terminales.items():
                self._pids.update(descendientes(terminal.pid))
                if not terminal.ha_terminado() and not terminal.lee():
                    por_llegar.append(nombre)
            terminada = not fin or any(t.ha_terminado() for t in self.terminales.values())
            if not por_llegar and terminada:
                return
            ahora = [self.terminales[nombre].actividad() for nombre in por_llegar]
            if ahora != antes:
                antes, quieta = ahora, time.monotonic()
            elif time.monotonic() - quieta > QUIETO and terminada and not any(
                self.terminales[nombre].calculando() for nombre in por_llegar
            ):
                for nombre in por_llegar:
                    self.terminales[nombre].olvidar_lectura()
                if not exigidas.intersection(por_llegar):
                    return
            if time.monotonic() > limite:
                if not terminada:
                    raise Problema("se esperaba que el shell terminase, y sigue")
                raise Problema(f"el shell {' y '.join(por_llegar)} no vuelve a leer")

    def terminadas(self):
        """(name, status or signal) of the shells that have ended; they are forgotten, so that the next line for one
        starts a new one."""
        fuera = [(nombre, t.estado) for nombre, t in self.terminales.items() if t.ha_terminado()]
        for nombre, _ in fuera:
            self.terminales.pop(nombre).cerrar()
        return fuera

    def despedir(self):
        """Has every shell exit. Returns what is wrong with how the sheet ends: list of texts."""
        quejas = []
        for nombre, terminal in self.terminales.items():
            if terminal.lee():
                terminal.teclear(b"exit\n")
                limite = time.monotonic() + LIMITE
                while not terminal.ha_terminado() and time.monotonic() < limite:
                    self._bombear(0.002)
                if terminal.ha_terminado() and terminal.estado != 0:
                    quejas.append(f"el shell {nombre} termina con {terminal.estado} al salir")
        self._cerrar_todo()
        for pid, orden in self._recoger_procesos():
            quejas.append(f"queda atrás el proceso {pid} ({orden})")
        for ident, clave in self._segmentos_propios().items():
            quejas.append(f"queda atrás el segmento de memoria {ident} (clave {clave})")
        return quejas

    def _bombear(self, plazo):
        select.select(list(self.terminales.values()), [], [], plazo)
        for terminal in self.terminales.values():
            terminal.bombear()

    def _recoger_procesos(self):
        """Ends what the sheet's shells left running. Returns (pid, command) of what did not end by itself in time."""
        limite, quedan = time.monotonic() + 1, []
        while True:
            _enterrar()
            hijos = descendientes(os.getpid())[1:]
            if not hijos:
                return quedan
            if time.monotonic() > limite:
                for pid in hijos:
                    if pid not in (p for p, _ in quedan):
                        quedan.append((pid, _orden_de(pid)))
                    try:
                        os.kill(pid, signal.SIGKILL)
                    except ProcessLookupError:
                        pass
            time.sleep(0.01)

    def _segmentos_propios(self):
        """Segments that processes of the sheet have made and that are still there: identifier to key."""
        nuevos = {i: datos for i, datos in _segmentos().items() if i not in self._segmentos}
        return {i: clave for i, (clave, creador) in nuevos.items() if creador in self._pids}


def avisa_de_systemd():
    """Whether the program's warning will make it wait, by the sign that it goes by itself."""
    return os.path.lexists("/run/systemd/system")


def _enterrar():
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def _orden_de(pid):
    try:
        with open(f"/proc/{pid}/cmdline", "rb") as f:
            return f.read().replace(b"\0", b" ").decode("utf-8", "replace").strip()
    except OSError:
        return "?"


def _segmentos():
    """Shared memory segments of the machine: identifier to (key, pid that made it)."""
    try:
        with open("/proc/sysvipc/shm", encoding="ascii") as f:
            filas = [linea.split() for linea in f][1:]
    except OSError:
        return {}
    return {int(fila[1]): (int(fila[0]), int(fila[4])) for fila in filas}


def _borrar_a_la_fuerza(_, camino, __):
    """A directory that a sheet has made unreadable is made readable and gone through again."""
    try:
        os.chmod(os.path.dirname(camino), 0o700)
        if os.path.isdir(camino) and not os.path.islink(camino):
            os.chmod(camino, 0o700)
            shutil.rmtree(camino, ignore_errors=True)
        else:
            os.unlink(camino)
    except OSError:
        pass
