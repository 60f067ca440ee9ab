// SPDX-License-Identifier: MIT

#pragma once

#include "memfs/file_id.h"

// From the words that the user types to SFs and to files in them.

/// 1 when `dir` is the start of a recorded heap block or shared segment and holds a valid SF, else 0.
int ValidSFAddr(const void *dir);

/// 1 when `dir` is the start of a recorded heap block or shared segment, else 0.
int ValidAddrForMakingFS(const void *dir);

/// The address that `palabra` stands for: a label's, else the hexadecimal number that it is. May be null, or
/// the address of anything.
void *ObtenerDireccionSF(const char *palabra);

/// Fills `id` from "idsf:name" or a path. Cuts `palabra` (may be null) at its first colon; the name points
/// into it.
void ObtenerIdfich(Idfich *id, char *palabra);
