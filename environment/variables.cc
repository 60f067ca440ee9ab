// SPDX-License-Identifier: MIT

#include "environment/variables.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/element_list.h"
#include "base/failure.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "base/synchronisation.h"

char **main3arg;
char ***addrmain3arg;

namespace {

alignas(kAparte) ListaElementos entorno_; // the strings placed, to be released at exit

int EntornoAdd(char *cadena) { return AniadirElementoYaAsignado(&entorno_, cadena); }

bool CabeNombre(const char *nombre) { return strnlen(nombre, kTamVariable) <= kTamVariable - 2; }

/// nombre=valor in a new heap string of exactly that size; null: ENOMEM.
char *NuevaVariable(const char *nombre, const char *valor) {
    const size_t n = strlen(nombre);
    const size_t m = strlen(valor);
    char *texto = static_cast<char *>(malloc(n + m + 2));
    if (!texto) return nullptr;
    memcpy(texto, nombre, n);
    texto[n] = '=';
    memcpy(texto + n + 1, valor, m + 1);
    // Beyond the list's 4095 the change is made all the same; exit just does not release that string.
    EntornoAdd(texto);
    return texto;
}

/// Puts a new nombre=valor in slot `pos`. Returns `pos`, or -1: ENOMEM.
int Colocar(const char *nombre, const char *valor, char *entorno[], int pos) {
    char *texto = NuevaVariable(nombre, valor);
    if (!texto) return -1;
    entorno[pos] = texto;
    return pos;
}

} // namespace

int BuscarVariable(const char *nombre, char *const entorno[]) {
    if (!CabeNombre(nombre)) return Fallo(ENAMETOOLONG);
    const size_t n = strlen(nombre);
    // No copy of the name with its "=": an entry left pointing at the stack could be found in the copy
    // itself.
    for (int i = 0; entorno && entorno[i]; i++)
        if (strncmp(entorno[i], nombre, n) == 0 && entorno[i][n] == '=') return i;
    return Fallo(ENOENT);
}

int CambiarVariable(const char *nombre, const char *valor, char *entorno[]) {
    const int pos = BuscarVariable(nombre, entorno);
    return pos == -1 ? -1 : Colocar(nombre, valor, entorno, pos);
}

int CambiarVariablePutenv(const char *nombre, const char *valor) {
    if (!CabeNombre(nombre)) return Fallo(ENAMETOOLONG);
    char *texto = NuevaVariable(nombre, valor);
    return texto ? putenv(texto) : -1;
}

int SustituirVariable(const char *nombre1, const char *nombre2, const char *valor, char *entorno[]) {
    if (BuscarVariable(nombre2, entorno) != -1) return Fallo(EEXIST);
    if (errno != ENOENT) return -1;
    const int pos = BuscarVariable(nombre1, entorno);
    return pos == -1 ? -1 : Colocar(nombre2, valor, entorno, pos);
}

void MostrarEntorno(char *const entorno[], const char *etiqueta) {
    for (int i = 0; entorno && entorno[i]; i++) {
        Imprimir("%p->%s[%d]=(%p) ", static_cast<const void *>(&entorno[i]), etiqueta, i,
                 static_cast<void *>(entorno[i]));
        SincronizarTrasDanos(); // the slot may have been written over
        EscribirTexto(entorno[i]);
        EscribirTexto("\n");
    }
}

void EntornoClear() { BorrarLista(&entorno_); }
