// SPDX-License-Identifier: MIT

#include "environment/wrong_changes.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/failure.h"
#include "base/large_storage.h"
#include "environment/variables.h"

namespace {

/// Writes nombre=valor at `destino`. A real call: what is written there is read long after, by a way that the
/// compiler does not see.
[[gnu::noinline]] void EscribirVariable(char *destino, const char *nombre, const char *valor) {
    const size_t n = strlen(nombre);
    memcpy(destino, nombre, n);
    destino[n] = '=';
    strcpy(destino + n + 1, valor);
}

size_t LongitudVariable(const char *nombre, const char *valor) { return strlen(nombre) + 1 + strlen(valor); }

bool CabeEnBuffer(const char *nombre, const char *valor) {
    return LongitudVariable(nombre, valor) < kTamVariable;
}

/// Puts the text's address in slot `pos`, or hands it to putenv when there is no array.
int Colocar(char *texto, char *entorno[], int pos) {
    if (!entorno) return putenv(texto);
    entorno[pos] = texto;
    return pos;
}

} // namespace

int CambiarVariableMalOverwrite(const char *nombre, const char *valor, char *entorno[]) {
    if (!entorno) return Fallo(EINVAL);
    const int pos = BuscarVariable(nombre, entorno);
    if (pos == -1) return -1;
    if (!CabeEnBuffer(nombre, valor)) return Fallo(ENAMETOOLONG);
    // Behind the entry stands the next one: a longer text would be a fault of another kind.
    if (LongitudVariable(nombre, valor) > strlen(entorno[pos])) return Fallo(ENOSPC);
    EscribirVariable(entorno[pos], nombre, valor);
    return pos;
}

int CambiarVariableMalAutomatic(const char *nombre, const char *valor, char *entorno[]) {
    const int pos = entorno ? BuscarVariable(nombre, entorno) : 0;
    if (pos == -1) return -1;
    char texto[kTamVariable];
    if (!CabeEnBuffer(nombre, valor)) return Fallo(ENAMETOOLONG);
    EscribirVariable(texto, nombre, valor);
    // The lesson: the address of an automatic variable outlives it. It goes through a volatile pointer so
    // that the compiler neither warns of it nor drops what nobody seems to read.
    char *volatile direccion = texto;
    return Colocar(direccion, entorno, pos);
}

int CambiarVariableMalStatic(const char *nombre, const char *valor, char *entorno[]) {
    alignas(kAparte) static char texto[kTamVariable];
    // Looked up before the buffer is written: after it, an entry that already stands in the buffer would be
    // found in the place of the variable's own.
    int pos = BuscarVariable(nombre, entorno ? entorno : environ);
    const bool cabe = CabeEnBuffer(nombre, valor);
    if (entorno && pos == -1 && !cabe) return -1;
    if (!cabe) return Fallo(ENAMETOOLONG);
    EscribirVariable(texto, nombre, valor);
    // And once more after it: an entry that stands in the buffer now shows this name.
    if (entorno && pos == -1) pos = BuscarVariable(nombre, entorno);
    if (entorno && pos == -1) return -1;
    const int resultado = Colocar(texto, entorno, pos);
    // putenv looks the name up itself, and may have taken such an entry for the variable's own.
    if (!entorno && pos != -1) environ[pos] = texto;
    return resultado;
}
