# SPDX-License-Identifier: MIT
"""Fails every call that the shell makes, one in each session, over a tour of all commands.

failing_calls.py BUILD [FUNCTION [N]]: with a function only its calls; with a number too that one, and what it prints.
The session must reach its last line, end with status 0, and hold then no descriptor that its own table does not show
and no child that its list of jobs does not show."""

import ctypes
import os
import re
import select
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

AQUI = Path(__file__).parent
PLAZO = 20
# What cannot fail, or not by itself: texts, sets of signals, what the compiler calls, addresses that are only shown.
NO_FALLAN = set("""__cxa_finalize __environ environ __errno_location __gmon_start__ __libc_start_main __longjmp_chk
    __fdelt_chk __stack_chk_fail _ITM_deregisterTMCloneTable _ITM_registerTMCloneTable _setjmp _exit exit free getenv
    geteuid getpid getppid getuid fgets printf time tzset __isoc99_sscanf __xpg_basename snprintf __snprintf_chk
    __vsnprintf_chk sigaddset sigdelset sigemptyset sigfillset sigismember""".split())
TEXTO = re.compile(r"(__)?(mem|str(?!dup))\w+")
EN_OTRO_SITIO = {"isatty", "poll", "pread"}  # for input and output that are not the pipes of the tour
FICHEROS = {
    "ordenes": "authors -n\nredin -reset\nredin -reset\n",
    "fin": "exit 0\n",
    "urge": "kill -URG $PPID\n",
    "espera": """# until the other children of the shell have ended
for i in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do
    vivos=
    read hijos <"/proc/$PPID/task/$PPID/children"
    for h in $hijos; do
        [ $h = $$ ] && continue
        read estado <"/proc/$h/stat"
        case $estado in *") Z"*) ;; *) vivos=1 ;; esac
    done
    [ $vivos ] || exit 0
    sleep 0.02
done
"""}


def quitar_segmento(clave):
    libc = ctypes.CDLL(None)
    libc.shmctl(libc.shmget(clave, 0, 0), 0, None)  # IPC_RMID


class Sesion:
    """One session over the tour; `fallar`: the function and which of its calls."""

    def __init__(self, construido, tour, turno, fallar="ninguna 0"):
        self.salida, self.enviadas = "", []
        self.fallar = fallar
        clave = 0x5F000000 + os.getpid() % 0x8000 * 512 + turno % 512
        self.valores = {"K": str(clave), "UID": str(os.getuid()), "YO": os.environ.get("USER") or "root"}
        with tempfile.TemporaryDirectory() as nombre:
            carpeta = Path(nombre)
            for fichero, texto in FICHEROS.items():
                (carpeta / fichero).write_text(texto, encoding="utf-8")
            (carpeta / "informe").touch()
            precargadas = [str(construido / f"tests/lib{n}.so") for n in ("failing_calls", "no_systemd")]
            funcion, vez = fallar.split()
            entorno = {"FALLAR": funcion, "VEZ": vez, "INFORME": str(carpeta / "informe"),
                       "LD_PRELOAD": ":".join(precargadas),
                       "HOME": "/tmp", "PATH": "/usr/bin:/bin", "LC_ALL": "C"}
            with subprocess.Popen([construido / "bin/shell"], cwd=carpeta, env=entorno, stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, bufsize=0) as self.programa:
                try:
                    self.recorrer(tour)
                    self.estado = self.programa.wait(PLAZO)
                except (subprocess.TimeoutExpired, TimeoutError):
                    self.programa.kill()
                    self.estado = "it hangs"
            self.acabada = (carpeta / "acabado").exists()
            self.informe = [linea.split() for linea in (carpeta / "informe").read_text().splitlines()]
        quitar_segmento(clave)

    def recorrer(self, tour):
        lineas = []
        for i, linea in enumerate(tour):
            if linea.startswith("#= "):
                _, nombre, patron = linea.split(" ", 2)
                marca = f"(#{i})"
                self.enviar(lineas + [f"writestr 1 {marca}"] * 2)  # one of them may be the call that fails
                try:
                    self.leer(marca)
                except TimeoutError:
                    pass  # the output may be what was lost
                lineas = []
                if visto := re.findall(patron, self.salida):
                    self.valores[nombre] = visto[-1]
            elif not linea.startswith("#"):
                faltan = [n for n in re.findall(r"{(\w+)}", linea) if n not in self.valores]
                lineas.append("pid" if faltan else linea.format_map(self.valores))
        self.enviar(lineas)
        self.leer(None, PLAZO)

    def enviar(self, lineas):
        self.enviadas += lineas
        try:
            self.programa.stdin.write("".join(f"{linea}\n" for linea in lineas).encode())
        except BrokenPipeError:
            pass  # it has ended: its status tells the rest

    def leer(self, marca, espera=2):
        """Reads until the mark, or the end."""
        plazo = time.monotonic() + espera
        while marca is None or marca not in self.salida:
            resta = plazo - time.monotonic()
            if resta <= 0 or not select.select([self.programa.stdout], [], [], resta)[0]:
                raise TimeoutError
            trozo = os.read(self.programa.stdout.fileno(), 65536)
            if not trozo:
                return
            self.salida += trozo.decode(errors="replace")

    def linea_fallada(self):
        n = next((int(n) for que, n in self.informe if que == "fallada"), None)
        return "the start" if n == 0 else f'"{self.enviadas[n - 1]}"' if n else "no line"

    def numeros(self, que):
        return {int(n) for q, n in self.informe if q == que}

    def faltas(self):
        """What is wrong with its end."""
        funcion = self.fallar.split()[0]
        if funcion == "sigaction" and "loop" in self.linea_fallada():
            return  # nothing but the handler that failed could end that loop
        if self.estado != 0:
            yield f"it ends with status {self.estado}" if self.estado != "it hangs" else self.estado
            return
        if funcion == "dup" and "red" in self.linea_fallada():
            return  # the stream is closed: there is no input, or nothing to see
        if not self.acabada:
            yield "it does not reach its last line"
            return
        # A name that found no room is in no list.
        mostrados = {int(n) for n in re.findall(r"descriptor: (\d+), offset: \(.*\)-> (?!no usado)", self.salida)}
        if funcion != "strdup" and (sueltos := self.numeros("abierto") - mostrados - {0, 1, 2}):
            yield f"descriptors left open: {sorted(sueltos)}"
        # The child whose wait failed is left.
        listados = {int(n) for n in re.findall(r"(?m)^ *(\d+) .* p=-?\d+ ", self.salida)}
        if funcion not in ("waitpid", "waitid") and (hijos := self.numeros("hijo") - listados):
            yield f"children left: {sorted(hijos)}"


def comprobar_nombres(construido, base):
    """The shim knows every function of the program that can fail, and the tour calls every one of them."""
    salida = subprocess.run(["nm", "-D", "--undefined-only", construido / "bin/shell"], check=True, capture_output=True,
                            text=True).stdout
    usadas = {linea.split()[-1].split("@")[0] for linea in salida.splitlines()}
    usadas = {n for n in usadas if n not in NO_FALLAN and not TEXTO.fullmatch(n)}
    veces = {que: int(n) for que, n in base.informe}
    for nombre in sorted(usadas - veces.keys()):
        yield f"{nombre} is used, and the shim does not fail it"
    for nombre in sorted(usadas & {n for n, v in veces.items() if v == 0} - EN_OTRO_SITIO):
        yield f"{nombre} is used, and no line of the tour calls it"


def main():
    construido, solo = Path(sys.argv[1]).resolve(), sys.argv[2:]
    tour = (AQUI / "tour.txt").read_text(encoding="utf-8").splitlines()
    base = Sesion(construido, tour, 0)
    faltas = [f"without a failure: {f}" for f in base.faltas()] + list(comprobar_nombres(construido, base))
    veces = {que: int(n) for que, n in base.informe if que not in ("abierto", "hijo", "fin")}
    casos = [f"{f} {n}" for f, v in veces.items() if solo in ([], [f]) for n in range(1, v + 1)]
    if len(solo) == 2:
        casos = [" ".join(solo)]
    with ThreadPoolExecutor(os.cpu_count()) as ejecutor:
        sesiones = ejecutor.map(lambda caso: Sesion(construido, tour, caso[0], caso[1]), enumerate(casos))
        for s in sesiones:
            if len(solo) == 2:
                print(s.salida, s.informe)
            faltas += [f"{s.fallar}, in {s.linea_fallada()}: {f}" for f in s.faltas()]
    print(f"{len(casos)} calls failed in turn, of {sum(v > 0 for v in veces.values())} functions")
    print(*faltas, sep="\n")
    return 1 if faltas else 0


if __name__ == "__main__":
    sys.exit(main())
