// SPDX-License-Identifier: MIT

#pragma once

/// The byte that a typed word denotes: the character between two single quotes, else the low 8 bits of a
/// number in base 10, 16 (0x) or 8 (0); 0 when it is none of these.
unsigned char ConvertirByte(const char *texto);

/// Sets the bytes at offsets 0, paso, 2 * paso... below `cont` from `dir`, in this order. paso: 1 or more.
void LlenarMemoria(void *dir, unsigned long long cont, unsigned char byte, int paso);
