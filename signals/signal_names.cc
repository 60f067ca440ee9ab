// SPDX-License-Identifier: MIT

#include "signals/signal_names.h"

#include <cstring>

namespace {

constexpr bool NumerosEnRango() {
    for (const SignalEntry &fila : SignalTable)
        if (fila.nombre && (fila.senal < 1 || fila.senal > kMaxSenal)) return false;
    return true;
}
static_assert(NumerosEnRango(), "the settings and the listings go up to kMaxSenal");

} // namespace

int ValorSenal(const char *nombre) {
    for (const SignalEntry *fila = SignalTable; fila->nombre; fila++)
        if (strcmp(fila->nombre, nombre) == 0) return fila->senal;
    return -1;
}

const char *NombreSenal(int senal) {
    for (const SignalEntry *fila = SignalTable; fila->nombre; fila++)
        if (fila->senal == senal) return fila->nombre;
    return "SIGUNKNOWN";
}
