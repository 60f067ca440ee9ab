# SPDX-License-Identifier: MIT
"""Sheets as text on a terminal: paragraphs to its width, sections and their lists."""

import os
import re
import shutil
import sys
import textwrap

from . import notacion


def ancho():
    return min(shutil.get_terminal_size().columns, 100)


def _con_estilo(codigo, texto):
    colores = sys.stdout.isatty() and "NO_COLOR" not in os.environ
    return f"\x1b[{codigo}m{texto}\x1b[m" if colores and texto else texto


def fuerte(texto):
    return _con_estilo("1", texto)


def tenue(texto):
    return _con_estilo("2", texto)


def parrafo(texto):
    """A Markdown paragraph for the terminal: headings strong, a picture as what it shows,
    tables and other blocks as they are, the rest filled."""
    lineas = texto.split("\n")
    titulo = titulo_de(texto)
    if titulo is not None:
        resto = "\n".join(lineas[1:])
        return fuerte(titulo) + ("\n" + parrafo(resto) if resto else "")
    imagen = re.fullmatch(r"!\[(.*)\]\((.*)\)", texto)
    if imagen:
        lineas[0] = f"Figura: {imagen.group(1)} ({imagen.group(2)})"
    if lineas[0].startswith(("|", "    ", "```", "~~~")):
        return texto
    if _ES_PUNTO.match(lineas[0]):
        return "\n".join(
            textwrap.fill(f"{marca} {punto}", ancho(), subsequent_indent=" " * (len(marca) + 1))
            for marca, punto in puntos(texto)
        )
    return textwrap.fill(" ".join(linea.strip() for linea in lineas), ancho())


def titulo_de(texto):
    """The text of a heading, or None."""
    encontrado = re.match(r"#+ +(.*?)(?:\n|$)", texto)
    return encontrado.group(1) if encontrado else None


_ES_PUNTO = re.compile(r"([-*]|\d+\.) +(.*)")


def puntos(texto):
    """The items of a list: [(mark, text)]."""
    salida = []
    for linea in texto.split("\n"):
        encontrado = _ES_PUNTO.match(linea)
        if encontrado:
            salida.append(encontrado.groups())
        elif salida:
            salida[-1] = (salida[-1][0], f"{salida[-1][1]} {linea.strip()}")
    return salida


def seccion(hoja, titulo):
    """The items of the lists in the section of that heading."""
    dentro, salida = False, []
    for elemento in hoja.elementos:
        if not isinstance(elemento, notacion.Parrafo):
            continue
        suyo = titulo_de(elemento.texto)
        if suyo is not None:
            dentro = suyo == titulo
        if dentro:
            salida += [punto for _, punto in puntos(elemento.texto)]
    return salida
