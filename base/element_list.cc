// SPDX-License-Identifier: MIT

#include "base/element_list.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/failure.h"
#include "base/output.h"

namespace {

int cursor_; // of GetFirstNextElement, whatever the list

void ImprimirTramo(const ListaElementos *lista, int desde, int hasta, int numerada) {
    for (int i = desde; i < hasta; i++) {
        if (numerada) Imprimir("%d->", i);
        EscribirTexto(lista->elementos[i]);
        EscribirBytes("\n", 1);
    }
}

} // namespace

int AniadirElementoYaAsignado(ListaElementos *lista, char *cadena) {
    if (!cadena) return Fallo(EFAULT);
    if (lista->num == kMaxElementos) return Fallo(ENOSPC);
    lista->elementos[lista->num] = cadena;
    return ++lista->num;
}

int AniadirElemento(ListaElementos *lista, const char *cadena) {
    if (!cadena) return Fallo(EFAULT);
    if (lista->num == kMaxElementos) return Fallo(ENOSPC);
    char *copia = strdup(cadena);
    if (!copia) return -1;
    return AniadirElementoYaAsignado(lista, copia);
}

int ElementosEnLista(const ListaElementos *lista) { return lista->num; }

void ImprimirListaFirst(const ListaElementos *lista, int n, int numerada) {
    ImprimirTramo(lista, 0, n < lista->num ? n : lista->num, numerada);
}

void ImprimirListaLast(const ListaElementos *lista, int n, int numerada) {
    if (n <= 0) return;
    ImprimirTramo(lista, n < lista->num ? lista->num - n : 0, lista->num, numerada);
}

void ImprimirListaCompleta(const ListaElementos *lista, int numerada) {
    ImprimirListaFirst(lista, kMaxElementos + 1, numerada);
}

int BuscarElemento(const ListaElementos *lista, const char *cadena) {
    if (!cadena) return Fallo(EFAULT);
    for (int i = 0; i < lista->num; i++)
        if (strcmp(lista->elementos[i], cadena) == 0) return i;
    return -1;
}

int BorrarElemento(ListaElementos *lista, const char *cadena) {
    const int pos = BuscarElemento(lista, cadena);
    if (pos == -1) return Fallo(ENOENT);
    free(lista->elementos[pos]);
    // The closing null moves down with the rest.
    const auto detras = static_cast<size_t>(lista->num - pos);
    memmove(&lista->elementos[pos], &lista->elementos[pos + 1], detras * sizeof lista->elementos[0]);
    --lista->num;
    return 0;
}

void BorrarLista(ListaElementos *lista) {
    while (lista->num > 0) {
        --lista->num;
        free(lista->elementos[lista->num]);
        lista->elementos[lista->num] = nullptr;
    }
}

char *GetPrimerElemento(const ListaElementos *lista) { return lista->elementos[0]; }

char *GetSiguienteElemento(const ListaElementos *lista, const char *cadena) {
    const int pos = BuscarElemento(lista, cadena);
    return pos == -1 ? FalloNulo(ENODEV) : lista->elementos[pos + 1];
}

char *GetFirstNextElement(const ListaElementos *lista, int primero) {
    if (primero == 1) cursor_ = 0;
    return lista->elementos[cursor_++];
}

char *GetElemento(const ListaElementos *lista, int n) {
    return n >= 0 && n < lista->num ? lista->elementos[n] : nullptr;
}
