# SPDX-License-Identifier: MIT
"""The notation of the sheets: Markdown text in, steps out. A mistake is refused with file, line and reason.

NOTACION.md, beside the sheets, describes the language to authors.
"""

import ast
import re
import signal
import unicodedata
from dataclasses import dataclass, field


class Error(Exception):
    """A mistake in the notation of a sheet."""

    def __init__(self, fichero, linea, motivo):
        super().__init__(f"{fichero}:{linea}: {motivo}")


# What a hole of each kind holds. Lazy where a longer match would swallow the text that follows.
CLASES = {
    "dir": r"0x[0-9a-f]+|\(nil\)",
    "pid": r"[0-9]+",
    "num": r"-?[0-9]+",
    "fecha": r"(?:[A-Z][a-z]{2} +)*[0-9]+(?:[/:.-][0-9]+)*(?:,? +(?:[0-9]+(?:[/:.-][0-9]+)*|[A-Z][a-z]{2}))*",
    "txt": r"\S(?:[^\n]*?\S)??",
}

_NOMBRE = re.compile(r"[A-Za-z_][A-Za-z_0-9]*")
_RESERVADOS = {"and", "or", "not", "in", "is", "if", "else", "lambda", "True", "False", "None"}

# Keys that can stand alone in a typed line, and the bytes that a terminal sends for them.
TECLAS = {"^C": b"\x03", "^D": b"\x04", "^Z": b"\x1a", "^\\": b"\x1c"}


@dataclass
class Hueco:
    """{name:kind} or {name}; clase is None for the latter. The name _ is never bound."""

    nombre: str
    clase: str | None


@dataclass
class Esperada:
    """One expected line: literal pieces and holes; cualesquiera stands for {...}."""

    linea: int
    texto: str
    piezas: list = field(default_factory=list)
    cualesquiera: bool = False


@dataclass
class Paso:
    """What all steps have: the sheet's line, and for whom it holds (None, "root" or "usuario")."""

    linea: int
    solo: str | None


@dataclass
class Orden(Paso):
    """A line typed in a shell, or a key (then tecla holds its bytes)."""

    shell: str
    texto: str
    piezas: list
    tecla: bytes | None = None
    esperado: list = field(default_factory=list)


@dataclass
class Sistema(Paso):
    """A line run by sh."""

    texto: str
    piezas: list
    esperado: list = field(default_factory=list)


@dataclass
class Relacion(Paso):
    texto: str
    arbol: ast.expr


@dataclass
class Final(Paso):
    """A shell has ended: estado is its status, or the name of a signal without SIG."""

    estado: int | str


@dataclass
class Fichero(Paso):
    nombre: str
    contenido: str


@dataclass
class Parrafo:
    """A stretch of Markdown between blank lines (headings and other fenced blocks included)."""

    linea: int
    texto: str


@dataclass
class Bloque:
    """The steps of one fenced block."""

    linea: int
    pasos: list


@dataclass
class Hoja:
    """A sheet: its paragraphs and blocks in order."""

    fichero: str
    elementos: list

    def pasos(self, usuario=None):
        """All steps, or those that hold for a user ("root" or "usuario")."""
        return [
            paso
            for bloque in self.elementos
            if isinstance(bloque, Bloque)
            for paso in bloque.pasos
            if usuario is None or paso.solo in (None, usuario)
        ]


def leer(fichero):
    """Reads a sheet from a file. Error for mistakes in it, or when it cannot be read."""
    try:
        with open(fichero, encoding="utf-8") as f:
            texto = f.read()
    except OSError as motivo:
        raise Error(fichero, 1, motivo.strerror) from None
    except UnicodeDecodeError as motivo:
        raise Error(fichero, 1, f"no es UTF-8 (octeto {motivo.start})") from None
    return analizar(texto, fichero)


def analizar(texto, fichero="hoja"):
    """Reads a sheet from a text."""
    hoja = Hoja(fichero, list(_Lector(fichero, texto.expandtabs(8).split("\n")).elementos()))
    for usuario in ("root", "usuario"):
        _comprobar_nombres(hoja, usuario)
    return hoja


class _Lector:
    """Walks the lines of a Markdown file."""

    _VALLA = re.compile(r" {0,3}(`{3,}|~{3,}) *([^`]*)$")

    def __init__(self, fichero, lineas):
        self.fichero = fichero
        self.lineas = lineas

    def error(self, linea, motivo):
        return Error(self.fichero, linea, motivo)

    def elementos(self):
        """Paragraphs and blocks; a fenced block of another kind belongs to its paragraph's text."""
        parrafo, n = [], 0
        while n < len(self.lineas):
            valla = self._VALLA.match(self.lineas[n])
            if valla:
                cierre = self._cierre(n, valla.group(1))
                clase = valla.group(2).split()
                if self._es_nuestro(n + 1, clase):
                    yield from self._parrafo(parrafo, n)
                    parrafo = []
                    yield Bloque(n + 1, list(self._bloque(n + 1, clase, cierre)))
                else:
                    parrafo += self.lineas[n : cierre + 1]
                n = cierre + 1
            elif not self.lineas[n].strip():
                yield from self._parrafo(parrafo, n)
                parrafo = []
                n += 1
            else:
                parrafo.append(self.lineas[n].rstrip())
                n += 1
        yield from self._parrafo(parrafo, n)

    @staticmethod
    def _parrafo(lineas, n):
        if lineas:
            yield Parrafo(n - len(lineas) + 1, "\n".join(lineas))

    def _cierre(self, n, marca):
        cierra = re.compile(r" {0,3}" + re.escape(marca[0]) + "{%d,} *$" % len(marca))
        for m in range(n + 1, len(self.lineas)):
            if cierra.match(self.lineas[m]):
                return m
        raise self.error(n + 1, "el bloque no se cierra")

    def _es_nuestro(self, linea, clase):
        if not clase:
            return False
        llano = "".join(c for c in unicodedata.normalize("NFD", clase[0]).casefold() if c.isalpha() and c.isascii())
        if llano not in ("sesion", "session", "fichero", "archivo"):
            return False
        if clase[0] not in ("sesion", "fichero"):
            raise self.error(linea, f"bloque «{clase[0]}»: se escribe «sesion» o «fichero NOMBRE»")
        return True

    def _bloque(self, linea, clase, cierre):
        dentro = self.lineas[linea:cierre]
        if clase[0] == "sesion":
            if len(clase) > 1:
                raise self.error(linea, f"sobra «{clase[1]}» tras «sesion»")
            yield from self._sesion(linea + 1, dentro)
            return
        if len(clase) != 2:
            raise self.error(linea, "«fichero» pide un nombre y nada más")
        if "/" in clase[1] or clase[1] in (".", ".."):
            raise self.error(linea, f"el fichero «{clase[1]}» ha de quedar en el directorio de la hoja")
        yield Fichero(linea, None, clase[1], "".join(renglon + "\n" for renglon in dentro))

    def _sesion(self, primera, lineas):
        solo, abierto, actual = None, 0, None
        for n, texto in enumerate(lineas, primera):
            texto = texto.rstrip()
            if texto.startswith("?"):
                condicion = texto[1:]
                if condicion not in ("root", "usuario", "fin"):
                    raise self.error(n, f"condición «{texto}»: se escribe ?root, ?usuario o ?fin")
                if (condicion == "fin") != (solo is not None):
                    raise self.error(n, f"«{texto}» " + ("sin nada abierto" if solo is None else "dentro de otra"))
                solo, abierto = (None, 0) if condicion == "fin" else (condicion, n)
                actual = None
                continue
            paso = self._paso(n, texto, solo)
            if paso is not None:
                actual = paso if isinstance(paso, (Orden, Sistema)) else None
                yield paso
            elif actual is not None:
                actual.esperado.append(self._esperada(n, texto))
            elif texto:
                raise self.error(n, f"salida sin línea que la cause: «{texto}»")
        if solo is not None:
            raise self.error(abierto, f"?{solo} sin ?fin")

    def _paso(self, n, texto, solo):
        """The step that a line begins, or None for expected output."""
        otro = re.match(r"shell +([A-Za-z0-9_]+)>(.*)$", texto)
        if otro:
            return self._orden(n, solo, otro.group(1), otro.group(2))
        if texto.startswith("shell "):
            raise self.error(n, "tras «shell» va el nombre de uno y «>» (si es salida, se escribe «\\shell »)")
        if texto[:1] not in ("$", ">", "!", "="):
            return None
        signo, resto = texto[0], texto[1:]
        if resto and not resto.startswith(" "):
            raise self.error(n, f"tras «{signo}» va un blanco (si es salida, se escribe «\\{signo}»)")
        if signo == ">":
            return self._orden(n, solo, "a", resto)
        resto = resto.strip()
        if not resto:
            raise self.error(n, f"«{signo}» sin nada detrás")
        if signo == "$":
            return Sistema(n, solo, resto, self._piezas(n, resto, False))
        if signo == "!":
            return Relacion(n, solo, resto, self._relacion(n, resto))
        return Final(n, solo, self._estado(n, resto))

    def _orden(self, n, solo, shell, resto):
        if resto and not resto.startswith(" "):
            raise self.error(n, "tras «>» va un blanco")
        resto = resto[1:]
        if len(resto.encode()) > 4000:
            raise self.error(n, "la línea no cabe en la del shell (4095 caracteres)")
        return Orden(n, solo, shell, resto, self._piezas(n, resto, False), TECLAS.get(resto))

    def _estado(self, n, resto):
        if resto.isascii() and resto.isdigit() and int(resto) < 256:
            return int(resto)
        if f"SIG{resto}" not in signal.Signals.__members__:
            raise self.error(n, f"«= {resto}»: se espera un estado (0 a 255) o una señal sin SIG (SEGV)")
        return resto

    def _esperada(self, n, texto):
        if texto.strip() == "{...}":
            return Esperada(n, "{...}", cualesquiera=True)
        if re.match(r"\\(?:[>$!=?\\]|shell )", texto):
            texto = texto[1:]
        return Esperada(n, texto, self._piezas(n, texto, True))

    def _piezas(self, n, texto, ligar):
        """Splits a text into literal strings and holes. ligar: holes may carry a kind, that is, bind."""
        piezas, literal, i = [], "", 0
        while i < len(texto):
            if texto[i] != "{":
                literal += texto[i]
                i += 1
                continue
            if texto.startswith("{{", i):
                literal += "{"
                i += 2
                continue
            fin = texto.find("}", i)
            hueco = re.fullmatch(r"([A-Za-z_][A-Za-z_0-9]*)(?::([^:]*))?", texto[i + 1 : fin]) if fin > 0 else None
            if texto.startswith("{...}", i):
                raise self.error(n, "«{...}» va solo en su línea, y únicamente en la salida")
            if not hueco:
                raise self.error(n, f"llave suelta en «{texto[i:i + 12]}»: una llave se escribe «{{{{»")
            nombre, clase = hueco.groups()
            if nombre in _RESERVADOS:
                raise self.error(n, f"«{nombre}» no puede ser un nombre")
            if clase is not None and clase not in CLASES:
                raise self.error(n, f"clase «{clase}» desconocida: " + ", ".join(CLASES))
            if clase is not None and not ligar:
                raise self.error(n, f"«{nombre}» solo toma valor en la salida; aquí se escribe «{{{nombre}}}»")
            if nombre == "_" and clase is None:
                raise self.error(n, "«{_}» sin clase: «_» no guarda valor")
            if literal:
                piezas.append(literal)
                literal = ""
            piezas.append(Hueco(nombre, clase))
            i = fin + 1
        if literal:
            piezas.append(literal)
        return piezas

    def _relacion(self, n, texto):
        try:
            arbol = ast.parse(texto, mode="eval").body
        except (SyntaxError, ValueError):
            raise self.error(n, f"la relación «{texto}» no se entiende") from None
        for nodo in ast.walk(arbol):
            if not isinstance(nodo, _NODOS) or (isinstance(nodo, ast.Constant) and type(nodo.value) not in (int, str)):
                raise self.error(n, f"«{texto}»: una relación solo admite nombres, números, textos, cuentas y comparaciones")
        if not isinstance(arbol, (ast.Compare, ast.BoolOp)) and not (
            isinstance(arbol, ast.UnaryOp) and isinstance(arbol.op, ast.Not)
        ):
            raise self.error(n, f"la relación «{texto}» no compara nada")
        return arbol


# What a relation may consist of: it is evaluated by valor() below, never by Python itself.
_CUENTAS = {
    ast.Add: lambda a, b: a + b,
    ast.Sub: lambda a, b: a - b,
    ast.Mult: lambda a, b: a * b,
    ast.FloorDiv: lambda a, b: a // b,
    ast.Mod: lambda a, b: a % b,
    ast.BitAnd: lambda a, b: a & b,
    ast.BitOr: lambda a, b: a | b,
    ast.BitXor: lambda a, b: a ^ b,
    ast.LShift: lambda a, b: a << min(b, 64),
    ast.RShift: lambda a, b: a >> b,
}
_COMPARACIONES = {
    ast.Eq: lambda a, b: a == b,
    ast.NotEq: lambda a, b: a != b,
    ast.Lt: lambda a, b: a < b,
    ast.LtE: lambda a, b: a <= b,
    ast.Gt: lambda a, b: a > b,
    ast.GtE: lambda a, b: a >= b,
    ast.In: lambda a, b: a in b,
    ast.NotIn: lambda a, b: a not in b,
}
_NODOS = (
    *_CUENTAS,
    *_COMPARACIONES,
    ast.BoolOp,
    ast.And,
    ast.Or,
    ast.UnaryOp,
    ast.Not,
    ast.USub,
    ast.Invert,
    ast.BinOp,
    ast.Compare,
    ast.Name,
    ast.Load,
    ast.Constant,
)


def valor(nodo, nombres):
    """Value of a relation. nombres: name to value, ints for numbers and addresses. ValueError when it has none."""
    if isinstance(nodo, ast.Constant):
        return nodo.value
    if isinstance(nodo, ast.Name):
        return nombres[nodo.id]
    try:
        if isinstance(nodo, ast.BoolOp):
            # Short-circuits like Python: what follows a false "and" may have no value.
            todos = (valor(parte, nombres) for parte in nodo.values)
            return all(todos) if isinstance(nodo.op, ast.And) else any(todos)
        if isinstance(nodo, ast.UnaryOp):
            dentro = valor(nodo.operand, nombres)
            return not dentro if isinstance(nodo.op, ast.Not) else -dentro if isinstance(nodo.op, ast.USub) else ~dentro
        if isinstance(nodo, ast.BinOp):
            return _CUENTAS[type(nodo.op)](valor(nodo.left, nombres), valor(nodo.right, nombres))
        lados = [valor(lado, nombres) for lado in (nodo.left, *nodo.comparators)]
        return all(_COMPARACIONES[type(op)](a, b) for op, a, b in zip(nodo.ops, lados, lados[1:]))
    except (TypeError, ZeroDivisionError) as motivo:
        raise ValueError(str(motivo)) from None


def numero(clase, texto):
    """The value that a bound text has in relations: addresses and numbers count, the rest is text."""
    if clase == "dir":
        return 0 if texto == "(nil)" else int(texto, 16)
    return int(texto) if clase in ("pid", "num") else texto


def _comprobar_nombres(hoja, usuario):
    """Refuses names used before they are bound, and bound twice as different kinds, as that user would meet them."""
    clases = {}

    def usar(linea, nombre):
        if nombre not in clases:
            raise Error(hoja.fichero, linea, f"«{nombre}» aún no tiene valor (para {usuario})")

    for paso in hoja.pasos(usuario):
        if isinstance(paso, Relacion):
            for nodo in ast.walk(paso.arbol):
                if isinstance(nodo, ast.Name):
                    usar(paso.linea, nodo.id)
        for hueco in getattr(paso, "piezas", ()):
            if isinstance(hueco, Hueco):
                usar(paso.linea, hueco.nombre)
        for esperada in getattr(paso, "esperado", ()):
            for hueco in esperada.piezas:
                if not isinstance(hueco, Hueco) or hueco.nombre == "_":
                    continue
                if hueco.clase is None:
                    usar(esperada.linea, hueco.nombre)
                elif clases.setdefault(hueco.nombre, hueco.clase) != hueco.clase:
                    raise Error(hoja.fichero, esperada.linea, f"«{hueco.nombre}» ya es {clases[hueco.nombre]}")


def palabras(texto):
    """The names that a relation speaks of."""
    return set(_NOMBRE.findall(texto))
