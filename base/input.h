// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

// Standard input, read so that only the line about to run is consumed: a program that the line starts reads
// what follows it. Where the input can seek, a block is read ahead and given back at the points named in
// SincronizarES (base/synchronisation.h); elsewhere (pipes, terminals, a file that is the output too) nothing
// past the newline is taken from the system.

/// What came of reading a line.
enum class Lectura { Linea, Fin, Interrumpida, Error };

/// Reads one line into `linea`, newline included when it fits: at most tam - 1 characters (tam from 2 to
/// kMaxLinea), the rest of a longer line comes with the next calls. The text ends with a null; a line cut
/// short by the end of the input counts as a line. Before it has to wait it writes out standard output. When
/// a signal interrupts the read, what had arrived stays in `linea`, which the next call has to bring again
/// untouched. `Error` leaves the reason in `errno`.
Lectura LeerLinea(char *linea, size_t tam);

/// Whether descriptor 0 is a terminal.
bool EntradaEsTerminal();

/// Gives back what has been read ahead: sets the offset of standard input to the byte after the last line
/// read. A program in the background that reads the same file moves the same offset: the shell keeps its own
/// place, and such a program may see lines that the shell runs too. Keeps `errno`. (Called by SincronizarES.)
void DevolverEntrada();
