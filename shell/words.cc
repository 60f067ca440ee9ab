#include "shell/words.h"

#include <cstring>

#include "shell/output.h"

int TrocearCadena(char *linea, char *palabras[]) {
    static constexpr char separadores[] = " \n\t";
    int n = 0;
    char *resto = nullptr;
    for (char *palabra = strtok_r(linea, separadores, &resto); palabra;
         palabra = strtok_r(nullptr, separadores, &resto)) {
        if (n == kMaxPalabras - 1) {
            // The line still runs: its first words are what the user meant, and the user is told what was
            // lost.
            Imprimir("Linea con mas de %d palabras: se ignoran las demas\n", kMaxPalabras - 1);
            break;
        }
        palabras[n++] = palabra;
    }
    palabras[n] = nullptr;
    return n;
}

size_t UnirPalabras(char *destino, size_t tam, char *const palabras[]) {
    size_t largo = 0;
    const auto poner = [&](const char *texto, size_t n) {
        if (tam > 0 && largo < tam - 1) {
            const size_t cabe = n < tam - 1 - largo ? n : tam - 1 - largo;
            memcpy(destino + largo, texto, cabe);
        }
        largo += n;
    };
    for (int i = 0; palabras[i]; i++) {
        if (i > 0) poner(" ", 1);
        poner(palabras[i], strlen(palabras[i]));
    }
    if (tam > 0) destino[largo < tam ? largo : tam - 1] = '\0';
    return largo;
}
