// SPDX-License-Identifier: MIT

#include "processes/execution_line.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/failure.h"
#include "base/output.h"
#include "environment/variables.h"

int ComprobarSegundoPlano(char *linea[]) {
    for (; *linea; linea++)
        if (strcmp(*linea, "&") == 0) {
            *linea = nullptr;
            return 1;
        }
    return 0;
}

int ComprobarPrioridad(char *linea[], int *prioridad) {
    for (int i = 0; linea[i]; i++)
        if (linea[i][0] == '@') {
            *prioridad = atoi(linea[i] + 1);
            return i;
        }
    return 0;
}

int doRedirExec(char *linea[], int df, char marca) {
    for (int i = 0; linea[i]; i++) {
        if (linea[i][0] != marca || linea[i][1] == '\0') continue;
        const char *fichero = linea[i] + 1;
        // What was said so far belongs where the descriptor leads until now: the opening may give a closed
        // one.
        VolcarSalida();
        const int abierto = open(fichero, O_RDWR | O_CREAT, 0777);
        if (abierto == -1) {
            Imprimir("Imposible redireccionar %d a %s: %s\n", df, fichero, strerror(errno));
            continue;
        }
        // Where `df` was closed the opening itself may have given it, and then it is in its place. dup2 and
        // not close and dup: with a lower descriptor closed, dup would land on that one.
        if (abierto != df) dup2(abierto, df);
        return i;
    }
    return kSinRedireccion;
}

int ComprobarRedireccionExec(char *linea[]) {
    int primera = kSinRedireccion, df = 0;
    for (const char marca : {'<', '>', '*'}) primera = std::min(primera, doRedirExec(linea, df++, marca));
    return primera;
}

int ComprobarEntorno(char *linea[], char *entorno[]) {
    entorno[0] = nullptr;
    if (linea[0] && strcmp(linea[0], "NULLENV") == 0) return 1;
    int n = 0;
    for (; linea[n]; n++) {
        const int pos = BuscarVariable(linea[n], environ);
        if (pos == -1 && !strchr(linea[n], '=')) break;
        // Refused whole: a program started with part of its environment would mislead.
        if (n == kMaxEntorno) return Fallo(E2BIG);
        entorno[n] = pos != -1 ? environ[pos] : linea[n];
    }
    entorno[n] = nullptr;
    return n;
}
