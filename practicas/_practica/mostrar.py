# SPDX-License-Identifier: MIT
"""practica mostrar: the session of a sheet as it looks on a terminal, what is typed included."""

from . import notacion, texto
from .comprobar import Ejecucion, Falla, conductor_para, usuario_actual
from .conductor import Problema
from .transcripcion import REMARCA


def mostrar(camino, programa, con_pausas):
    """The mode itself. con_pausas: waits for Enter before every line. Exit status as of comprobar."""
    try:
        hoja = notacion.leer(camino)
    except notacion.Error as motivo:
        print(motivo)
        return 2
    with conductor_para(hoja, programa) as conductor:
        ejecucion = Ejecucion(hoja, conductor, _al_teclear(conductor, con_pausas), _escribir)
        try:
            for n, paso in enumerate(hoja.pasos(usuario_actual())):
                if isinstance(paso, notacion.Fichero):
                    for linea in (f"fichero {paso.nombre}:", *paso.contenido.splitlines()):
                        print(REMARCA + linea)
                ejecucion.paso(n)
                if isinstance(paso, notacion.Final):
                    como = f"con estado {paso.estado}" if isinstance(paso.estado, int) else f"por la señal {paso.estado}"
                    print(f"{REMARCA}el shell ha terminado {como}")
        except (Falla, Problema) as motivo:
            print(texto.fuerte(f"La sesión se aparta de la hoja: {motivo}"))
            return 1
    return 0


def _escribir(lineas):
    for linea in lineas:
        print(linea)


def _al_teclear(conductor, con_pausas):
    def teclear(paso, linea):
        if isinstance(paso, notacion.Orden):
            conductor.terminal(paso.shell)
            entrada = ("" if paso.shell == "a" else f"[{paso.shell}] ") + conductor.prompts.get(paso.shell, "")
        else:
            entrada = "$ "
        if con_pausas:
            input(entrada)
            # Enter has left the cursor below the prompt: back to it, so that the line stands after it.
            print("\x1b[A", end="")
        print(entrada + texto.fuerte(linea), flush=True)

    return teclear
