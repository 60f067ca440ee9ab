# SPDX-License-Identifier: MIT
"""What a student hands in: a recorded terminal, turned back into the lines that stood on it, and into commands."""

import re
from dataclasses import dataclass, field

# The prompt that the shell starts with, %o@%m{%B}%b%%)%b.
INDICADOR = r"[A-Za-z.]+@[^\s{}@]+\{[^{}]*\} %\) "


# What the tool itself says begins so, and belongs to nobody's output.
REMARCA = "· "


@dataclass
class Orden:
    """A line that was typed, and the lines that came after it. Of what was typed to sh the program knows nothing."""

    texto: str
    salida: list = field(default_factory=list)
    de_sh: bool = False


class _Pantalla:
    """As much of a terminal as line editors use: rows that wrap, and a cursor that moves among them."""

    # Control sequences with their numbers and letter; titles, character sets and the like, which nothing is made of.
    _SECUENCIA = re.compile(
        r"\x1b\[([0-9;?>]*)([@A-Za-z])|\x1b\][^\x07\x1b]*(?:\x07|\x1b\\)|\x1b[()][0-9A-B]|\x1b[=>78MDEHc]"
    )

    def __init__(self, columnas, solo_saltos):
        self.columnas = columnas
        self._solo_saltos = solo_saltos  # line ends without carriage returns: a text, not a terminal's bytes
        self.filas = [[]]
        self.sigue = [False]  # whether the row continues the one above
        self.fila = self.columna = 0

    def escribir(self, texto):
        i = 0
        while i < len(texto):
            secuencia = self._SECUENCIA.match(texto, i) if texto[i] == "\x1b" else None
            if secuencia:
                self._mover(secuencia.group(1), secuencia.group(2))
                i = secuencia.end()
                continue
            self._caracter(texto[i])
            i += 1

    def lineas(self):
        salida = []
        for fila, sigue in zip(self.filas, self.sigue):
            texto = "".join(fila)
            if sigue:
                salida[-1] += texto
            else:
                salida.append(texto)
        return [linea.rstrip() for linea in salida]

    def _caracter(self, c):
        if c == "\r":
            self.columna = 0
        elif c == "\n":
            self._bajar(False)
            self.columna = 0 if self._solo_saltos else self.columna
        elif c == "\b":
            self.columna = max(0, self.columna - 1)
        elif c == "\t":
            self.columna = min((self.columna // 8 + 1) * 8, self.columnas - 1)
        elif c == "\x07" or c == "\0":
            pass
        elif c < " " or c == "\x7f":
            for visible in "^" + chr(ord(c) ^ 64):
                self._poner(visible)
        else:
            self._poner(c)

    def _poner(self, c):
        if self.columna >= self.columnas:
            self._bajar(True)
            self.columna = 0
        fila = self.filas[self.fila]
        fila += " " * (self.columna + 1 - len(fila))
        fila[self.columna] = c
        self.columna += 1

    def _bajar(self, sigue):
        self.fila += 1
        if self.fila == len(self.filas):
            self.filas.append([])
            self.sigue.append(sigue)

    def _mover(self, numeros, orden):
        if not orden or numeros.startswith(("?", ">")):
            return
        primero = numeros.split(";")[0]
        n = int(primero) if primero else 1
        if orden == "C":
            self.columna = min(self.columna + n, self.columnas - 1)
        elif orden == "D":
            self.columna = max(0, self.columna - n)
        elif orden == "G":
            self.columna = n - 1
        elif orden == "A":
            self.fila = max(0, self.fila - n)
        elif orden == "B":
            self.fila = min(len(self.filas) - 1, self.fila + n)
        elif orden == "P":
            del self.filas[self.fila][self.columna : self.columna + n]
        elif orden == "@":
            self.filas[self.fila][self.columna : self.columna] = " " * n
        elif orden == "K":
            self._borrar_en_fila(int(primero or 0))
        elif orden == "J" and not primero.startswith(("1", "2", "3")):
            self._borrar_en_fila(0)
            del self.filas[self.fila + 1 :], self.sigue[self.fila + 1 :]
        elif orden in "HJ":  # the screen is cleared, and what stood on it is kept: what follows stands below it
            self.fila, self.columna = len(self.filas) - 1, 0
            if self.filas[self.fila]:
                self._bajar(False)

    def _borrar_en_fila(self, cual):
        fila = self.filas[self.fila]
        if cual == 0:
            del fila[self.columna :]
        elif cual == 1:
            fila[: self.columna + 1] = " " * min(self.columna + 1, len(fila))
        else:
            fila.clear()


def lineas(octetos):
    """The lines that stood on the terminal of a recording."""
    texto = octetos.decode("utf-8", "backslashreplace")
    cabecera = re.match(r"(?:Script|Escrito|Guion).*\n", texto)
    columnas = re.search(r'COLUMNS="(\d+)"', cabecera.group()) if cabecera else None
    pantalla = _Pantalla(int(columnas.group(1)) if columnas and int(columnas.group(1)) else 80, "\r" not in texto)
    pantalla.escribir(texto[cabecera.end() :] if cabecera else texto)
    return pantalla.lineas()


def ordenes(octetos, indicador, es_de_sh, es_sin_indicador):
    """What was typed, in order, each with what it printed. indicador: pattern of the shell's prompt.
    es_de_sh(text): whether the sheet gives that line to sh; only such lines are looked for behind other prompts.
    es_sin_indicador(text, previous): whether a line without a prompt was typed: the prompt went elsewhere with the
    shell's output, or a program reads."""
    prompt = re.compile(rf"(?:\[[A-Za-z0-9_]+\] )?(?:{indicador})")
    salida = []
    for linea in lineas(octetos):
        if linea.startswith(REMARCA):
            continue
        trozos = prompt.split(linea)
        if len(trozos) == 1:
            tecleada = re.match(r".*?[$#] (\S.*)", linea)
            if tecleada and es_de_sh(tecleada.group(1)):
                salida.append(Orden(tecleada.group(1), de_sh=True))
            elif salida and es_sin_indicador(linea, salida[-1]):
                salida.append(Orden(linea))
            elif salida:
                salida[-1].salida.append(linea)
            continue
        if salida and trozos[0]:
            salida[-1].salida.append(trozos[0])
        for tecleado in trozos[1:]:
            salida += map(Orden, _teclas(tecleado))
    return salida


def _teclas(tecleado):
    """A typed line; keys that stand before it, as the terminal echoes them, are lines of their own."""
    while True:
        tecla = re.match(r"\^[CDZ\\]", tecleado)
        if not tecla:
            break
        yield tecla.group()
        tecleado = tecleado[tecla.end() :]
    if tecleado.strip():
        yield " ".join(tecleado.split())
