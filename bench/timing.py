# SPDX-License-Identifier: MIT
"""Times contenders in alternation (A B A B ...), so that what disturbs the machine disturbs both."""

import json
import os
import shlex
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass, field


@dataclass
class Fila:
    """A row of the table of ratios. `nuestras` and `rivales` are in the unit `unidad`."""

    trabajo: str
    rival: str
    meta: float
    nuestras: list
    rivales: list
    unidad: str = "ms"
    disco: bool = False  # the work touches the disk: 0.05 more is allowed

    @property
    def razon_medianas(self):
        return statistics.median(self.nuestras) / statistics.median(self.rivales)

    @property
    def razon_minimos(self):
        return min(self.nuestras) / min(self.rivales)

    @property
    def cumplida(self):
        # Disturbances only ever add, so where the medians swing the minima tell.
        return min(self.razon_medianas, self.razon_minimos) <= self.meta + (0.05 if self.disco else 0)


def alternar(rondas, *contendientes):
    """Calls each contender once a round. A contender returns a number or a list of numbers. Returns a list of
    numbers for each. The order rotates from round to round: whoever goes first pays for what the pause has cooled."""
    muestras = [[] for _ in contendientes]
    for ronda in range(rondas):
        orden = list(enumerate(contendientes))
        primero = ronda % len(orden)
        for i, medir in orden[primero:] + orden[:primero]:
            valor = medir()
            muestras[i].extend(valor if isinstance(valor, list) else [valor])
    return muestras


def hyperfine(orden, veces):
    """A contender: `veces` runs of a command line in milliseconds. A line with a redirection goes through
    /bin/sh, whose own time hyperfine takes off."""
    sin_shell = ["-N"] if "<" not in orden else ["--shell", "/bin/sh"]

    def medir():
        with tempfile.NamedTemporaryFile(suffix=".json") as informe:
            subprocess.run(["hyperfine", *sin_shell, "--style", "none", "--warmup", "1", "--runs", str(veces),
                            "--export-json", informe.name, orden],
                           check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            return [1000 * t for t in json.load(informe)["results"][0]["times"]]

    return medir


def cronometrar(argumentos, entrada=os.devnull, salida=os.devnull, preparar=None, medida=None):
    """A contender: one run of a program in milliseconds, from its start until it has ended. `entrada` is a
    path, or bytes that wait in a pipe (64 KiB at the most). `medida` takes another number from its resource usage."""

    def medir():
        if preparar:
            preparar()
        if os.path.isfile(salida):
            os.unlink(salida)  # to cut a long file takes its time
        salida_df = os.open(salida, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o666)
        if isinstance(entrada, bytes):
            entrada_df, escritura = os.pipe()
            assert os.write(escritura, entrada) == len(entrada)
            os.close(escritura)
        else:
            entrada_df = os.open(entrada, os.O_RDONLY)
        acciones = [(os.POSIX_SPAWN_DUP2, entrada_df, 0), (os.POSIX_SPAWN_DUP2, salida_df, 1)]
        inicio = time.perf_counter_ns()
        pid = os.posix_spawn(argumentos[0], argumentos, os.environ, file_actions=acciones)
        _, estado, uso = os.wait4(pid, 0)
        fin = time.perf_counter_ns()
        os.close(entrada_df)
        os.close(salida_df)
        if estado != 0:
            raise RuntimeError(f"{shlex.join(argumentos)} ended with status {estado}")
        return medida(uso) if medida else (fin - inicio) / 1e6

    return medir


def procesador(uso):
    """Own processor time in milliseconds, in user mode and in the system."""
    return 1000 * (uso.ru_utime + uso.ru_stime)


def faltas(uso):
    """Page faults that needed no disk."""
    return uso.ru_minflt
