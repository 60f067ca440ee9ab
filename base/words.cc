// SPDX-License-Identifier: MIT

#include "base/words.h"

#include "base/bounded_text.h"
#include "base/output.h"

int TrocearCadena(char *linea, char *palabras[]) {
    int n = 0;
    bool enPalabra = false;
    for (char *p = linea; *p; p++) {
        if (*p == ' ' || *p == '\n' || *p == '\t') {
            *p = '\0';
            enPalabra = false;
        } else if (!enPalabra) {
            if (n == kMaxPalabras - 1) {
                // The line still runs: its first words are what the user meant, and the user is told what was
                // lost.
                Imprimir("Linea con mas de %d palabras: se ignoran las demas\n", kMaxPalabras - 1);
                break;
            }
            palabras[n++] = p;
            enPalabra = true;
        }
    }
    palabras[n] = nullptr;
    return n;
}

size_t UnirPalabras(char *destino, size_t tam, char *const palabras[]) {
    TextoAcotado texto(destino, tam);
    for (int i = 0; palabras[i]; i++) {
        if (i > 0) texto.Poner(' ');
        texto.Poner(palabras[i]);
    }
    return texto.largo();
}
