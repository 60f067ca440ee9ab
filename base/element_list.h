// SPDX-License-Identifier: MIT

#pragma once

// A list of strings of fixed capacity. The shell keeps three: the historic of lines (shell/historic.h), the
// search path (processes/search_path.h) and the strings placed in the environment (environment/variables.h).

constexpr int kMaxElementos = 4095; ///< elements of a list; one more slot holds the closing null

/// The elements stand in the first slots in the order of their adding, closed by a null; all slots beyond are
/// null. Every element is a heap string that the list owns. Zero-filled is empty.
struct ListaElementos {
    char *elementos[kMaxElementos + 1];
    int num; ///< how many there are, so that adding need not count them
};

/// Adds a copy of `cadena`. Returns the new number of elements, or -1: EFAULT (null string), ENOSPC (list
/// full), or the allocator's errno; the list is then unchanged.
int AniadirElemento(ListaElementos *lista, const char *cadena);

/// As AniadirElemento, but stores the heap string itself, which then belongs to the list (not on failure).
int AniadirElementoYaAsignado(ListaElementos *lista, char *cadena);

/// The number of elements.
int ElementosEnLista(const ListaElementos *lista);

/// Prints the first n elements, one a line, each behind its position and "->" when `numerada` is not 0.
void ImprimirListaFirst(const ListaElementos *lista, int n, int numerada);

/// Prints the last n elements in the same form, with their own positions.
void ImprimirListaLast(const ListaElementos *lista, int n, int numerada);

/// Prints the whole list in the same form.
void ImprimirListaCompleta(const ListaElementos *lista, int numerada);

/// Position of the first element equal to `cadena`, or -1 (EFAULT when it is null).
int BuscarElemento(const ListaElementos *lista, const char *cadena);

/// Releases the first element equal to `cadena` and closes the gap. Returns 0, or -1: ENOENT (absent or
/// null).
int BorrarElemento(ListaElementos *lista, const char *cadena);

/// Releases every element.
void BorrarLista(ListaElementos *lista);

/// The first element, or null.
char *GetPrimerElemento(const ListaElementos *lista);

/// The element after the first one equal to `cadena`, or null: at the end, and (ENODEV) when it is absent.
char *GetSiguienteElemento(const ListaElementos *lista, const char *cadena);

/// Walks a list with one cursor shared by all: from the start when `primero` is 1. Null at the end; the
/// caller then stops.
char *GetFirstNextElement(const ListaElementos *lista, int primero);

/// The element at position n, or null.
char *GetElemento(const ListaElementos *lista, int n);
