// SPDX-License-Identifier: MIT

#include "base/bounded_text.h"

#include <cstdint>
#include <type_traits>

static_assert(std::is_trivially_destructible_v<TextoAcotado>, "lives in frames that a jump may cut off");

namespace {

/// The digits of a number, formed from its end.
struct Cifras {
    char lugar[24]; // 64 bits in decimal, with a sign
    char *inicio = lugar + sizeof lugar;

    Cifras(unsigned long long valor, unsigned base) {
        do *--inicio = "0123456789abcdef"[valor % base];
        while ((valor /= base) > 0);
    }
    size_t n() const { return static_cast<size_t>(lugar + sizeof lugar - inicio); }
};

} // namespace

void TextoAcotado::PonerNumero(long long valor, int ancho, char relleno) {
    const auto magnitud = static_cast<unsigned long long>(valor);
    Cifras cifras(valor < 0 ? 0 - magnitud : magnitud, 10);
    if (valor < 0) *--cifras.inicio = '-';
    for (auto n = static_cast<int>(cifras.n()); n < ancho; n++) Poner(relleno);
    Poner(cifras.inicio, cifras.n());
}

void TextoAcotado::PonerDireccion(const void *direccion) {
    const Cifras cifras(reinterpret_cast<uintptr_t>(direccion), 16);
    Poner("0x");
    Poner(cifras.inicio, cifras.n());
}
