// SPDX-License-Identifier: MIT

#include "base/address.h"

#include <cstdio>

#include "base/failure.h"

void *cadtop(const char *texto) {
    void *dir = nullptr;
    return sscanf(texto, "%p", &dir) == 1 && dir ? dir : FalloNulo(EFAULT);
}
