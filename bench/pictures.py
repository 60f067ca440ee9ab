# SPDX-License-Identifier: MIT
"""The pictures of docs/rendimiento.md, drawn from the numbers of the run: ratios as bars around 1, and growth."""

import math

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as plt  # pylint: disable=wrong-import-position

CUMPLIDA, NO_CUMPLIDA, FORZADA = "#2a7f62", "#b3432b", "#7a6f9b"
# Text as text: readers can search it; the same bytes from the same numbers.
plt.rcParams.update({"svg.fonttype": "none", "svg.hashsalt": "rendimiento", "font.size": 9,
                     "font.family": "DejaVu Sans", "axes.spines.top": False, "axes.spines.right": False})


def guardar(figura, ruta):
    figura.savefig(ruta, bbox_inches="tight", metadata={"Date": None})
    plt.close(figura)


def sin_marcas(texto):
    """Without the marks of code, and with what would begin a formula taken as it stands."""
    return texto.replace("`", "").replace("$", r"\$")


def razones(filas, ruta):
    """A bar for each row from 1 to its ratio, on a logarithmic axis; a tick at its goal; the peer beside its name."""
    figura, ejes = plt.subplots(figsize=(9, 0.32 * len(filas) + 0.8))
    for i, fila in enumerate(filas):
        razon = min(fila.razon_medianas, fila.razon_minimos)
        ejes.barh(i, math.log2(razon), color=CUMPLIDA if fila.cumplida else NO_CUMPLIDA, height=0.62)
        ejes.plot([math.log2(fila.meta)] * 2, [i - 0.4, i + 0.4], color="black", linewidth=1)
        ejes.text(math.log2(razon), i, f" {razon:.2f} ".replace(".", ","), va="center",
                  ha="left" if razon >= 1 else "right", fontsize=7)
    ejes.set_yticks(range(len(filas)), [sin_marcas(f"{f.trabajo}  /  {f.rival}") for f in filas],
                    fontsize=7)
    ejes.invert_yaxis()
    ejes.axvline(0, color="black", linewidth=0.8)
    extremo = math.ceil(max(abs(math.log2(min(f.razon_medianas, f.razon_minimos))) for f in filas)) + 1
    marcas = range(-extremo, 4)
    ejes.set_xticks(list(marcas), [f"{2.0 ** m:g}".replace(".", ",") for m in marcas], fontsize=7)
    ejes.set_xlabel("lo nuestro partido por lo suyo (a la izquierda de 1, más rápido); raya negra: la meta")
    guardar(figura, ruta)


def crecimiento(curvas, ruta):
    """Time against size, both logarithmic, with the exponent in the legend."""
    figura, ejes = plt.subplots(figsize=(8, 4.8))
    for c, marca in zip(curvas, "os^vD<>P*X"):
        exponente = f"{c.exponente:.2f}".replace(".", ",")
        ejes.loglog(list(c.tiempos), list(c.tiempos.values()), marker=marca, markersize=4, linewidth=1.2,
                    linestyle="--" if c.forzado else "-",
                    label=f"{c.que.replace('`', '')}: n^{exponente}" + (" (búsqueda obligada)" if c.forzado else ""))
    ejes.set_xlabel("tamaño")
    ejes.set_ylabel("ms")
    ejes.legend(fontsize=7, frameon=False, loc="center left", bbox_to_anchor=(1, 0.5))
    guardar(figura, ruta)
