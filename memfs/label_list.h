// SPDX-License-Identifier: MIT

#pragma once

// The labels: short names that the user gives to addresses. A label is known by its first 7 characters; a
// longer word is cut to them. It is a name only: the address need not be that of a block.

constexpr int kTamLabel = 8;     ///< bytes of a stored label: 7 characters and the null
constexpr int kMaxLabels = 2047; ///< labels that a list holds; one more entry is always free

struct EntradaLabel {
    char label[kTamLabel]; ///< padded with nulls
    void *dir;             ///< null: the entry is free, whatever old text it still holds
};

/// The entries in use come first, in the order of their adding. Zero-filled is empty.
struct ListaLabel {
    EntradaLabel entradas[kMaxLabels + 1];
};

/// Frees every entry; their texts stay.
void InicializarListaLabel(ListaLabel *lista);

/// Gives `label` the address `dir`; a label that exists keeps its place. Returns the index of its entry, or
/// -1: ENOSPC.
int AniadirLabel(ListaLabel *lista, const char *label, void *dir);

/// Index of the first entry, free or not, with this text, or -1.
int BuscarLabel(const ListaLabel *lista, const char *label);

/// Takes out the entry that BuscarLabel finds and closes the gap. Returns its index, or -1: ENOENT.
int BorrarLabel(ListaLabel *lista, const char *label);

/// The label's address; null: there is no such label.
void *ObtenerAddr(const ListaLabel *lista, const char *label);

/// The first label of `dir`, or null.
const char *ObtenerLabel(const ListaLabel *lista, const void *dir);

/// The address of the first entry; null when the list is empty.
void *ObtenerPrimeraDireccion(const ListaLabel *lista);

/// The address in the entry after the first one with address `dir`; null at the end, or when there is none.
void *ObtenerSiguienteDireccion(const ListaLabel *lista, const void *dir);

// The same on the shell's own list.
void InitLabel();
int LabelAdd(const char *label, void *dir);
int LabelDel(const char *label);
void *LabelAddr(const char *label);
const char *LabelLabel(const void *dir);
void *LabelFirstAddr();
void *LabelNextAddr(const void *dir);

/// Entry n (0 to kMaxLabels) of the shell's own list; the first free one ends it.
const EntradaLabel &LabelEntrada(int n);
