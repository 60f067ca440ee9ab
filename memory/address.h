#pragma once

/// The address that a typed word denotes, read as "%p" does: hexadecimal, with or without 0x. Null, with
/// `errno` EFAULT, when nothing converts or it converts to 0. Whether the process may touch the address is
/// not asked.
void *cadtop(const char *texto);
