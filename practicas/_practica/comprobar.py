# SPDX-License-Identifier: MIT
"""practica comprobar: runs sheets against the program and reports the first thing in each that is not as it says."""

import os
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor

from . import notacion
from .comparar import Nombres
from .conductor import Conductor, Problema, avisa_de_systemd


class Falla(Exception):
    """The program and the sheet differ; the text says where and how, resumen only how, in one line."""

    def __init__(self, texto, resumen=None):
        super().__init__(texto)
        self.resumen = resumen or texto.partition("\n")[0]


def usuario_actual():
    return "root" if os.geteuid() == 0 else "usuario"


class Ejecucion:
    """A sheet being run, a step at a time. al_teclear and al_salir are told what is typed and what came."""

    def __init__(self, hoja, conductor, al_teclear=None, al_salir=None):
        self.hoja = hoja
        self.conductor = conductor
        self.nombres = Nombres()
        self._pasos = hoja.pasos(usuario_actual())
        self._terminadas = []
        self.sorprendido = None  # the shell that has ended where the sheet does not say so: (name, how)
        self._al_teclear = al_teclear or (lambda paso, texto: None)
        self._al_salir = al_salir or (lambda lineas: None)

    def al_salir(self, funcion):
        self._al_salir = funcion

    def todo(self):
        for n in range(len(self._pasos)):
            self.paso(n)
        quejas = self.conductor.despedir()
        if quejas:
            raise Falla(f"{self.hoja.fichero}: al terminar la hoja, " + "; ".join(quejas))

    def paso(self, n):
        paso = self._pasos[n]
        siguiente = self._pasos[n + 1] if n + 1 < len(self._pasos) else None
        if isinstance(paso, notacion.Fichero):
            self.conductor.crear_fichero(paso.nombre, paso.contenido)
        elif isinstance(paso, notacion.Relacion):
            self._relacion(paso)
        elif isinstance(paso, notacion.Final):
            self._final(paso)
        else:
            self._linea(paso, siguiente)

    def _linea(self, paso, siguiente):
        if self._terminadas:
            raise self._falla(paso, self._sin_decir(*self._terminadas[0]))
        texto = self.nombres.rellenar(paso.piezas)
        self._al_teclear(paso, texto)
        es_orden = isinstance(paso, notacion.Orden)
        try:
            previa = b""
            if es_orden:
                self.conductor.teclear(paso.shell, texto, paso.tecla)
            else:
                previa = self.conductor.ejecutar(texto)
            lineas = self.conductor.esperar(
                previa,
                actor=paso.shell if es_orden else None,
                leer={siguiente.shell} & self.conductor.terminales.keys() if self._se_teclea(siguiente) else (),
                fin=isinstance(siguiente, notacion.Final),
                satisface=lambda lineas: self.nombres.comparar(paso.esperado, lineas) is None,
            )
        except Problema as motivo:
            lineas = self.conductor.impreso()
            self._al_salir(lineas)
            raise self._falla(paso, str(motivo), lineas, texto) from None
        self._al_salir(lineas)
        self._terminadas += self.conductor.terminadas()
        if self._terminadas and not isinstance(siguiente, notacion.Final):
            self.sorprendido = self._terminadas[0]
        diferencia = self.nombres.comparar(paso.esperado, lineas)
        if diferencia is not None:
            raise self._no_coincide(paso, texto, lineas, *diferencia)
        if self.sorprendido:
            raise self._falla(paso, self._sin_decir(*self.sorprendido))

    @staticmethod
    def _sin_decir(nombre, estado):
        return f"el shell {nombre} ha terminado ({estado}) y la hoja no lo dice: falta «= {estado}»"

    @staticmethod
    def _se_teclea(paso):
        return isinstance(paso, notacion.Orden) and paso.tecla is None

    def _relacion(self, paso):
        try:
            cumple = self.nombres.cumple(paso.arbol)
        except ValueError as motivo:
            raise self._falla(paso, f"la relación no tiene valor: {motivo}") from None
        if not cumple:
            raise self._falla(paso, "no se cumple con " + self._ligados_en(paso.texto))

    def _ligados_en(self, texto):
        """What the names in a text stand for: "a = 1, b = 2"."""
        usados = [nombre for nombre in self.nombres.textos if nombre in notacion.palabras(texto)]
        return ", ".join(f"{nombre} = {self.nombres.textos[nombre]}" for nombre in usados)

    def _final(self, paso):
        if not self._terminadas:
            raise self._falla(paso, "ningún shell ha terminado")
        _, estado = self._terminadas.pop(0)
        if estado != paso.estado:
            raise self._falla(paso, f"el shell ha terminado con {estado}, no con {paso.estado}")

    def _falla(self, paso, motivo, lineas=None, texto=None):
        dicho = f"{self.hoja.fichero}:{paso.linea}: {motivo}"
        if texto is not None or hasattr(paso, "texto"):
            dicho += f"\n    {texto if texto is not None else paso.texto}"
        if lineas:
            dicho += "".join(f"\n    | {linea}" for linea in lineas[:40])
        return Falla(dicho, motivo)

    def _no_coincide(self, paso, texto, lineas, esperada, llegada):
        signo = f"{paso.shell}> " if isinstance(paso, notacion.Orden) else "$ "
        quiere = paso.esperado[esperada] if esperada < len(paso.esperado) else None
        esperaba = f"«{quiere.texto}»" if quiere else "nada más"
        salio = f"«{lineas[llegada]}»" if llegada < len(lineas) else "nada más"
        conocidos = self._ligados_en(quiere.texto) if quiere else ""
        dicho = f"{self.hoja.fichero}:{quiere.linea if quiere else paso.linea}: no sale lo que dice la hoja"
        dicho += f"\n    {signo}{texto}"
        dicho += f"\n    se esperaba: {esperaba}" + (f" ({conocidos})" if conocidos else "")
        dicho += f"\n    ha salido:   {salio}"
        dicho += "\n    todo lo que salió:" + "".join(f"\n    | {linea}" for linea in lineas[:40])
        if len(lineas) > 40:
            dicho += f"\n    | … y {len(lineas) - 40} líneas más"
        return Falla(dicho, f"se esperaba {esperaba} y ha salido {salio}")


def conductor_para(hoja, programa):
    """A conductor for a sheet, in a directory of its name."""
    pasos = hoja.pasos(usuario_actual())
    shells = {paso.shell for paso in pasos if isinstance(paso, notacion.Orden)}
    finales = sum(isinstance(paso, notacion.Final) for paso in pasos)
    nombre = os.path.splitext(os.path.basename(hoja.fichero))[0]
    return Conductor(programa, nombre, len(shells) + finales)


def comprobar_hoja(camino, programa):
    """Runs one sheet. Falla or notacion.Error when something is wrong; else the number of steps."""
    hoja = notacion.leer(camino)
    with conductor_para(hoja, programa) as conductor:
        try:
            Ejecucion(hoja, conductor).todo()
        except Problema as motivo:
            raise Falla(f"{camino}: {motivo}") from None
    return len(hoja.pasos(usuario_actual()))


def comprobar(hojas, programa):
    """The mode itself. Exit status: 0 all as they say, 1 one differs, 2 one has a mistake in its notation."""
    if len(hojas) == 1:
        return _una(hojas[0], programa)
    # Each sheet in a process of its own, side by side: they mostly wait.
    guion = os.path.abspath(sys.argv[0])
    inicio, peor = time.monotonic(), 0

    def correr(hoja):
        return subprocess.run(
            [sys.executable, guion, "comprobar", "--programa", programa, hoja], stdout=subprocess.PIPE, text=True
        )

    with ThreadPoolExecutor(_a_la_vez()) as grupo:
        for resultado in grupo.map(correr, hojas):
            sys.stdout.write(resultado.stdout)
            sys.stdout.flush()
            peor = max(peor, resultado.returncode if resultado.returncode >= 0 else 1)
    print(f"{len(hojas)} hojas en {time.monotonic() - inicio:.1f} s: " + ("todas bien" if peor == 0 else "hay fallos"))
    return peor


def _a_la_vez():
    return 16 if avisa_de_systemd() else (os.cpu_count() or 1) + 1  # the sheets, too, wait together


def _una(camino, programa):
    inicio = time.monotonic()
    try:
        pasos = comprobar_hoja(camino, programa)
    except notacion.Error as motivo:
        print(f"mal escrita  {motivo}")
        return 2
    except Falla as motivo:
        print(f"FALLA        {motivo}")
        return 1
    print(f"bien         {camino} ({pasos} pasos, {time.monotonic() - inicio:.1f} s)")
    return 0
