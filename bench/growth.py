# SPDX-License-Identifier: MIT
"""How cost grows: the exponent of time over two decades of size, from three sizes each ten times the one before."""

import math
import os
import re
import resource
import shutil
import signal
import time
from dataclasses import dataclass

from sessions import Shell
from trees import arbol_ancho

META = 1.1


@dataclass
class Crecimiento:
    """A curve. `tiempos`: milliseconds by size. `forzado`: the scan that makes it steeper, or nothing."""

    que: str
    tiempos: dict
    forzado: str = ""

    @property
    def exponente(self):
        """Between the first and the last size, each above the cost of an empty batch."""
        (n0, t0), (n1, t1) = min(self.tiempos.items()), max(self.tiempos.items())
        return math.log(t1 / t0) / math.log(n1 / n0)

    @property
    def cumplida(self):
        return bool(self.forzado) or self.exponente <= META


def sesion(b, preparar, lineas):
    """Milliseconds that a fresh shell needs for the lines, which it reads from a file."""
    guion = b.fichero("crecer.txt", "".join(f"{linea}\n" for linea in lineas) + "writestr 2 #\nredin -reset\n")
    with Shell(b.shell, b.fichero("crecer_salida.txt")) as shell:
        shell.lineas("prompt >", "initredir")
        preparar(shell)
        inicio = time.perf_counter_ns()
        shell.enviar(f"redin {guion}\n")
        return (time.perf_counter_ns() - inicio) / 1e6


def curva(b, que, tamanos, lineas, preparar=lambda shell: None, forzado="", rondas=5):
    """`lineas(n)`: the batch of size n. The cost of an empty batch is taken off."""
    vacio = min(sesion(b, preparar, []) for _ in range(rondas))
    tiempos = {n: max(min(sesion(b, preparar, lineas(n)) for _ in range(rondas)) - vacio, 1e-3) for n in tamanos}
    return Crecimiento(que, tiempos, forzado)


def ficheros(b):
    """A listing: the tree is the size, the line is one."""
    tiempos = {}
    for n in (200, 2000, 20000):
        arbol = b.fichero(f"crecer{n}")
        arbol_ancho(arbol, directorios=max(n // 50, 1), ficheros=n)
        tiempos[n] = min(sesion(b, lambda shell: None, [f"listrec -long {arbol}"]) for _ in range(5))
        shutil.rmtree(arbol)
    return Crecimiento("ficheros: `listrec -long`", tiempos)


def trabajos(b):
    tiempos = {}
    for n in (10, 100, 1000):
        pids = []
        try:
            with Shell(b.shell, b.fichero("crecer_jobs.txt")) as shell:
                shell.lineas("prompt >", *["back /bin/sleep 300"] * n)
                shell.lineas("listjobs")
                pids = re.findall(r" (\d+) +\S+ p=.*ACTIVO \(000\) /bin/sleep 300$", shell.salida(), re.MULTILINE)
                assert len(pids) == n, "jobs"
                # A round of ten: one listing of ten lines is too short for the clock.
                tiempos[n] = min(shell.lineas(*["listjobs"] * 10) / 10 for _ in range(5))
        finally:
            for pid in pids:
                os.kill(int(pid), signal.SIGTERM)
    return Crecimiento("procesos: `listjobs`", tiempos)


def medir(b):
    blandos, duros = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (min(duros, 8192), duros))
    miles, uno = (40, 400, 4000), b.fichero("uno_solo", "x")

    def con_sf(shell):
        shell.lineas(f"memmalloc {16 << 20}")
        direccion = re.search(r"en (0x[0-9a-f]+)", shell.salida()).group(1)
        shell.lineas(f"assign a {direccion}", f"memfs-format {direccion}")

    curvas = [
        # The historic holds 4,095 lines: it is emptied before it is full.
        curva(b, "líneas: `pid`", (400, 4000, 40000), lambda n: (["pid"] * 399 + ["historic -c"]) * (n // 400)),
        ficheros(b),
        trabajos(b),
        curva(b, "bloques: `malloc` y `mem -blocks`", miles, lambda n: ["malloc 32"] * n + ["mem -blocks"]),
        curva(b, "descriptores: `dup`", miles, lambda n: ["dup 0"] * n),
        curva(b, "etiquetas: `assign`", (20, 200, 2000), lambda n: [f"assign e{i} 1000" for i in range(n)],
              forzado="cada nombre se busca en la lista"),
        curva(b, "variables: `changevar -p`", miles, lambda n: [f"changevar -p V{i} x" for i in range(n)],
              forzado="`putenv` busca cada nombre en el entorno"),
        curva(b, "ficheros de un SF: `memfs-cp`", miles, lambda n: [f"memfs-cp {uno} a:f{i}" for i in range(n)],
              con_sf, forzado="cada nombre se busca en el directorio"),
    ]
    resource.setrlimit(resource.RLIMIT_NOFILE, (blandos, duros))
    return curvas
