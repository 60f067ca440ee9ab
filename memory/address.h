#pragma once

/// The address that `texto` denotes, as the "%p" conversion of formatted input reads it: hexadecimal, with or
/// without 0x. Null, with EFAULT, when nothing converts or the address is 0.
void *cadtop(const char *texto);
