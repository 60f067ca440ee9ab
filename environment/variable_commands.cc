// SPDX-License-Identifier: MIT

// The commands that show and change environment variables, in the array that the user says: the third
// argument of main or environ, which part ways when putenv moves environ. The usage lines are fixed as they
// stand, also where two of one command differ.

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "environment/commands.h"
#include "environment/variables.h"
#include "environment/wrong_changes.h"

namespace {

/// Prints the variable's entry in an array, behind `via`; nothing when it has none.
void MostrarEntrada(const char *via, const char *nombre, char *const entorno[]) {
    SincronizarTrasDanos(); // any slot on the way may have been written over
    const int pos = BuscarVariable(nombre, entorno);
    if (pos == -1) return;
    Imprimir("%s ", via);
    EscribirTexto(entorno[pos]);
    Imprimir("(%p) @%p\n", static_cast<void *>(entorno[pos]), static_cast<const void *>(&entorno[pos]));
}

void ImprimirImposibleCambiar() { Imprimir("Imposible cambiar variable: %s\n", strerror(errno)); }

/// How changevarWrong changes a variable.
struct MetodoMal {
    const char *opcion;
    int (*cambiar)(const char *nombre, const char *valor, char *entorno[]);
    const char *motivo;
};

constexpr MetodoMal kMetodosMal[] = {
    {"-mo", CambiarVariableMalOverwrite, "sobreescrito variable original"},
    {"-ms", CambiarVariableMalStatic, "usado una variable estatica"},
    {"-ma", CambiarVariableMalAutomatic, "usado una variable local"},
};

const MetodoMal *BuscarMetodoMal(const char *opcion) {
    for (const MetodoMal &metodo : kMetodosMal)
        if (strcmp(metodo.opcion, opcion) == 0) return &metodo;
    return nullptr;
}

} // namespace

void Cmd_showenv(char *args[]) {
    if (!args[0])
        MostrarEntorno(main3arg, "main arg3");
    else if (strcmp(args[0], "-environ") == 0)
        MostrarEntorno(environ, "environ");
    else if (strcmp(args[0], "-addr") == 0)
        Imprimir("environ:   %p (almacenado en %p)\nmain arg3: %p (almacenado en %p)\n",
                 static_cast<void *>(environ), static_cast<void *>(&environ), static_cast<void *>(main3arg),
                 static_cast<void *>(addrmain3arg));
    else
        Imprimir("Uso: %s [-environ|-addr]\n", args[-1]);
}

void Cmd_showvar(char *args[]) {
    if (!args[0]) {
        Cmd_showenv(args);
        return;
    }
    MostrarEntrada("Con arg3 main", args[0], main3arg);
    MostrarEntrada("  Con environ", args[0], environ);
    if (char *valor = getenv(args[0])) {
        EscribirTexto("   Con getenv ");
        EscribirTexto(valor);
        Imprimir("(%p)\n", static_cast<void *>(valor));
    }
}

void Cmd_changevar(char *args[]) {
    int resultado;
    if (!args[0] || !args[1] || !args[2]) {
        Imprimir("Uso: %s [-a|-e|-p] var valor\n", args[-1]);
        return;
    }
    if (strcmp(args[0], "-a") == 0) {
        resultado = CambiarVariable(args[1], args[2], main3arg);
    } else if (strcmp(args[0], "-e") == 0) {
        resultado = CambiarVariable(args[1], args[2], environ);
    } else if (strcmp(args[0], "-p") == 0) {
        resultado = CambiarVariablePutenv(args[1], args[2]);
    } else {
        Imprimir("Uso: %s [-a|-e|-p] var valor\n", args[-1]);
        return;
    }
    if (resultado == -1) ImprimirImposibleCambiar();
}

void Cmd_subsvar(char *args[]) {
    if (!args[0] || !args[1] || !args[2] || !args[3]) {
        Imprimir("Uso: %s [-a|-e] var valor\n", args[-1]);
        return;
    }
    char **entorno;
    if (strcmp(args[0], "-a") == 0) {
        entorno = main3arg;
    } else if (strcmp(args[0], "-e") == 0) {
        entorno = environ;
    } else {
        Imprimir("Uso: %s [-a|-e] var1 var2 valor\n", args[-1]);
        return;
    }
    if (SustituirVariable(args[1], args[2], args[3], entorno) == -1)
        Imprimir("Imposible sustituir variable %s por %s: %s\n", args[1], args[2], strerror(errno));
}

void Cmd_changevarWrong(char *args[]) {
    if (!args[0] || !args[1] || !args[2] || !args[3]) {
        Imprimir("Uso: %s -a|-e|-p -mo|-ms|-ml  o|var valor\n", args[-1]);
        return;
    }
    char **entorno = environ;
    if (strcmp(args[0], "-a") == 0)
        entorno = main3arg;
    else if (strcmp(args[0], "-p") == 0)
        entorno = nullptr;
    const MetodoMal *metodo = BuscarMetodoMal(args[1]);
    if (!metodo) {
        Imprimir("Uso: %s -a|-e|-p -mo|-ms|-ma  var valor\n", args[-1]);
        return;
    }
    const int resultado = metodo->cambiar(args[2], args[3], entorno);
    const char *via = !entorno ? "putenv" : entorno == environ ? "environ" : "tercer argumento de main";
    Imprimir("%s MAL cambiada accediendo a traves de %s, por haber %s\n", args[2], via, metodo->motivo);
    if (resultado == -1) ImprimirImposibleCambiar();
}
