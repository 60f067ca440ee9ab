// SPDX-License-Identifier: MIT

// historic and command: the lines that were run, shown, forgotten and run again.

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "base/words.h"
#include "shell/commands.h"
#include "shell/dispatch.h"
#include "shell/historic.h"

namespace {

constexpr int kMaxRepeticiones = 10; // nested repetitions that one typed line may start

/// Runs entry n of the historic again; the repeated line is not stored anew.
void RepeatHistoric(int n) {
    ++loopHistoric;
    const char *entrada = HistoricGet(n);
    if (!entrada) {
        Imprimir("No hay elemento %d en el historico\n", n);
        return;
    }
    // Buffers of this call: the entry that it repeats may repeat another one.
    char linea[kMaxLinea];
    char *palabras[kMaxPalabras];
    // An entry was a line, but it lies where the user may since have written over its end.
    snprintf(linea, sizeof linea, "%s", entrada);
    Imprimir("Ejecutando hist (%d): %s\n", n, linea);
    if (TrocearCadena(linea, palabras) == 0)
        Imprimir("Nada que ejecutar en el elemento %d del historico\n", n);
    else if (loopHistoric <= kMaxRepeticiones)
        ProcesarEntrada(palabras);
    else
        EscribirTexto("Demasiada recursion en hist\n");
}

} // namespace

void Cmd_hist(char *args[]) {
    if (!args[0]) {
        HistoricPrint();
    } else if (strcmp(args[0], "-c") == 0) {
        HistoricClear();
    } else if (args[0][0] == '-') {
        HistoricPrintN(atoi(args[0] + 1));
    } else {
        char *fin;
        const unsigned long n = strtoul(args[0], &fin, 10);
        if (*fin == '\0')
            RepeatHistoric(n <= INT_MAX ? static_cast<int>(n) : INT_MAX); // no entry stands there
    }
}

void Cmd_command(char *args[]) {
    if (args[0])
        RepeatHistoric(atoi(args[0]));
    else
        HistoricPrint();
}
