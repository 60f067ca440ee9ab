// SPDX-License-Identifier: MIT

#include "memory/dump.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "base/address.h"
#include "base/output.h"

namespace {

constexpr size_t kAnchoCelda = 3;

/// A cell of a row: three columns and a null. Copied whole; the next cell covers the null.
struct Celda {
    char texto[kAnchoCelda + 1];
};
using Celdas = std::array<Celda, 256>;

/// The cells are formed once, by the compiler: millions of bytes go through a dump.
constexpr Celdas kCeldasCaracter = [] {
    Celdas celdas = {};
    for (int c = 0; c < 256; c++)
        celdas[c] = {' ', ' ', c >= 0x20 && c < 0x7f ? static_cast<char>(c) : ' ', '\0'};
    celdas['\n'] = {" \\n"};
    celdas['\t'] = {" \\t"};
    celdas['\r'] = {" \\r"};
    return celdas;
}();

constexpr Celdas kCeldasValor = [] {
    constexpr char kCifras[] = "0123456789abcdef";
    Celdas celdas = {};
    for (int c = 0; c < 256; c++) celdas[c] = {' ', kCifras[c >> 4], kCifras[c & 15], '\0'};
    return celdas;
}();

} // namespace

const char *CadBon(signed char c) { return kCeldasCaracter[static_cast<unsigned char>(c)].texto; }

void MostrarLinea(const void *dir, int cont) {
    const auto *byte = static_cast<const unsigned char *>(Opaca(dir));
    const size_t n = cont > 0 ? static_cast<size_t>(cont) : 0;
    const size_t ancho = n * kAnchoCelda + 1;
    char *caracteres = ReservarSalida(2 * ancho + 1); // the last null lies past the row
    char *valores = caracteres + ancho;
    for (size_t i = 0; i < n; i++) {
        memcpy(caracteres + i * kAnchoCelda, &kCeldasCaracter[byte[i]], sizeof(Celda));
        memcpy(valores + i * kAnchoCelda, &kCeldasValor[byte[i]], sizeof(Celda));
    }
    caracteres[ancho - 1] = '\n';
    valores[ancho - 1] = '\n';
    ConfirmarSalida(2 * ancho);
}

void MostrarMemoria(const void *dir, unsigned long long cont) {
    auto fila = reinterpret_cast<uintptr_t>(dir);
    uintptr_t pagina = ~uintptr_t{0}; // the last one that was touched
    for (unsigned long long filas = cont / kBytesFila; filas > 0; filas--) {
        const uintptr_t ultima = (fila + kBytesFila - 1) / kTamPagina;
        if (ultima != pagina) VolcarSalida(); // this row may be the one that faults
        MostrarLinea(reinterpret_cast<const void *>(fila), kBytesFila);
        pagina = ultima;
        fila += kBytesFila;
    }
    VolcarSalida();
    // The rest is that of the low 32 bits taken as a signed number, so a count of 2 GiB or more may show
    // none.
    MostrarLinea(reinterpret_cast<const void *>(fila), static_cast<int>(cont) % kBytesFila);
}
