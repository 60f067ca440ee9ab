#pragma once

// Directories as headings and lines. dir: the name as it is shown; the flags are those of the listing
// commands. Entries come in the system's order.

/// One directory, and its subdirectories after (rec 1) or before it (rec 2) as ListarSubdirectorios. Returns
/// 0, or -1 with `errno` when `dir` could not be opened.
int ListarDirectorio(const char *dir, int corto, int hid, int rec, int link, int acc);

/// The heading and the lines of one directory. Returns what closing it returned, or -1 with `errno` when it
/// could not be opened; nothing is printed then.
int ListarDirectorioSimple(const char *dir, int corto, int hid, int link, int acc);

/// ListarDirectorio on every subdirectory of `dir`; links are not followed. Returns as
/// ListarDirectorioSimple.
int ListarSubdirectorios(const char *dir, int corto, int hid, int rec, int link, int acc);
