// SPDX-License-Identifier: MIT

#pragma once

// A dump: rows of up to 25 bytes, each a line of their characters above a line of their values.

constexpr int kBytesFila = 25;

/// Three columns that show character `c`: itself, \n \t \r for these three, blanks for what does not print.
const char *CadBon(signed char c);

/// Prints the two lines of one row: `cont` bytes (0 to kBytesFila; a negative count shows none) from `dir`.
void MostrarLinea(const void *dir, int cont);

/// Prints the dump of `cont` bytes from `dir`. All rows before one that faults have reached descriptor 1.
void MostrarMemoria(const void *dir, unsigned long long cont);
