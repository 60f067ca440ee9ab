# SPDX-License-Identifier: MIT
"""Holds what came against what a sheet expects, and keeps what the names stand for."""

import re

from . import notacion

# The shell's prompt during a sheet: its usual one between two characters that nothing else prints, so that what it
# prints can be told from it wherever it ends up.
PROMPT = "\x1e%o@%m{%B}%b%%)%b\x1f"
_PROMPT = re.compile("\x1e[^\x1f]*\x1f")


def prompt_final(salida):
    """The prompt that output ends with, as one sees it; empty when it ends with something else."""
    encontrado = re.search(b"\x1e([^\x1e\x1f]*)\x1f$", salida)
    return encontrado.group(1).decode("utf-8", "replace") if encontrado else ""


def fin_de_lo_entero(salida):
    """How much of it does not end in the middle of a prompt."""
    abierto = salida.rfind(b"\x1e")
    return abierto if abierto > salida.rfind(b"\x1f") else len(salida)


def visible(salida):
    """Bytes as a reader sees them: no prompts, controls other than tab and line end as ^X."""
    texto = _PROMPT.sub("", salida.decode("utf-8", "backslashreplace"))
    return re.sub(r"[\x00-\x08\x0b-\x1f\x7f]", lambda c: "^" + chr(ord(c.group()) ^ 64), texto)


def limpiar(salida):
    """The same in lines, tabs as the blanks that they take, without what does not show at the ends."""
    return en_lineas(visible(salida))


def en_lineas(texto):
    lineas = [linea.expandtabs(8).rstrip() for linea in texto.split("\n")]
    while lineas and not lineas[-1]:
        lineas.pop()
    return lineas


class Nombres:
    """The names of a sheet and the texts that they are bound to."""

    def __init__(self):
        self.textos = {}
        self.clases = {}

    def valores(self):
        return {nombre: notacion.numero(self.clases[nombre], texto) for nombre, texto in self.textos.items()}

    def rellenar(self, piezas):
        """The text of a line to type, names replaced by what they stand for."""
        return "".join(p if isinstance(p, str) else self.textos[p.nombre] for p in piezas)

    def comparar(self, esperado, lineas):
        """None and new bindings when all lines are as expected; else (index of the expected line that fails, or
        len(esperado) when lines are left over; index of the line that came, or len(lineas))."""
        esperado = _sin_cola(esperado)
        salida = "".join(linea + "\n" for linea in lineas)
        # A hole at the end of what is expected stops at nothing, so the whole is tried first, then ever less of it.
        patron, ligados = self._patron(esperado)
        encaje = re.fullmatch(patron, salida)
        if encaje:
            for nombre, clase in ligados.items():
                self.textos[nombre] = encaje.group(nombre)
                self.clases[nombre] = clase
            return None
        for cuantas in range(len(esperado), -1, -1):
            encaje = re.match(self._patron(esperado[:cuantas])[0], salida)
            if encaje:
                return cuantas, salida.count("\n", 0, encaje.end())
        raise AssertionError("nothing expected matches anything")

    def _patron(self, esperado):
        ligados, patron = {}, ""
        for linea in esperado:
            patron += r"(?:[^\n]*\n)*?" if linea.cualesquiera else self._linea(linea.piezas, ligados) + r"\n"
        return patron, ligados

    def _linea(self, piezas, ligados):
        """Pattern of one line. Blanks that touch a hole may be more or fewer: columns move with what fills them."""
        patron = ""
        for i, pieza in enumerate(piezas):
            if isinstance(pieza, str):
                antes = " *" if i == 0 else " +"
                izquierda = len(pieza) - len(pieza.lstrip(" ")) if i > 0 else 0
                derecha = len(pieza) - len(pieza.rstrip(" ")) if i + 1 < len(piezas) else 0
                if pieza.isspace() and izquierda + derecha:
                    patron += antes
                    continue
                dentro = pieza[izquierda : len(pieza) - derecha]
                patron += (" +" if izquierda else "") + re.escape(dentro) + (" +" if derecha else "")
            elif pieza.nombre == "_":
                patron += f"(?:{notacion.CLASES[pieza.clase]})"
            elif pieza.nombre in self.textos:
                patron += re.escape(self.textos[pieza.nombre])
            elif pieza.nombre in ligados:
                patron += f"(?P={pieza.nombre})"
            else:
                ligados[pieza.nombre] = pieza.clase
                patron += f"(?P<{pieza.nombre}>{notacion.CLASES[pieza.clase]})"
        # A value that is right-aligned in its column may fill it.
        return " *" + patron if piezas and not isinstance(piezas[0], str) else patron

    def cumple(self, arbol):
        """Whether a relation holds; ValueError when it has no value."""
        return bool(notacion.valor(arbol, self.valores()))


def _sin_cola(esperado):
    """Without the blank lines that stand before the next step for the reader's sake."""
    fin = len(esperado)
    while fin and not esperado[fin - 1].cualesquiera and not esperado[fin - 1].piezas:
        fin -= 1
    return esperado[:fin]
