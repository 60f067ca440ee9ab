# SPDX-License-Identifier: MIT
"""The notation: what is read from a sheet, what is refused, and what counts as equal."""

import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))

from _practica import notacion  # noqa: E402
from _practica.comparar import Nombres, limpiar  # noqa: E402


def sesion(*lineas):
    return notacion.analizar("\n".join(["```sesion", *lineas, "```"]), "hoja.md")


def comparar(esperado, salido, nombres=None):
    """What comparar says of a typed line's expected lines and what came for it."""
    hoja = sesion("> x", *esperado)
    return (nombres or Nombres()).comparar(hoja.pasos()[0].esperado, limpiar(salido.encode()))


class Lectura(unittest.TestCase):
    def test_the_steps_of_a_session(self):
        de_root = ("?root", "> r", "?fin")
        hoja = sesion("> a b", "uno", "{...}", "shell b>", "\\> no {{", "$ awk '{{print}'", "= SEGV", *de_root, "> ^C")
        pasos = hoja.pasos()
        self.assertEqual([type(p).__name__ for p in pasos], ["Orden", "Orden", "Sistema", "Final", "Orden", "Orden"])
        self.assertEqual((pasos[0].shell, pasos[0].texto, pasos[0].linea), ("a", "a b", 2))
        self.assertEqual([e.cualesquiera for e in pasos[0].esperado], [False, True])
        self.assertEqual((pasos[1].shell, pasos[1].texto, pasos[1].esperado[0].piezas), ("b", "", ["> no {"]))
        self.assertEqual(pasos[2].piezas, ["awk '{print}'"])
        self.assertEqual(pasos[3].estado, "SEGV")
        self.assertEqual(pasos[5].tecla, b"\x03")
        self.assertEqual(len(hoja.pasos("usuario")), 5)

    def test_files_paragraphs_and_foreign_blocks(self):
        hoja = notacion.analizar("# T\n\ntexto\n```sh\n> no\n```\nmás\n\n~~~fichero n.txt\n{a\n\n~~~\n", "h")
        self.assertEqual([e.linea for e in hoja.elementos], [1, 3, 9])
        self.assertEqual(hoja.elementos[1].texto, "texto\n```sh\n> no\n```\nmás")
        self.assertEqual((hoja.pasos()[0].nombre, hoja.pasos()[0].contenido), ("n.txt", "{a\n\n"))

    def test_mistakes_are_refused_where_they_are(self):
        # lines of the block, the line that is refused (the block opens in line 1), a word of the reason
        for lineas, donde, motivo in (
            (["salida"], 2, "sin línea"),
            (["> x", ">y"], 3, "blanco"),
            (["> x", "=="], 3, "\\="),
            (["> x", "shell b > y"], 3, "\\shell"),
            (["> x", "{p:num"], 3, "llave suelta"),
            (["> x", "a {...}"], 3, "va solo"),
            (["> x", "{p:hex}"], 3, "clase"),
            (["> x {p:num}"], 2, "en la salida"),
            (["> x {p}"], 2, "aún no tiene valor"),
            (["> x", "{p:num}", "> y", "{p:dir}"], 5, "ya es num"),
            (["> x", "{p:num}", "! p + 1"], 4, "no compara"),
            (["> x", "{p:num}", "! p == f(1)"], 4, "solo admite"),
            (["> x", "{p:num}", "! p = 1"], 4, "no se entiende"),
            (["! q == 1"], 2, "«q» aún no"),
            (["> x", "= NADA"], 3, "estado"),
            (["> x", "= 256"], 3, "estado"),
            (["?root", "> x"], 2, "sin ?fin"),
            (["?fin"], 2, "nada abierto"),
            (["?root", "?usuario"], 3, "dentro"),
            (["?todos"], 2, "condición"),
            (["?root", "> x", "{p:num}", "?fin", "> {p}"], 6, "para usuario"),
            (["$"], 2, "sin nada"),
        ):
            with self.subTest(lineas=lineas):
                with self.assertRaisesRegex(notacion.Error, f"^hoja.md:{donde}: .*{re.escape(motivo)}"):
                    sesion(*lineas)
        for texto in ("```sesion\n> x", "```sesión\n```", "```fichero a/b\n```", "```fichero\n```", "```sesion b\n```"):
            with self.subTest(texto=texto), self.assertRaisesRegex(notacion.Error, "^h:1: "):
                notacion.analizar(texto, "h")


class Comparacion(unittest.TestCase):
    def test_lines_are_equal_or_the_first_difference_is_told(self):
        self.assertIsNone(comparar(["uno", "", "dos", ""], "uno\n\ndos  \n"))
        self.assertIsNone(comparar(["a       b"], "a\tb\n"))
        self.assertIsNone(comparar(["^@"], "\0"))
        self.assertEqual(comparar(["uno", "dos"], "uno\ntres\n"), (1, 1))
        self.assertEqual(comparar(["uno"], "uno\ndos\n"), (1, 1))
        self.assertEqual(comparar(["uno", "dos"], "uno\n"), (1, 1))
        self.assertEqual(comparar(["a  b"], "a b\n"), (0, 0))
        self.assertEqual(comparar([], "x\n"), (0, 0))

    def test_any_number_of_lines(self):
        for salido in ("uno\ndos\n", "uno\nx\ny\ndos\n"):
            self.assertIsNone(comparar(["uno", "{...}", "dos"], salido))
        self.assertIsNone(comparar(["{...}"], ""))
        self.assertEqual(comparar(["uno", "{...}", "dos"], "uno\nx\n"), (2, 1))

    def test_holes_bind_and_must_repeat(self):
        nombres = Nombres()
        salido = "pid 12 en 0x1f\n12 a b fin\n"
        self.assertIsNone(comparar(["pid {p:pid} en {d:dir}", "{p} {t:txt} fin"], salido, nombres))
        self.assertEqual(nombres.textos, {"p": "12", "d": "0x1f", "t": "a b"})
        self.assertEqual(nombres.valores(), {"p": 12, "d": 31, "t": "a b"})
        self.assertEqual(comparar(["{p:pid}"], "13\n", nombres), (0, 0))
        self.assertEqual(comparar(["{q:num} {q}"], "1 2\n"), (0, 0))
        self.assertEqual(comparar(["{q:num}"], "x\n"), (0, 0))
        self.assertIsNone(comparar(["{_:num} {_:num}"], "1 2\n"))

    def test_blanks_that_touch_a_hole_give_way_and_others_do_not(self):
        for salido in ("   7    root x\n", "12345 root x\n"):
            self.assertIsNone(comparar([" {p:pid} {u:txt} x"], salido))
        self.assertEqual(comparar(["n {p:pid}"], "n7\n"), (0, 0))

    def test_dates_in_the_forms_of_the_program(self):
        for fecha in (
            "23/11/2026",
            "03:40:47",
            "2026/11/22 22:52:8",
            "Nov 23 03:40",
            "Mon Nov 23 03:40:47 2026",
            "23/11/2026, 03:27:45",
        ):
            self.assertIsNone(comparar(["a {f:fecha} b"], f"a {fecha} b\n"), fecha)
        self.assertEqual(comparar(["{f:fecha}"], "ayer\n"), (0, 0))

    def test_prompts_are_taken_out_wherever_they_stand(self):
        self.assertEqual(limpiar(b"\x1eL@m{x} %) \x1fhola\x1eL@m{x} %) \x1f"), ["hola"])

    def test_relations(self):
        nombres = Nombres()
        comparar(["{a:dir} {b:num} {t:txt}"], "0x1000 -3 rw-p\n", nombres)
        for texto, cumple in (
            ("a == 4096", True),
            ("a // 2 - b * 2 > 2053", True),
            ("0 < a < 0x1000", False),
            ("'w' in t and not b == 3", True),
            ("b > 0 or (a >> 12) & 1 == 1", True),
        ):
            arbol = sesion("> x", "{a:dir} {b:num} {t:txt}", f"! {texto}").pasos()[1].arbol
            self.assertEqual(nombres.cumple(arbol), cumple, texto)
        with self.assertRaises(ValueError):
            nombres.cumple(sesion("> x", "{a:dir} {t:txt}", "! a + t == 1").pasos()[1].arbol)


if __name__ == "__main__":
    unittest.main()
