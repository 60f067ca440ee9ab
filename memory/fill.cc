// SPDX-License-Identifier: MIT

#include "memory/fill.h"

#include <cstdlib>
#include <cstring>

#include "base/address.h"

namespace {

constexpr uintptr_t kTamTramo = 1 << 24; // from here on memset runs as fast as on the whole

/// memset may store the last bytes of its range first, so it gets a page at a time, and larger pieces of long
/// ranges, for speed: a fault then finds the pieces before it filled, and a count that goes round the end of
/// memory writes nothing below `dir`.
void LlenarSeguido(unsigned char *dir, unsigned long long cont, unsigned char byte) {
    while (cont > 0) {
        const uintptr_t pieza = cont > kTamTramo ? kTamTramo : kTamPagina;
        unsigned long long n = pieza - reinterpret_cast<uintptr_t>(dir) % pieza;
        if (n > cont) n = cont;
        memset(Opaca(dir), byte, n);
        dir += n;
        cont -= n;
    }
}

} // namespace

unsigned char ConvertirByte(const char *texto) {
    if (texto[0] == '\'' && texto[1] != '\0' && texto[2] == '\'') return static_cast<unsigned char>(texto[1]);
    return static_cast<unsigned char>(strtoul(texto, nullptr, 0));
}

void LlenarMemoria(void *dir, unsigned long long cont, unsigned char byte, int paso) {
    auto *destino = static_cast<unsigned char *>(Opaca(dir));
    if (paso == 1) {
        LlenarSeguido(destino, cont, byte);
        return;
    }
    // A volatile store for each byte: they are made in this order.
    for (unsigned long long i = 0; i < cont; i += static_cast<unsigned long long>(paso))
        *static_cast<volatile unsigned char *>(destino + i) = byte;
}
