// SPDX-License-Identifier: MIT

#include "shell/historic.h"

#include "base/element_list.h"
#include "base/large_storage.h"

int loopHistoric;

namespace {

alignas(kAparte) ListaElementos historico_;

} // namespace

int HistoricAdd(const char *linea) { return AniadirElemento(&historico_, linea); }
void HistoricClear() { BorrarLista(&historico_); }
char *HistoricGet(int n) { return GetElemento(&historico_, n); }
void HistoricPrint() { ImprimirListaCompleta(&historico_, 1); }
void HistoricPrintN(int n) { ImprimirListaLast(&historico_, n, 1); }
