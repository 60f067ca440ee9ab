#pragma once

#include <cstddef>

// Standard input, read so that only the line about to run is consumed: a program that the line starts reads
// what follows it. Where the input can seek, a block is read ahead and given back at the points named in
// SincronizarES; elsewhere (pipes, terminals) nothing past the newline is taken from the system.

/// What came of reading a line.
enum class Lectura { Linea, Fin, Interrumpida, Error };

/// Reads one line into `linea`, newline included when it fits: at most tam - 1 characters (tam from 2 to
/// 4096), the rest of a longer line comes with the next calls. The text ends with a null; a line cut short by
/// the end of the input counts as a line. Before it has to wait it writes out standard output. When a signal
/// interrupts the read, what had arrived is kept for the next call. `Error` leaves the reason in `errno`.
Lectura LeerLinea(char *linea, size_t tam);

/// Whether descriptor 0 is a terminal.
bool EntradaEsTerminal();

/// From now on every line starts synchronised (SincronizarES). For a command that writes wherever the user
/// said: any later one may find the heap broken and end the shell.
void SincronizarCadaLinea();

/// SincronizarES once such a command has run, else nothing: for what reads a table that the user may have
/// damaged.
void SincronizarTrasDanos();

/// Puts the descriptors in the state that the user sees: writes out standard output and sets the offset of
/// standard input to the byte after the last line read. To be called before a child is made, before a program
/// replaces the shell, before a command touches or shows a descriptor, before a fault can end the shell, and
/// at the end. A program in the background that reads the same file moves the same offset: the shell keeps
/// its own place, and such a program may see lines that the shell runs too. Keeps `errno`.
void SincronizarES();
