#include "signals/handler_text.h"

#include <unistd.h>

#include <cstdint>

#include "base/held_signals.h"
#include "base/write_all.h"

void TextoManejador::Poner(const char *s) {
    while (*s && n < sizeof texto) texto[n++] = *s++;
}

void TextoManejador::PonerNumero(int valor) {
    char cifras[12];
    char *p = cifras + sizeof cifras;
    *--p = '\0';
    unsigned resto = valor < 0 ? 0u - static_cast<unsigned>(valor) : static_cast<unsigned>(valor);
    do {
        *--p = static_cast<char>('0' + resto % 10);
        resto /= 10;
    } while (resto > 0);
    if (valor < 0) *--p = '-';
    Poner(p);
}

void TextoManejador::PonerDireccion(const void *direccion) {
    char cifras[2 * sizeof direccion + 1];
    char *p = cifras + sizeof cifras;
    *--p = '\0';
    auto resto = reinterpret_cast<uintptr_t>(direccion);
    do {
        *--p = "0123456789abcdef"[resto % 16];
        resto /= 16;
    } while (resto > 0);
    Poner("0x");
    Poner(p);
}

int EscribirAviso(const TextoManejador &aviso) {
    const Retencion retencion = RetenerSenales();
    const int resultado = EscribirTodo(STDOUT_FILENO, aviso.texto, aviso.n);
    DevolverSenales(retencion);
    return resultado;
}
