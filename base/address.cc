#include "base/address.h"

#include <cerrno>
#include <cstdio>

void *cadtop(const char *texto) {
    void *dir = nullptr;
    if (sscanf(texto, "%p", &dir) != 1 || !dir) {
        errno = EFAULT;
        return nullptr;
    }
    return dir;
}
