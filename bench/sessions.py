# SPDX-License-Identifier: MIT
"""Drives one program line by line. What is timed is a line: from its writing to the mark '#' on descriptor 2."""

import os
import re
import select
import subprocess
import time

PLAZO = 60  # seconds after which a program that does not answer is given up


class Programa:
    """A running program whose standard output goes to the file `salida`."""

    def __init__(self, argumentos, salida):
        self.ruta_salida = salida
        if os.path.isfile(salida):
            os.unlink(salida)  # to cut a long file takes its time
        with open(salida, "wb") as fichero:
            self.inicio = time.perf_counter_ns()
            self.proceso = subprocess.Popen(argumentos, stdin=subprocess.PIPE, stdout=fichero,
                                            stderr=subprocess.PIPE, bufsize=0)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.proceso.stdin.close()
        try:
            self.proceso.wait(PLAZO)
        except subprocess.TimeoutExpired:
            self.proceso.kill()
            self.proceso.wait()
        self.proceso.stderr.close()

    def esperar_marca(self, marcas=1):
        errores = b""
        while errores.count(b"#") < marcas:
            if not select.select([self.proceso.stderr], [], [], PLAZO)[0]:
                raise RuntimeError("no answer")
            trozo = self.proceso.stderr.read(4096)
            if not trozo:
                raise RuntimeError(f"ended: {errores!r}")
            errores += trozo
        if errores.strip(b"#"):
            raise RuntimeError(errores.decode(errors="replace"))

    def enviar(self, lineas, marcas=1):
        """Sends lines and waits for their mark. Returns the milliseconds that went by."""
        datos = lineas.encode()
        inicio = time.perf_counter_ns()
        self.proceso.stdin.write(datos)
        self.esperar_marca(marcas)
        return (time.perf_counter_ns() - inicio) / 1e6

    def transcurrido(self):
        """Milliseconds since the program was started."""
        return (time.perf_counter_ns() - self.inicio) / 1e6

    def salida(self):
        with open(self.ruta_salida, encoding="utf-8", errors="replace") as fichero:
            return fichero.read()


class Desnudo(Programa):
    """One of the bare_* programs: any line is answered with the mark."""

    def una_vez(self):
        return self.enviar("\n")

    def __init__(self, argumentos, salida):
        super().__init__(argumentos, salida)
        self.una_vez()  # the first time touches everything


class Shell(Programa):
    """The shell. The mark is a line of its own: `writestr 2 #`."""

    def lineas(self, *lineas):
        return self.enviar("".join(linea + "\n" for linea in lineas) + "writestr 2 #\n")

    def asignar(self, tam):
        """memmalloc, each page touched. Returns the address as it is typed."""
        antes = len(self.salida())
        self.lineas(f"memmalloc {tam}")
        direccion = re.search(r"Asignados \d+ bytes en (0x[0-9a-f]+)", self.salida()[antes:]).group(1)
        self.lineas(f"memfill {direccion} {tam} 0x41")
        return direccion


class Dash(Programa):
    """dash, which says the mark with its own printf."""

    def lineas(self, *lineas):
        return self.enviar("".join(linea + "\n" for linea in lineas) + "printf '#' >&2\n")
