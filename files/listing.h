// SPDX-License-Identifier: MIT

#pragma once

// Directories as headings and lines, the entries in the system's order.

/// What the option words of a listing command ask for.
struct OpcionesListado {
    int corto = 1; ///< 0: -long
    int link = 0;  ///< -link: what links hold
    int acc = 0;   ///< -acc: the date of the last access
    int hid = 0;   ///< -hid: entries whose name begins with "." too
    int rec = 0;   ///< 1, -reca: the subdirectories after their directory; 2, -recb: before it
};

/// A directory to be listed. It is opened by its name in the directory open as `en` (AT_FDCWD at the top),
/// and never through a link that took its place; `ruta` is how the heading shows it.
struct DirectorioListado {
    int en;
    const char *nombre;
    const char *ruta;
};

/// One directory, and its subdirectories as ListarSubdirectorios where `rec` asks for them. Returns 0, or -1
/// with `errno` when it could not be opened.
int ListarDirectorio(const DirectorioListado &dir, const OpcionesListado &o);

/// The heading and the lines of one directory. Returns what closing it returned, or -1 with `errno` when it
/// could not be opened; nothing is printed then.
int ListarDirectorioSimple(const DirectorioListado &dir, const OpcionesListado &o);

/// ListarDirectorio on every subdirectory. Returns as ListarDirectorioSimple.
int ListarSubdirectorios(const DirectorioListado &dir, const OpcionesListado &o);
