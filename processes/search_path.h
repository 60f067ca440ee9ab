#pragma once

// The shell's own search path (the list itself: shell/element_list.h). The variable PATH plays no part in it
// unless it is imported.

/// Adds the directories of PATH (its first 2047 characters), empty ones left out. Returns how many it names;
/// those that a full search path no longer takes are counted too.
int PathAddPath();

/// Where a program would be taken from: the first "directory/nombre" of the search path that exists, whatever
/// it is (a static buffer, overwritten by the next call). `nombre` itself when it begins with "/", "./" or
/// "../", when no directory has it, and when the search path is empty. Null gives null.
const char *Ejecutable(const char *nombre);
