// SPDX-License-Identifier: MIT

#include "memfs/label_list.h"

#include <cstdint>
#include <cstring>

#include "base/failure.h"
#include "base/large_storage.h"

namespace {

alignas(kAparte) ListaLabel labels_;

/// A label in its entry's form, cut and padded with nulls, as one number: a search compares thousands.
using Clave = uint64_t;
static_assert(sizeof(Clave) == kTamLabel);

Clave ClaveDe(const char *label) {
    Clave clave = 0;
    memcpy(&clave, label, strnlen(label, kTamLabel - 1));
    return clave;
}

Clave ClaveDe(const EntradaLabel &entrada) {
    Clave clave;
    memcpy(&clave, entrada.label, sizeof clave);
    return clave;
}

/// Index of the first entry in use with address `dir` (not null), or -1.
int BuscarDireccion(const ListaLabel *lista, const void *dir) {
    for (int i = 0; lista->entradas[i].dir; i++)
        if (lista->entradas[i].dir == dir) return i;
    return -1;
}

} // namespace

void InicializarListaLabel(ListaLabel *lista) {
    for (EntradaLabel &entrada : lista->entradas) entrada.dir = nullptr;
}

int AniadirLabel(ListaLabel *lista, const char *label, void *dir) {
    const Clave clave = ClaveDe(label);
    int i = 0;
    while (lista->entradas[i].dir && ClaveDe(lista->entradas[i]) != clave) i++;
    if (i == kMaxLabels) return Fallo(ENOSPC);
    memcpy(lista->entradas[i].label, &clave, sizeof clave);
    lista->entradas[i].dir = dir;
    return i;
}

int BuscarLabel(const ListaLabel *lista, const char *label) {
    const Clave clave = ClaveDe(label);
    for (const EntradaLabel &entrada : lista->entradas)
        if (ClaveDe(entrada) == clave) return static_cast<int>(&entrada - lista->entradas);
    return -1;
}

int BorrarLabel(ListaLabel *lista, const char *label) {
    const int i = BuscarLabel(lista, label);
    if (i == -1) return Fallo(ENOENT);
    EntradaLabel *entrada = &lista->entradas[i];
    memmove(entrada, entrada + 1, static_cast<size_t>(kMaxLabels - i) * sizeof *entrada);
    return i;
}

void *ObtenerAddr(const ListaLabel *lista, const char *label) {
    const int i = BuscarLabel(lista, label);
    return i == -1 ? nullptr : lista->entradas[i].dir;
}

const char *ObtenerLabel(const ListaLabel *lista, const void *dir) {
    const int i = BuscarDireccion(lista, dir);
    return i == -1 ? nullptr : lista->entradas[i].label;
}

void *ObtenerPrimeraDireccion(const ListaLabel *lista) { return lista->entradas[0].dir; }

void *ObtenerSiguienteDireccion(const ListaLabel *lista, const void *dir) {
    const int i = BuscarDireccion(lista, dir);
    return i == -1 ? nullptr : lista->entradas[i + 1].dir;
}

void InitLabel() { InicializarListaLabel(&labels_); }
int LabelAdd(const char *label, void *dir) { return AniadirLabel(&labels_, label, dir); }
int LabelDel(const char *label) { return BorrarLabel(&labels_, label); }
void *LabelAddr(const char *label) { return ObtenerAddr(&labels_, label); }
const char *LabelLabel(const void *dir) { return ObtenerLabel(&labels_, dir); }
void *LabelFirstAddr() { return ObtenerPrimeraDireccion(&labels_); }
void *LabelNextAddr(const void *dir) { return ObtenerSiguienteDireccion(&labels_, dir); }
const EntradaLabel &LabelEntrada(int n) { return labels_.entradas[n]; }
