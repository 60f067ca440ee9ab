// SPDX-License-Identifier: MIT

#pragma once

// The historic: every line that was run, in order, numbered from 0.

/// Nesting of historic repetition; 0 before every prompt.
extern int loopHistoric;

/// Stores a copy of the line. Returns and fails as AniadirElemento.
int HistoricAdd(const char *linea);

/// Forgets every line.
void HistoricClear();

/// The line at position n, or null.
char *HistoricGet(int n);

void HistoricPrint();       ///< prints all lines behind their positions
void HistoricPrintN(int n); ///< prints the last n of them
