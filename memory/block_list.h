// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <ctime>

// The record of the memory blocks that the user has obtained: heap blocks, attached shared segments and
// mapped files. It only records; the allocation commands obtain and release the blocks themselves.

constexpr int kMaxBloques = 4096; ///< capacity; every slot may be used

/// The kinds of block. Single bits, so that searches and listings can take a mask.
constexpr int TIPO_MALLOC = 1;
constexpr int TIPO_SHARED = 2;
constexpr int TIPO_MMAP = 4;
constexpr int kTodosLosTipos = TIPO_MALLOC | TIPO_SHARED | TIPO_MMAP;

/// The first word of a block that holds an SF (memfs/layout.h). Known here because it goes with a heap block.
constexpr uint32_t kMagicoSF = 0x110691;

/// The size that stands for "no such block".
constexpr unsigned long long kSinTamano = ~0ULL;

struct NodoBloque {
    void *direccion;           ///< start of the block; the node's identity
    unsigned long long tamano; ///< bytes
    char *fichero;             ///< a mapping's file name as typed (the node's own copy), else null
    int clave;                 ///< a segment's key, a mapping's descriptor, 0 for the heap
    int tipo;                  ///< one TIPO_ bit
    time_t fecha;              ///< when the node was made
};

/// The nodes stand in the first slots in the order of their insertion; all slots beyond are null. Zero-filled
/// is empty.
struct ListaBloquesMemoria {
    NodoBloque *nodos[kMaxBloques];
    int num;
};

extern ListaBloquesMemoria L; ///< the blocks of this process

/// Makes the list empty; nothing that it held is released.
void CrearLista(ListaBloquesMemoria *lista);

/// Takes every node out; the blocks are not touched.
void VaciarLista(ListaBloquesMemoria *lista);

/// A new node with its own copy of `fichero` (may be null), or null with the allocator's `errno`.
NodoBloque *CrearNodo(void *dir, unsigned long long tam, int clave, const char *fichero, int tipo);

/// Enters a block after the last one. Returns the new number of nodes, or -1: ENOSPC (list full) or the
/// allocator's `errno`; the list is then unchanged.
int InsertarNodo(ListaBloquesMemoria *lista, void *dir, unsigned long long tam, int clave,
                 const char *fichero, int tipo);
int InsertarNodoMalloc(ListaBloquesMemoria *lista, void *dir, unsigned long long tam);
int InsertarNodoShared(ListaBloquesMemoria *lista, void *dir, unsigned long long tam, int clave);
int InsertarNodoMmap(ListaBloquesMemoria *lista, void *dir, unsigned long long tam, int df,
                     const char *fichero);

// Searches: the slot of the earliest node that fits and whose kind is in the mask, or -1.
int BuscarNodoTam(const ListaBloquesMemoria *lista, unsigned long long tam, int tipos);
int BuscarNodoClave(const ListaBloquesMemoria *lista, int clave, int tipos);
int BuscarNodoMmap(const ListaBloquesMemoria *lista, const char *fichero);

/// Slot of the node whose block starts at `dir` (an address inside a block finds nothing), or -1: ENXIO.
int BuscarNodoDireccion(const ListaBloquesMemoria *lista, const void *dir);

/// Address of the first node's block, or null.
void *PrimerElemento(const ListaBloquesMemoria *lista);

/// Address of the block after the one at `dir`, or null: at the end, and (ENXIO) when `dir` is not recorded.
void *SiguienteElemento(const ListaBloquesMemoria *lista, const void *dir);

/// Takes the node of `dir` out; the block is not touched. Returns 0, or -1: ENXIO.
int EliminarNodoDireccion(ListaBloquesMemoria *lista, const void *dir);

// What is recorded of the block at `dir`; without one, -1 (the size: kSinTamano) and ENXIO.
int TipoNodoDireccion(const ListaBloquesMemoria *lista, const void *dir);
int DescriptorNodoDireccion(const ListaBloquesMemoria *lista, const void *dir);
unsigned long long TamanoNodoDireccion(const ListaBloquesMemoria *lista, const void *dir);

/// Descriptor of the first mapping of `fichero`, or -1.
int DescriptorNodoMmap(const ListaBloquesMemoria *lista, const char *fichero);

// Address of the first block of one kind that fits, or null.
void *DireccionNodoMalloc(const ListaBloquesMemoria *lista, unsigned long long tam);
void *DireccionNodoShared(const ListaBloquesMemoria *lista, int clave);
void *DireccionNodoMmap(const ListaBloquesMemoria *lista, const char *fichero);

/// Prints the line of a node. LeerZonaHoraria() has been called.
void PrintElement(const NodoBloque *nodo);

/// Prints the heading of the list of one kind, or of the complete list for any other mask.
void PrintListHeader(const ListaBloquesMemoria *lista, int tipos);

/// Prints the heading and the nodes whose kind is in the mask.
void PrintList(const ListaBloquesMemoria *lista, int tipos);
void ImprimirListaMalloc(const ListaBloquesMemoria *lista);
void ImprimirListaShared(const ListaBloquesMemoria *lista);
void ImprimirListaMmap(const ListaBloquesMemoria *lista);
void ImprimirListaMemCompleta(const ListaBloquesMemoria *lista);
