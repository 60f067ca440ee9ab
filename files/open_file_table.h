// SPDX-License-Identifier: MIT

#pragma once

// The shell's own record of its descriptors: where each came from, how it was opened, whether it takes part
// in the redirection of the standard streams. It only records; it never opens or closes a descriptor, so it
// can disagree with the process.
//
// Any int is a valid `df`: numbers outside 0 to 4095 have no entry, and are never looked up.

constexpr int kMaxDescriptores = 4096;

/// Enters every descriptor that the process has open at start-up, one that can only name a file (O_PATH) too.
void InitOpenFiles();

/// Makes the entry of df a copy of `nombre`, the mode and the mark, whatever it was. Returns df, or -1:
/// ENOENT (no such entry), EFAULT (null name) or the allocator's errno; the table is then unchanged.
int AddOpenFile(int df, const char *nombre, int modo, int redir);

/// Frees the entry of df; its redirection mark stays. Returns df, or -1: ENOENT (free, or no such entry).
int RemoveOpenFile(int df);

/// Frees every entry.
void ClearOpenFilesList();

/// The current offset of df in decimal, or two blanks when it has none. Valid until the next call.
const char *CadOffset(int df);

/// Prints the line of df.
void PrintOpenFile(int df);

/// Prints the lines of the first n entries; with -1 the first 20, and on while the entries are in use.
void ListOpenFiles(int n);

/// The name in the entry of df, or null.
const char *NombreFicheroDescriptor(int df);

/// 1 when the process has df open, whatever the table says, else 0.
int DescriptorEnUso(int df);

int DescriptorRedireccion(int df); ///< the redirection mark of df; 0 without an entry
void UsarEnRedireccion(int df);    ///< sets the mark of df
void LiberarDeRedireccion(int df); ///< clears the mark of df
