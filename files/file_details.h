// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <ctime>

// The status of a file as one line of text. Links are described, never followed (lstat throughout). A text
// that is returned is a static buffer, overwritten by the next call of the same function.

/// The type letter of a file mode: s l - b d c p, or ? when it is none of these.
char TipoFichero(mode_t modo);

/// Type letter, nine permission letters and a blank.
const char *Permisos(mode_t modo);

/// Modification time of `ruta` (a link's own), or -1 when its status cannot be had.
time_t FechaFichero(const char *ruta);

/// Prepares for the lines of one command: names and time zone are looked up once in a command, and anew in
/// the next, so that a change shows; standard output is written out, so that the size of its file is that of
/// all the text.
void IniciarDetalles();

/// The line of file `nombre`, taken from the directory open as `dir` (AT_FDCWD for a name that the user
/// typed): short or long form, with the target of a link when `link`, with the access date when `acc`. A file
/// whose status cannot be had gives a line that says why. What does not fit in 4095 characters is cut.
const char *DetallesFichero(int corto, int dir, const char *nombre, int link, int acc);
