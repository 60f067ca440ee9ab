// SPDX-License-Identifier: MIT

#pragma once

// The shell's own search path: a list of directories. The variable PATH plays no part in it unless it is
// imported.

/// Adds a directory at the end. Returns and fails as AniadirElemento.
int PathAdd(const char *dir);

/// Removes the first entry equal to `dir`. Returns and fails as BorrarElemento.
int PathDel(const char *dir);

void PathClear();  ///< removes every directory
char *PathFirst(); ///< the first directory, or null
char *PathNext();  ///< the one after it that PathFirst or PathNext returned last, or null at the end
void PathPrint();  ///< prints the directories, one a line

/// Adds the directories of PATH (its first 2047 characters), empty ones left out. Returns how many it names;
/// those that a full search path no longer takes are counted too.
int PathAddPath();

/// Where a program would be taken from: the first "directory/nombre" of the search path that exists, whatever
/// it is (a static buffer, overwritten by the next call). `nombre` itself when it begins with "/", "./" or
/// "../", when no directory has it, and when the search path is empty. Null gives null.
const char *Ejecutable(const char *nombre);
