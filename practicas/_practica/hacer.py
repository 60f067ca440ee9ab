# SPDX-License-Identifier: MIT
"""practica hacer: leads a student through a sheet, who types at the shell's own prompt."""

import os
import signal
import sys
import textwrap
import time

from . import notacion, texto
from .comprobar import Ejecucion, Falla, conductor_para, usuario_actual
from .conductor import Problema, avisa_de_systemd
from .transcripcion import REMARCA

try:
    import readline  # noqa: F401  (line editing for input(), where there is one)
except ImportError:
    pass

AYUDA = """\
  ?         la línea que toca             ??        que la teclee la herramienta
  :texto    repite la explicación         :rehacer  el shell, como debe estar aquí
  $ línea   para sh, cuando se quiera     :salir    lo deja (se recuerda el sitio)
Se puede probar cualquier otra cosa: se ejecuta, y se sigue donde se estaba."""

# What would have kept the shell alive, by what ended it.
REMEDIOS = {
    "INT": "Es lo que hace Ctrl-C. Se evita con: sighandler -Frestart INT",
    "QUIT": "Es lo que hace Ctrl-\\. Se evita con: sighandler -Frestart QUIT",
    "SEGV": "Se ha tocado una dirección que no es del proceso. Se evita con protectsegv; y tras un fallo del que ya "
    "salvó, antes del siguiente, con sigunmask SEGV",
    "FPE": "Es la división por cero. Se evita con protectfpe; y tras un fallo del que ya salvó, antes del siguiente, "
    "con sigunmask FPE",
    "KILL": "De esa señal no hay quien se proteja.",
    0: "Es lo que hacen exit y el final de la entrada (Ctrl-D).",
}


class Tecla(Exception):
    """A key that the terminal turned into a signal while the tool was waiting for a line."""


class Salir(Exception):
    """The student leaves."""


class Marcador:
    """Where each sheet was left: one small text file, a line a sheet."""

    def __init__(self):
        base = os.environ.get("XDG_STATE_HOME") or os.path.join(os.path.expanduser("~"), ".local", "state")
        self.directorio = os.path.join(base, "shell-docente")
        self._fichero = os.path.join(self.directorio, "practicas")

    def _todos(self):
        try:
            with open(self._fichero, encoding="utf-8") as f:
                filas = [linea.split() for linea in f]
        except OSError:
            return {}
        return {fila[0]: int(fila[1]) for fila in filas if len(fila) == 2 and fila[1].isdigit()}

    def sitio(self, hoja):
        return self._todos().get(hoja, 0)

    def guardar(self, hoja, sitio):
        todos = self._todos()
        todos[hoja] = sitio
        os.makedirs(self.directorio, exist_ok=True)
        nuevo = f"{self._fichero}.nuevo"
        with open(nuevo, "w", encoding="utf-8") as f:
            f.writelines(f"{nombre} {cuantos}\n" for nombre, cuantos in sorted(todos.items()))
        os.replace(nuevo, self._fichero)


def hacer(camino, programa, desde_el_principio):
    """The mode itself. Exit status: 0 done, 1 left before the end, 2 the sheet cannot be used."""
    if not (sys.stdin.isatty() and sys.stdout.isatty()):
        print("practica: hacer necesita un terminal")
        return 2
    try:
        hoja = notacion.leer(camino)
    except notacion.Error as motivo:
        print(motivo)
        return 2
    guia = Guia(hoja, programa)
    try:
        return 0 if guia.recorrer(desde_el_principio) else 1
    except Problema as motivo:
        print(motivo)
        return 2
    finally:
        guia.cerrar()


class Guia:
    """A student's way through a sheet."""

    def __init__(self, hoja, programa):
        self._hoja = hoja
        self._nombre = os.path.splitext(os.path.basename(hoja.fichero))[0]
        self._programa = programa
        self._pasos = hoja.pasos(usuario_actual())
        self._marcador = Marcador()
        self._conductor = self._ejecucion = None
        self._escuchando = False  # whether a key ends input() or goes to the shell
        self._ultimo_fin = -60.0  # when Ctrl-D last came
        self._diario = None  # the transcript
        for senal in (signal.SIGINT, signal.SIGQUIT, signal.SIGTSTP):
            signal.signal(senal, self._al_pulsar)

    def _al_pulsar(self, senal, _):
        octeto = {signal.SIGINT: "^C", signal.SIGQUIT: "^\\", signal.SIGTSTP: "^Z"}[senal]
        if self._escuchando:
            raise Tecla(octeto)
        if self._conductor:
            for terminal in self._conductor.terminales.values():
                if not terminal.ha_terminado() and not terminal.lee():
                    terminal.teclear(notacion.TECLAS[octeto])

    def _pedir(self, indicador):
        """A line of the student's. Tecla for a key, EOFError for Ctrl-D."""
        self._escuchando = True
        try:
            return input(indicador)
        finally:
            self._escuchando = False

    def _decir(self, dicho):
        enteras = {"break_on_hyphens": False, "break_long_words": False}  # paths and commands can be copied
        lineas = textwrap.wrap(dicho, texto.ancho() - len(REMARCA), **enteras) or [""]
        print("\n".join(texto.tenue(REMARCA) + linea for linea in lineas), flush=True)

    def _anotar(self, escrito):
        """What goes into the transcript that the student can hand in."""
        self._diario.write(escrito)
        self._diario.flush()

    def _anotar_tecleado(self, paso, linea):
        self._anotar(f"{self._indicador(paso)}{linea}\n")

    def _anotar_salida(self, lineas):
        self._anotar("".join(f"{una}\n" for una in lineas))

    def recorrer(self, desde_el_principio):
        """Walks through the sheet. Returns whether its end was reached."""
        sitio = 0 if desde_el_principio else min(self._marcador.sitio(self._nombre), len(self._pasos))
        if sitio == len(self._pasos):
            sitio = 0
        os.makedirs(self._marcador.directorio, exist_ok=True)
        ruta = os.path.join(self._marcador.directorio, f"{self._nombre}.txt")
        with open(ruta, "a" if sitio else "w", encoding="utf-8") as self._diario:
            try:
                sitio = self._preparar(sitio)
                print(AYUDA + "\n")
                if sitio:
                    self._decir(f"Se retoma donde se dejó: paso {sitio + 1} de {len(self._pasos)}.")
                self._elementos(sitio)
            except Salir:
                self._decir("Hasta otra. La próxima vez se sigue por aquí.")
                return False
            self._marcador.guardar(self._nombre, 0)
        self._preguntas()
        print(texto.fuerte("Se ha aprendido:"))
        for punto in texto.seccion(self._hoja, "Qué se aprende"):
            print(texto.parrafo(f"- {punto}"))
        self._decir(f"Lo tecleado y lo que salió está en {ruta}, por si hay que entregarlo.")
        return True

    def _elementos(self, sitio):
        """Paragraphs and steps from a step on; the last paragraphs before it are shown again."""
        n, previos = 0, []
        for elemento in self._hoja.elementos:
            if isinstance(elemento, notacion.Parrafo):
                if texto.titulo_de(elemento.texto) in ("Preguntas", "Respuestas"):
                    break
                previos.append(elemento)
                continue
            # The text of steps that were done on another day is not shown again, but for the last of it.
            suyos = sum(paso in self._pasos for paso in elemento.pasos)
            if n + suyos > sitio:
                self._explicar(previos if n >= sitio else previos[-2:])
                for _ in range(suyos):
                    if n >= sitio:
                        self._paso(n, previos)
                        self._marcador.guardar(self._nombre, n + 1)
                    n += 1
            else:
                n += suyos
            previos = []
        self._explicar(previos)  # what is said of the last session

    @staticmethod
    def _explicar(parrafos):
        for uno in parrafos:
            print("\n" + texto.parrafo(uno.texto))
        print()

    def _preguntas(self):
        respuestas = texto.seccion(self._hoja, "Respuestas")
        for pregunta, respuesta in zip(texto.seccion(self._hoja, "Preguntas"), respuestas):
            print("\n" + texto.parrafo(f"Pregunta. {pregunta}").replace("Pregunta.", texto.fuerte("Pregunta."), 1))
            try:
                self._pedir("Respuesta (Intro para verla): ")
            except (EOFError, Tecla):
                print()
            print(texto.parrafo(respuesta))
        print()

    def _preparar(self, sitio):
        """A clean shell with the first steps done by the tool. Returns how many were. They go into the transcript once
        more, for what follows speaks of the pids and addresses of this shell."""
        self.cerrar()
        if avisa_de_systemd():
            self._decir("El shell arranca con su aviso sobre systemd: unos 18 segundos.")
        self._conductor = conductor_para(self._hoja, self._programa)
        self._ejecucion = Ejecucion(self._hoja, self._conductor, self._anotar_tecleado, self._anotar_salida)
        try:
            for n in range(sitio):
                self._ejecucion.paso(n)
        except Falla as falla:
            self._decir(f"No se puede volver al paso {sitio + 1} ({falla.resumen}); se empieza de nuevo.")
            return self._preparar(0)
        return sitio

    def cerrar(self):
        if self._conductor:
            self._conductor.__exit__(None, None, None)
            self._conductor = None

    def _paso(self, n, parrafos):
        paso = self._pasos[n]
        if isinstance(paso, notacion.Fichero):
            self._ejecucion.paso(n)
            self._decir(f"Fichero {paso.nombre}, creado en el directorio de la práctica:")
            print("".join(f"    {linea}\n" for linea in paso.contenido.splitlines()), end="")
        elif isinstance(paso, (notacion.Relacion, notacion.Final)):
            self._comprobar_sola(n, paso)
        else:
            while not self._intento(n, paso, parrafos):
                pass

    def _comprobar_sola(self, n, paso):
        try:
            self._ejecucion.paso(n)
        except Falla as falla:
            self._decir(f"Debería cumplirse, y {falla.resumen}: {paso.texto if hasattr(paso, 'texto') else ''}")
            return
        if isinstance(paso, notacion.Relacion):
            self._decir(f"Se cumple: {paso.texto}")
        elif paso.estado == 0:
            self._decir("El shell ha terminado con estado 0, como dice la hoja.")
        else:
            self._decir(f"El shell ha terminado (señal {paso.estado})" + ", como dice la hoja.")

    def _indicador(self, paso):
        if isinstance(paso, notacion.Sistema):
            return "$ "
        self._conductor.terminal(paso.shell)
        return ("" if paso.shell == "a" else f"[{paso.shell}] ") + self._conductor.prompts.get(paso.shell, "")

    def _intento(self, n, paso, parrafos):
        """One line of the student's. Returns whether the step is done."""
        indicador = self._indicador(paso)
        toca = self._ejecucion.nombres.rellenar(paso.piezas)
        try:
            linea = self._pedir(indicador)
        except Tecla as tecla:
            linea = str(tecla)
            print()
        except EOFError:
            print()
            if toca != "^D" and not self._lee_otro_programa(paso):
                self._fin_de_entrada()
                return False
            linea = "^D"
        pedida = " ".join(linea.split())
        if isinstance(paso, notacion.Sistema) and linea in notacion.TECLAS:
            self._decir(f"{linea.replace('^', 'Ctrl-')} no interrumpe nada: sh aún espera su línea (con ? se ve).")
        elif pedida == "?":
            self._decir(f"Pulsar {toca.replace('^', 'Ctrl-')}" if toca in notacion.TECLAS else f"Toca: {toca}")
        elif pedida == ":texto":
            self._explicar(parrafos)
        elif pedida == ":salir":
            raise Salir
        elif pedida == ":rehacer":
            self._rehacer(n)
        elif pedida == "??":
            print(indicador + toca)
            return self._hacer_el_paso(n)
        elif pedida == " ".join(toca.split()) and (pedida or not toca):
            return self._hacer_el_paso(n)
        elif pedida.startswith("$ ") or isinstance(paso, notacion.Sistema) and pedida:
            self._a_sh(pedida.removeprefix("$ "))
        elif pedida:
            return self._probar(n, paso, indicador, linea)
        return False

    def _lee_otro_programa(self, paso):
        return isinstance(paso, notacion.Orden) and self._conductor.terminal(paso.shell).lee_otro_programa()

    def _fin_de_entrada(self):
        if time.monotonic() - self._ultimo_fin < 20:
            raise Salir
        self._ultimo_fin = time.monotonic()
        self._decir("Ctrl-D es el fin de la entrada, y al shell lo terminaría; aquí no se le ha enviado.")
        self._decir("Otra vez, y se deja la práctica.")

    def _hacer_el_paso(self, n):
        def al_salir(lineas):
            for una in lineas:
                print(una)
            self._anotar_salida(lineas)

        self._ejecucion.al_salir(al_salir)
        try:
            self._ejecucion.paso(n)
            return True
        except Falla as falla:
            self._decir(f"No sale lo que dice la hoja: {falla.resumen}.")
            self._decir("Si es por algo que se ha probado antes, con :rehacer el shell queda como debe estar aquí.")
            if self._ejecucion.sorprendido:
                self._explicar_muerte(self._ejecucion.sorprendido)
                self._rehacer(n)
            return False
        finally:
            self._ejecucion.al_salir(self._anotar_salida)

    def _probar(self, n, paso, indicador, linea):
        """A line that is not the one that the sheet asks for; with an alias of its command it is as good."""
        self._anotar(f"{indicador}{linea}\n")
        entero = []

        def al_salir(trozo):
            print(trozo, end="", flush=True)
            entero.append(trozo)

        lineas = self._conductor.probar(paso.shell, linea, notacion.TECLAS.get(linea), al_salir)
        dicho = "".join(entero)
        if dicho and not dicho.endswith("\n"):
            print()
        self._anotar_salida(lineas)
        terminadas = self._conductor.terminadas()
        if terminadas:
            self._explicar_muerte(terminadas[0])
            self._rehacer(n)
            return False
        if linea in notacion.TECLAS or self._lee_otro_programa(paso):
            return False
        toca = self._ejecucion.nombres.rellenar(paso.piezas)
        if toca.split()[1:] == linea.split()[1:] and self._ejecucion.nombres.comparar(paso.esperado, lineas) is None:
            self._decir("También vale: es otro nombre de la misma orden.")
            return True
        self._decir("Eso no es lo que toca en la hoja (con ? se ve), pero ahí queda.")
        return False

    def _a_sh(self, linea):
        """A line for sh that the sheet does not ask for: a remark in the transcript, not output of the step before."""
        octetos = self._conductor.ejecutar(linea)
        lineas = self._conductor.esperar(octetos)
        for una in lineas:
            print(una)
        self._anotar_salida([REMARCA + una for una in (f"$ {linea}", *lineas)])

    def _explicar_muerte(self, terminada):
        nombre, estado = terminada
        cual = "" if nombre == "a" else f" {nombre}"
        como = f"con estado {estado}" if isinstance(estado, int) else f"por la señal {estado}"
        remedio = REMEDIOS.get(estado, f"Se evita con: sighandler -Frestart {estado}" if como.startswith("por") else "")
        self._decir(f"El shell{cual} ha terminado {como}. {remedio}".rstrip())

    def _rehacer(self, n):
        hechos = self._preparar(n)
        if hechos != n:
            raise Salir
        self._decir("Hay un shell recién arrancado, con los pasos anteriores hechos.")
