# SPDX-License-Identifier: MIT
"""The modes that people use: a guided session on a terminal, and marking what comes out of it and of script."""

import os
import pty
import select
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

PRACTICAS = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(PRACTICAS))

from _practica import calificar, notacion, transcripcion  # noqa: E402

PROGRAMA = os.environ.get("PRACTICA_PROGRAMA", str(PRACTICAS.parent / "build" / "bin" / "shell"))
HOJA = """# Hoja

## Qué se aprende

- Nada.

```sesion
> pid
Pid de shell: {pid:pid}
$ echo {pid}
{pid}
> malloc 100
Asignados 100 bytes en {p:dir}
! p > 0
> exit
= 0
> authors -l
login del autor1
login del autor2
```

Son dos.

![Dos](dos.svg)

## Preguntas

1. ¿Cuánto?

## Respuestas

1. Tanto.
"""


class Estudiante:
    """Somebody at a terminal, with the guided mode before them."""

    def __init__(self, carpeta):
        self.visto = ""
        self.pid, self._terminal = pty.fork()
        if self.pid == 0:
            entorno = {"PATH": os.environ["PATH"], "TERM": "dumb", "XDG_STATE_HOME": carpeta, "NO_COLOR": "1"}
            orden = [sys.executable, str(PRACTICAS / "practica"), "hacer", "--programa", PROGRAMA, f"{carpeta}/hoja.md"]
            os.execve(sys.executable, orden, entorno)

    def teclea(self, linea):
        os.write(self._terminal, linea.encode())

    def espera(self, texto, tecla=""):
        """Until the text appears after what was waited for before. The key that asks for it is typed again now and then:
        the system drops one that comes while the terminal changes its mode."""
        limite = time.monotonic() + 60
        while texto not in self.visto:
            if tecla and not select.select([self._terminal], [], [], 5)[0]:
                self.teclea(tecla)
            if time.monotonic() > limite:
                raise AssertionError(f"«{texto}» no llega; ha llegado: {self.visto}")
            if select.select([self._terminal], [], [], 1)[0]:
                try:
                    self.visto += os.read(self._terminal, 4096).decode().replace("\r\n", "\n")
                except OSError:
                    raise AssertionError(f"ha terminado sin «{texto}»: {self.visto}") from None
        self.visto = self.visto.partition(texto)[2]

    def termina(self):
        estado = os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])
        os.close(self._terminal)
        return estado


class Modos(unittest.TestCase):
    def setUp(self):
        carpeta = tempfile.TemporaryDirectory()
        self.addCleanup(carpeta.cleanup)
        self.carpeta = carpeta.name
        Path(self.carpeta, "hoja.md").write_text(HOJA, encoding="utf-8")
        self.hoja = notacion.leer(f"{self.carpeta}/hoja.md")

    def estados(self, octetos):
        return [fila.estado for fila in calificar.comparar_entrega(self.hoja, octetos, transcripcion.INDICADOR)]

    def test_a_guided_session_with_detours_is_kept_resumed_and_marked(self):
        uno = Estudiante(self.carpeta)
        for tecleado, respuesta in (
            ("?\n", "Toca: pid"),
            ("date -x\n", "no es lo que toca"),
            ("segmentation\n", "terminado por la señal SEGV"),
            ("", "recién arrancado"),
            ("", "%) "),
            ("getpid\n", "También vale"),
            ("", "$ "),
            ("\x03", "Ctrl-C no interrumpe"),
            ("", "$ "),
            ("??\n", "$ echo"),
            ("", "%) "),
            ("malloc 200\n", "Asignados 200"),
            ("", "%) "),
            ("\x03", "señal INT"),
            ("", "%) "),
            ("\x04", "lo terminaría"),
            ("", "%) "),
            ("\x04", "Hasta otra"),
        ):
            uno.teclea(tecleado)
            uno.espera(respuesta, tecleado if tecleado == "\x03" else "")
        self.assertEqual(uno.termina(), 1)
        uno = Estudiante(self.carpeta)
        for tecleado, respuesta in (
            ("", "paso 3 de 7"),
            ("", "%) "),
            ("malloc  100\n", "Se cumple: p > 0"),
            ("", "%) "),
            ("$ echo de más\n", "de más"),
            ("", "%) "),
            ("exit\n", "con estado 0, como dice la hoja"),
            ("", "%) "),
            ("authors -l\n", "Son dos.\n\nFigura: Dos (dos.svg)"),
            ("", "¿Cuánto?"),
            ("mucho\n", "Tanto."),
            ("", "Se ha aprendido:\n- Nada."),
            ("", "hoja.txt"),
        ):
            uno.teclea(tecleado)
            uno.espera(respuesta)
        self.assertEqual(uno.termina(), 0)
        diario = Path(self.carpeta, "shell-docente", "hoja.txt").read_bytes()
        # The pid of the first day is not that of the second, whose transcript begins with the steps done again.
        self.assertEqual(self.estados(diario), ["hecho"] * 6)

    def test_what_is_shown_is_marked_as_done(self):
        orden = [sys.executable, str(PRACTICAS / "practica"), "mostrar", "--programa", PROGRAMA, self.hoja.fichero]
        mostrado = subprocess.run(orden, stdout=subprocess.PIPE, check=True).stdout
        self.assertEqual(self.estados(mostrado), ["hecho"] * 6)
        self.assertEqual(self.estados(mostrado.replace(b"login del autor2\n", b"")), ["hecho"] * 5 + ["distinto"])

    def test_a_recording_is_read_as_it_stood_on_the_screen(self):
        p = "L@m{d} %) "
        pid, bloque = f"{p}pid\r\nPid de shell: 7\r\n", "Asignados 100 bytes en 0x10\r\n"
        hasta_malloc = "hecho no_consta hecho hecho falta falta"
        for nombre, grabado, estados in (
            ("a key before a line, no line end", f"{pid}{p}dup 1\r\nx{p}^Cmalloc 100\r\n{bloque}", hasta_malloc),
            (
                "line editing: bracketed paste, rubbing out, a line of the history wiped, a letter inserted",
                f"\x1b[?2004h{p}pix\b\x1b[Kd\r\n\x1b[?2004l\rPid de shell: 7\r\n"
                f"{p}pid\b\b\b\x1b[Kmaloc 100\x1b[7D\x1b[1@l\x1b[7C\r\n{bloque}",
                hasta_malloc,
            ),
            (
                "lines wider than the screen",
                f'Script started [COLUMNS="15"]\n{p}malloc 10\r\n{p}malloc 100\r\n{bloque}',
                "falta no_consta hecho hecho falta falta",
            ),
            (
                "another value where it must repeat, behind another shell's prompt",
                f"{pid}ana@pc:~$ echo 7\r\n8\r\n{p}malloc 100\r\nImposible\r\n",
                "hecho distinto distinto no_consta falta falta",
            ),
        ):
            with self.subTest(nombre):
                self.assertEqual([e.replace(" ", "_") for e in self.estados(grabado.encode())], estados.split())


if __name__ == "__main__":
    unittest.main()
