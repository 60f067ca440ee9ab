# SPDX-License-Identifier: MIT
"""practica calificar: holds what students hand in against a sheet."""

import dataclasses
import os
import re
from collections import Counter

from . import comparar, notacion, texto, transcripcion

HECHO, DISTINTO, FALTA, NO_CONSTA = "hecho", "distinto", "falta", "no consta"


@dataclasses.dataclass
class Fila:
    """How a step fared."""

    paso: notacion.Paso
    estado: str
    detalle: str = ""


def calificar(camino, entregas, indicador, con_detalle):
    """The mode itself: a table of steps for one transcript, a line for each of several. 0 when all steps are done in
    all of them, 1 when not, 2 when something cannot be read."""
    try:
        hoja = notacion.leer(camino)
        re.compile(indicador)
        todas = [(entrega, comparar_entrega(hoja, _leer(entrega), indicador)) for entrega in entregas]
    except notacion.Error as motivo:
        print(motivo)
        return 2
    except re.error as motivo:
        print(f"practica: el indicador no es una expresión regular: {motivo}")
        return 2
    except OSError as motivo:
        print(f"practica: {motivo.filename}: {motivo.strerror}")
        return 2
    if len(todas) == 1 or con_detalle:
        for entrega, filas in todas:
            _tabla(hoja, entrega, filas)
    else:
        _resumen(hoja, todas)
    return 0 if all(fila.estado in (HECHO, NO_CONSTA) for _, filas in todas for fila in filas) else 1


def _leer(entrega):
    with open(entrega, "rb") as f:
        return f.read()


def comparar_entrega(hoja, octetos, indicador):
    """The rows of a transcript."""
    # The student's user is told by nothing; a transcript of root's shows the steps that only root has.
    mejores = None
    for usuario in ("usuario", "root"):
        pasos = hoja.pasos(usuario)
        conocidas = _Conocidas(pasos)
        ordenes = transcripcion.ordenes(octetos, indicador, conocidas.es_de_sh, conocidas.es_sin_indicador)
        filas = _Calificacion(pasos, ordenes).filas()
        hechos = sum(fila.estado == HECHO for fila in filas)
        if mejores is None or hechos > mejores[0]:
            mejores = hechos, filas
    return mejores[1]


def _patron(paso):
    """A typed line as any student may have typed it: holes stand for any value, blanks for any number of them."""
    trozos = [re.escape(" ".join(f"x{p}x".split())[1:-1]) if isinstance(p, str) else r"\S+" for p in paso.piezas]
    return re.compile("".join(trozos).strip() if trozos else "")


def _conforme(paso, orden):
    """Whether what a command printed is what a step expects, as far as that can be said without knowing the names."""
    return comparar.Nombres().comparar(_sueltos(paso.esperado), _salida(orden)) is None


def _salida(orden):
    return comparar.en_lineas("\n".join(orden.salida))


class _Conocidas:
    """The lines of a sheet, for finding them in a transcript where no prompt tells."""

    def __init__(self, pasos):
        tecleados = (notacion.Orden, notacion.Sistema)
        self._lineas = [(_patron(p), p) for p in pasos if isinstance(p, tecleados) and p.piezas]

    def _que_casan(self, linea, de_sh):
        linea = " ".join(linea.split())
        return [p for patron, p in self._lineas if isinstance(p, notacion.Sistema) == de_sh and patron.fullmatch(linea)]

    def es_de_sh(self, linea):
        return bool(self._que_casan(linea, True))

    def es_sin_indicador(self, linea, previa):
        """A line of the sheet that stands where the one before it has already printed all that it was to print."""
        return bool(self._que_casan(linea, False)) and any(
            _conforme(paso, previa) for paso in self._que_casan(previa.texto, previa.de_sh)
        )


class _Calificacion:
    """The steps of a sheet against the commands of a transcript."""

    def __init__(self, pasos, ordenes):
        self._pasos = pasos
        self._ordenes = ordenes
        self._nombres = comparar.Nombres()

    def filas(self):
        parejas = self._emparejar()
        de_otros = {(type(p), getattr(p, "shell", "")) for n, p in enumerate(self._pasos) if n in parejas}
        salida = []
        for n, paso in enumerate(self._pasos):
            if isinstance(paso, (notacion.Orden, notacion.Sistema)):
                orden = parejas.get(n)
                if orden is not None:
                    salida.append(self._juzgar(n, paso, orden))
                elif self._en_otra_terminal(paso) and (type(paso), getattr(paso, "shell", "")) not in de_otros:
                    salida.append(Fila(paso, NO_CONSTA))
                else:
                    salida.append(Fila(paso, FALTA))
            elif isinstance(paso, notacion.Relacion):
                salida.append(self._relacion(paso))
        return salida

    @staticmethod
    def _en_otra_terminal(paso):
        """Lines for sh and for a second shell are typed elsewhere; a recording that has none of them blames nobody."""
        return isinstance(paso, notacion.Sistema) or paso.shell != "a"

    def _emparejar(self):
        """Step number to command: the longest run of steps that the student went through in their order, where one
        whose output agrees too counts for more."""
        numeros = [n for n, p in enumerate(self._pasos) if isinstance(p, (notacion.Orden, notacion.Sistema))]
        m = len(self._ordenes)
        mejor = [[0] * (m + 1) for _ in range(len(numeros) + 1)]
        pesos = {}
        for i in range(len(numeros) - 1, -1, -1):
            paso = self._pasos[numeros[i]]
            patron = _patron(paso)
            for j in range(m - 1, -1, -1):
                mejor[i][j] = max(mejor[i + 1][j], mejor[i][j + 1])
                orden = self._ordenes[j]
                del_mismo = orden.de_sh == isinstance(paso, notacion.Sistema)
                if del_mismo and patron.fullmatch(" ".join(orden.texto.split())):
                    pesos[i, j] = 2 + _conforme(paso, orden)
                    mejor[i][j] = max(mejor[i][j], pesos[i, j] + mejor[i + 1][j + 1])
        parejas, i, j = {}, 0, 0
        while i < len(numeros) and j < m:
            # The last run of several as good: whoever lost the shell began again, with another pid.
            if mejor[i][j] == mejor[i][j + 1]:
                j += 1
            elif (i, j) in pesos and mejor[i][j] == pesos[i, j] + mejor[i + 1][j + 1]:
                parejas[numeros[i]] = self._ordenes[j]
                i, j = i + 1, j + 1
            else:
                i += 1
        return parejas

    def _juzgar(self, n, paso, orden):
        esperado = _ligables(paso.esperado, self._nombres)
        salida = _salida(orden)
        siguiente = self._pasos[n + 1] if n + 1 < len(self._pasos) else None
        if isinstance(siguiente, notacion.Final):
            # What ended the shell is told by whoever started it, and a new one says hello: neither is the shell's.
            esperado = [*esperado, notacion.Esperada(paso.linea, "{...}", cualesquiera=True)]
        diferencia = self._nombres.comparar(esperado, salida)
        teclea = self._nombres_de(paso)
        if teclea and orden.texto != " ".join(teclea.split()):
            return Fila(paso, DISTINTO, f"se esperaba teclear «{teclea}» y se tecleó «{orden.texto}»")
        if diferencia is None:
            return Fila(paso, HECHO)
        esperada, llegada = diferencia
        quiere = f"«{esperado[esperada].texto}»" if esperada < len(esperado) else "nada más"
        vino = f"«{salida[llegada]}»" if llegada < len(salida) else "nada más"
        return Fila(paso, DISTINTO, f"se esperaba {quiere} y salió {vino}")

    def _nombres_de(self, paso):
        """The line with its names filled in, or None when one has no value in this transcript."""
        try:
            return self._nombres.rellenar(paso.piezas)
        except KeyError:
            return None

    def _relacion(self, paso):
        try:
            return Fila(paso, HECHO if self._nombres.cumple(paso.arbol) else DISTINTO)
        except (KeyError, ValueError):
            return Fila(paso, NO_CONSTA)


def _sueltos(esperado):
    """Expected lines whose holes stand for anything, for want of the values that they must repeat."""
    return _con_piezas(esperado, lambda p: p if isinstance(p, str) else notacion.Hueco("_", "txt"))


def _ligables(esperado, nombres):
    """Expected lines in which names that the transcript gave no value (their step is missing) stand for anything."""
    propios = {p.nombre for e in esperado for p in e.piezas if isinstance(p, notacion.Hueco) and p.clase}

    def pieza(p):
        if isinstance(p, str) or p.clase or p.nombre in nombres.textos or p.nombre in propios:
            return p
        return notacion.Hueco("_", "txt")

    return _con_piezas(esperado, pieza)


def _con_piezas(esperado, cambio):
    """Expected lines with each of their pieces changed."""
    return [dataclasses.replace(e, piezas=[cambio(p) for p in e.piezas]) for e in esperado]


def _tabla(hoja, entrega, filas):
    print(texto.fuerte(f"{entrega}, con {hoja.fichero}"))
    for fila in filas:
        paso = fila.paso
        signo = "$" if isinstance(paso, notacion.Sistema) else "!" if isinstance(paso, notacion.Relacion) else ">"
        otro = f"shell {paso.shell}" if getattr(paso, "shell", "a") != "a" else ""
        print(f"{paso.linea:5}  {fila.estado:9}  {otro}{signo} {paso.texto}")
        if fila.detalle:
            print(f"{'':18}{fila.detalle}")
    cuenta = _cuenta(filas)
    print(", ".join(f"{cuenta[estado]} {nombre}" for estado, nombre in _PLURALES.items()) + f"; de {len(filas)}")


_PLURALES = {HECHO: "hechos", DISTINTO: "distintos", FALTA: "que faltan", NO_CONSTA: "que no constan"}


def _cuenta(filas):
    return Counter(fila.estado for fila in filas)


def _resumen(hoja, todas):
    largo = max(len(os.path.basename(entrega)) for entrega, _ in todas)
    print(texto.fuerte(f"{'entrega':{largo}}  hechos  distintos  faltan  no constan  primero que falla"))
    for entrega, filas in todas:
        cuenta = _cuenta(filas)
        mal = next((fila for fila in filas if fila.estado in (DISTINTO, FALTA)), None)
        donde = f"{hoja.fichero}:{mal.paso.linea} {mal.estado}: {mal.paso.texto}" if mal else ""
        print(
            f"{os.path.basename(entrega):{largo}}  {cuenta[HECHO]:6}  {cuenta[DISTINTO]:9}  {cuenta[FALTA]:6}"
            f"  {cuenta[NO_CONSTA]:10}  {donde}".rstrip()
        )
