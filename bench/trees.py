# SPDX-License-Identifier: MIT
"""The trees of files that the listings and the deletions work on."""

import os


def arbol_ancho(raiz, directorios=400, ficheros=20000):
    """`ficheros` small files spread over `directorios` directories, in two levels."""
    os.mkdir(raiz)
    por_directorio = ficheros // directorios
    for d in range(directorios):
        dir_padre = f"{raiz}/d{d // 20:02}"
        if d % 20 == 0:
            os.mkdir(dir_padre)
            directorio = dir_padre
        else:
            directorio = f"{dir_padre}/s{d % 20:02}"
            os.mkdir(directorio)
        df = os.open(directorio, os.O_RDONLY)
        for f in range(por_directorio):
            fichero = os.open(f"fichero{f:03}.txt", os.O_CREAT | os.O_WRONLY, 0o644, dir_fd=df)
            os.write(fichero, b"contenido\n"[: f % 11])
            os.close(fichero)
        os.close(df)


def arbol_hondo(raiz, niveles=200, ficheros=5):
    """A directory inside another, `niveles` of them, with some files in each."""
    actual = raiz
    os.mkdir(actual)
    for _ in range(niveles - 1):
        for f in range(ficheros):
            with open(f"{actual}/f{f}", "w", encoding="ascii") as fichero:
                fichero.write("x" * f)
        actual += "/d"
        os.mkdir(actual)
