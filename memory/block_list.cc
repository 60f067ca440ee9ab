// SPDX-License-Identifier: MIT

#include "memory/block_list.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/dates.h"
#include "base/failure.h"
#include "base/large_storage.h"
#include "base/output.h"

alignas(kAparte) ListaBloquesMemoria L;

namespace {

NodoBloque *NodoDireccion(const ListaBloquesMemoria *lista, const void *dir) {
    const int pos = BuscarNodoDireccion(lista, dir);
    return pos == -1 ? nullptr : lista->nodos[pos];
}

void *DireccionNodo(const ListaBloquesMemoria *lista, int pos) {
    return pos == -1 ? nullptr : lista->nodos[pos]->direccion;
}

void LiberarNodo(NodoBloque *nodo) {
    free(nodo->fichero);
    free(nodo);
}

} // namespace

void CrearLista(ListaBloquesMemoria *lista) { *lista = {}; }

void VaciarLista(ListaBloquesMemoria *lista) {
    for (int i = 0; i < lista->num; i++) LiberarNodo(lista->nodos[i]);
    CrearLista(lista);
}

NodoBloque *CrearNodo(void *dir, unsigned long long tam, int clave, const char *fichero, int tipo) {
    auto *nodo = static_cast<NodoBloque *>(malloc(sizeof(NodoBloque)));
    if (!nodo) return nullptr;
    char *copia = fichero ? strdup(fichero) : nullptr;
    if (fichero && !copia) {
        free(nodo);
        return nullptr;
    }
    *nodo = {dir, tam, copia, clave, tipo, time(nullptr)};
    return nodo;
}

int InsertarNodo(ListaBloquesMemoria *lista, void *dir, unsigned long long tam, int clave,
                 const char *fichero, int tipo) {
    NodoBloque *nodo = CrearNodo(dir, tam, clave, fichero, tipo);
    if (!nodo) return -1;
    if (lista->num == kMaxBloques) {
        LiberarNodo(nodo);
        return Fallo(ENOSPC);
    }
    lista->nodos[lista->num] = nodo;
    return ++lista->num;
}

int InsertarNodoMalloc(ListaBloquesMemoria *lista, void *dir, unsigned long long tam) {
    return InsertarNodo(lista, dir, tam, 0, nullptr, TIPO_MALLOC);
}

int InsertarNodoShared(ListaBloquesMemoria *lista, void *dir, unsigned long long tam, int clave) {
    return InsertarNodo(lista, dir, tam, clave, nullptr, TIPO_SHARED);
}

int InsertarNodoMmap(ListaBloquesMemoria *lista, void *dir, unsigned long long tam, int df,
                     const char *fichero) {
    return InsertarNodo(lista, dir, tam, df, fichero, TIPO_MMAP);
}

int BuscarNodoTam(const ListaBloquesMemoria *lista, unsigned long long tam, int tipos) {
    for (int i = 0; i < lista->num; i++)
        if ((lista->nodos[i]->tipo & tipos) && lista->nodos[i]->tamano == tam) return i;
    return -1;
}

int BuscarNodoClave(const ListaBloquesMemoria *lista, int clave, int tipos) {
    for (int i = 0; i < lista->num; i++)
        if ((lista->nodos[i]->tipo & tipos) && lista->nodos[i]->clave == clave) return i;
    return -1;
}

int BuscarNodoMmap(const ListaBloquesMemoria *lista, const char *fichero) {
    for (int i = 0; i < lista->num; i++) {
        const char *suyo = lista->nodos[i]->fichero; // mappings alone have one
        if (suyo && strcmp(suyo, fichero) == 0) return i;
    }
    return -1;
}

int BuscarNodoDireccion(const ListaBloquesMemoria *lista, const void *dir) {
    for (int i = 0; i < lista->num; i++)
        if (lista->nodos[i]->direccion == dir) return i;
    return Fallo(ENXIO);
}

void *PrimerElemento(const ListaBloquesMemoria *lista) { return DireccionNodo(lista, lista->num ? 0 : -1); }

void *SiguienteElemento(const ListaBloquesMemoria *lista, const void *dir) {
    const int pos = BuscarNodoDireccion(lista, dir);
    return DireccionNodo(lista, pos == -1 || pos == lista->num - 1 ? -1 : pos + 1);
}

int EliminarNodoDireccion(ListaBloquesMemoria *lista, const void *dir) {
    const int pos = BuscarNodoDireccion(lista, dir);
    if (pos == -1) return -1;
    LiberarNodo(lista->nodos[pos]);
    --lista->num;
    const auto detras = static_cast<size_t>(lista->num - pos);
    memmove(&lista->nodos[pos], &lista->nodos[pos + 1], detras * sizeof lista->nodos[0]);
    lista->nodos[lista->num] = nullptr;
    return 0;
}

int TipoNodoDireccion(const ListaBloquesMemoria *lista, const void *dir) {
    const NodoBloque *nodo = NodoDireccion(lista, dir);
    return nodo ? nodo->tipo : -1;
}

int DescriptorNodoDireccion(const ListaBloquesMemoria *lista, const void *dir) {
    const NodoBloque *nodo = NodoDireccion(lista, dir);
    return nodo ? nodo->clave : -1;
}

unsigned long long TamanoNodoDireccion(const ListaBloquesMemoria *lista, const void *dir) {
    const NodoBloque *nodo = NodoDireccion(lista, dir);
    return nodo ? nodo->tamano : kSinTamano;
}

int DescriptorNodoMmap(const ListaBloquesMemoria *lista, const char *fichero) {
    const int pos = BuscarNodoMmap(lista, fichero);
    return pos == -1 ? -1 : lista->nodos[pos]->clave;
}

void *DireccionNodoMalloc(const ListaBloquesMemoria *lista, unsigned long long tam) {
    return DireccionNodo(lista, BuscarNodoTam(lista, tam, TIPO_MALLOC));
}

void *DireccionNodoShared(const ListaBloquesMemoria *lista, int clave) {
    return DireccionNodo(lista, BuscarNodoClave(lista, clave, TIPO_SHARED));
}

void *DireccionNodoMmap(const ListaBloquesMemoria *lista, const char *fichero) {
    return DireccionNodo(lista, BuscarNodoMmap(lista, fichero));
}

void PrintElement(const NodoBloque *nodo) {
    Imprimir("%20p  %15llu %s", nodo->direccion, nodo->tamano, ponFecha(nodo->fecha));
    const long clave = nodo->clave;
    switch (nodo->tipo) {
    case TIPO_MALLOC: EscribirTexto(" malloc\n"); break;
    // A negative key shows as the system keeps it: sign-extended, then unsigned.
    case TIPO_SHARED: Imprimir(" shared (key %lu)\n", static_cast<unsigned long>(clave)); break;
    case TIPO_MMAP: Imprimir(" %s  (descriptor %ld)\n", nodo->fichero ? nodo->fichero : "", clave); break;
    default: EscribirTexto("  unknown\n"); break;
    }
}

void PrintListHeader(const ListaBloquesMemoria *, int tipos) {
    const char *que = tipos == TIPO_MALLOC   ? " malloc"
                      : tipos == TIPO_SHARED ? " shared"
                      : tipos == TIPO_MMAP   ? " mmap"
                                             : "";
    Imprimir("******Lista de bloques asignados%s para el proceso %lu\n", que,
             static_cast<unsigned long>(getpid()));
}

void PrintList(const ListaBloquesMemoria *lista, int tipos) {
    PrintListHeader(lista, tipos);
    LeerZonaHoraria();
    for (int i = 0; i < lista->num; i++)
        if (lista->nodos[i]->tipo & tipos) PrintElement(lista->nodos[i]);
}

void ImprimirListaMalloc(const ListaBloquesMemoria *lista) { PrintList(lista, TIPO_MALLOC); }
void ImprimirListaShared(const ListaBloquesMemoria *lista) { PrintList(lista, TIPO_SHARED); }
void ImprimirListaMmap(const ListaBloquesMemoria *lista) { PrintList(lista, TIPO_MMAP); }
void ImprimirListaMemCompleta(const ListaBloquesMemoria *lista) { PrintList(lista, kTodosLosTipos); }
