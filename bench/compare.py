# SPDX-License-Identifier: MIT
"""Compares the shell with its peers and with the bare work, and writes the table of ratios.

compare.py BUILD [ROW ...]: BUILD is the build folder; with names of rows only those run, and nothing is written."""

import datetime
import json
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import growth
import pictures
import rows

DOCS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "docs")


def numero(valor):
    """Three figures, in the Spanish way."""
    decimales = 0 if valor >= 100 else 1 if valor >= 10 else 2 if valor >= 1 else 3
    return f"{valor:.{decimales}f}".replace(".", ",")


def tabla(filas):
    yield ("| trabajo | comparado con | meta | mediana nuestra | mediana suya | razón de medianas "
           "| razón de mínimos | cumplida |")
    yield "|---|---|--:|--:|--:|--:|--:|---|"
    for f in filas:
        yield (f"| {f.trabajo} | {f.rival} | {numero(f.meta)} | {numero(statistics.median(f.nuestras))} {f.unidad} "
               f"| {numero(statistics.median(f.rivales))} {f.unidad} | {numero(f.razon_medianas)} "
               f"| {numero(f.razon_minimos)} | {'sí' if f.cumplida else '**no**'} |")


def funciones(construido):
    """The times of single functions, in one line each."""
    with tempfile.NamedTemporaryFile(suffix=".json") as informe:
        subprocess.run([f"{construido}/bin/function_bench", f"--benchmark_out={informe.name}",
                        "--benchmark_repetitions=5", "--benchmark_min_time=0.05"],
                       check=True, stderr=subprocess.DEVNULL)
        pruebas = json.load(informe)["benchmarks"]
    yield "| función | mediana | |"
    yield "|---|--:|---|"
    for p in pruebas:
        if p.get("aggregate_name") != "median":
            continue
        caudal = f"{numero(p['bytes_per_second'] / 1e9)} GB/s" if "bytes_per_second" in p else ""
        nombre = p["run_name"].removeprefix("BM_")
        yield f"| `{nombre}` | {numero(p['real_time'])} {p['time_unit'].replace('us', 'µs')} | {caudal} |"


def maquina():
    with open("/proc/cpuinfo", encoding="utf-8") as fichero:
        modelos = [linea.split(":")[1].strip() for linea in fichero if linea.startswith("model name")]
    procesador = modelos[0] if modelos else platform.machine()
    memoria = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    return (f"{procesador}, {os.cpu_count()} núcleos, {memoria:.0f} GiB de memoria; "
            f"{platform.system()} {platform.release()}, {' '.join(platform.libc_ver())}")


def tabla_de_crecimiento(curvas):
    yield "| qué crece | tamaños | ms | exponente | meta | cumplida |"
    yield "|---|---|---|--:|--:|---|"
    for c in curvas:
        estado = f"forzado: {c.forzado}" if c.forzado else "sí" if c.cumplida else "**no**"
        yield (f"| {c.que} | {', '.join(map(str, c.tiempos))} | {' / '.join(map(numero, c.tiempos.values()))} "
               f"| {numero(c.exponente)} | {'—' if c.forzado else numero(growth.META)} | {estado} |")


def informe(filas, curvas, construido):
    cumplidas = sum(f.cumplida for f in filas)
    yield "# Rendimiento"
    yield ""
    yield (f"Medido por `scripts/bench` el {datetime.date.today():%d/%m/%Y} en: {maquina()}. "
           f"Metas cumplidas: {cumplidas} de {len(filas)}.")
    yield ""
    yield from tabla(filas)
    yield ""
    yield """Cada fila compara en la misma sesión, alternando (uno y otro, uno y otro...), el shell con el programa que se
usaría en su lugar, o con un programa en C que hace el trabajo desnudo (`bench/bare_*.cc`: el límite físico). Antes de
medir se comprueba que los dos hacen lo mismo. La razón es lo nuestro partido por lo suyo: menos es mejor. Lo que
estorba a una medida solo puede alargarla, así que donde las medianas oscilan decide la razón de mínimos; las filas
que tocan el disco tienen un margen de 0,05. Los programas enteros se miden desde que empiezan hasta que acaban; las
órdenes sobre bloques, ficheros de 256 MiB, el histórico y los procesos, desde que se escribe la línea hasta que está
hecha. PSS es la memoria de un proceso con cada página compartida repartida entre los que la comparten."""
    yield ""
    yield "![Razones, como barras alrededor de 1](rendimiento-razones.svg)"
    yield ""
    yield "## Cómo crece el coste"
    yield ""
    yield """Dos décadas de tamaño, en sesiones nuevas; del tiempo se quita lo que cuesta una sesión vacía. El exponente es el
de la potencia que une el primer tamaño con el último: 1 es proporcional."""
    yield ""
    yield from tabla_de_crecimiento(curvas)
    yield ""
    yield "![Tiempo según el tamaño](rendimiento-crecimiento.svg)"
    yield ""
    yield "## Funciones sueltas"
    yield ""
    yield from funciones(construido)


def main():
    construido, pedidas = os.path.abspath(sys.argv[1]), sys.argv[2:]
    dir_trabajo = tempfile.mkdtemp(prefix="shell_bench_")
    filas = []
    inicio = time.monotonic()
    try:
        banco = rows.Banco(construido, dir_trabajo)
        for medir in rows.TODAS:
            if pedidas and medir.__name__ not in pedidas:
                continue
            print(f"[{time.monotonic() - inicio:3.0f} s] {medir.__name__}", file=sys.stderr)
            filas += medir(banco)
        curvas = growth.medir(banco) if not pedidas or "crecimiento" in pedidas else []
    finally:
        shutil.rmtree(dir_trabajo, ignore_errors=True)
    if pedidas:
        print("\n".join([*tabla(filas), *tabla_de_crecimiento(curvas)]))
        return
    pictures.razones(filas, f"{DOCS}/rendimiento-razones.svg")
    pictures.crecimiento(curvas, f"{DOCS}/rendimiento-crecimiento.svg")
    texto = "\n".join(informe(filas, curvas, construido)) + "\n"
    print(texto, end="")
    with open(f"{DOCS}/rendimiento.md", "w", encoding="utf-8") as fichero:
        fichero.write(texto)


main()
