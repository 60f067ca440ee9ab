#pragma once

// Directories as headings and lines, the entries in the system's order. The flags are those of the listing
// commands.

/// A directory to be listed. It is opened by its name in the directory open as `en` (AT_FDCWD at the top),
/// and never through a link that took its place; `ruta` is how the heading shows it.
struct DirectorioListado {
    int en;
    const char *nombre;
    const char *ruta;
};

/// One directory, and its subdirectories after (rec 1) or before it (rec 2) as ListarSubdirectorios. Returns
/// 0, or -1 with `errno` when it could not be opened.
int ListarDirectorio(const DirectorioListado &dir, int corto, int hid, int rec, int link, int acc);

/// The heading and the lines of one directory. Returns what closing it returned, or -1 with `errno` when it
/// could not be opened; nothing is printed then.
int ListarDirectorioSimple(const DirectorioListado &dir, int corto, int hid, int link, int acc);

/// ListarDirectorio on every subdirectory. Returns as ListarDirectorioSimple.
int ListarSubdirectorios(const DirectorioListado &dir, int corto, int hid, int rec, int link, int acc);
