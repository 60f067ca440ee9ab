// SPDX-License-Identifier: MIT

// limits: the resource limits of the process, soft and hard.

#include <sys/resource.h>

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "shell/commands.h"

namespace {

/// `recurso`: a resource code of getrlimit, whose type is the platform's own.
template<class Recurso>
void PrintLimits(Recurso recurso, const char *nombre, const char *unidad, int divisor) {
    struct rlimit limite;
    if (getrlimit(recurso, &limite) == -1) {
        Imprimir("No puedo obtener los limites del recurso %s: %s\n", nombre, strerror(errno));
        return;
    }
    // Unlimited is a number like any other here: the platform's infinity divided.
    const auto entre = static_cast<unsigned long long>(divisor);
    const auto blando = static_cast<long long>(limite.rlim_cur / entre);
    const auto duro = static_cast<long long>(limite.rlim_max / entre);
    Imprimir("%s: %lld %s(soft) %lld %s\n", nombre, blando, unidad, duro, unidad);
}

void PrintLimitsAddressSpace() { PrintLimits(RLIMIT_AS, "espacio direcciones", "4K pages", 4096); }
void PrintLimitsDataSize() { PrintLimits(RLIMIT_DATA, "espacio datos", "Megabytes", 1048576); }
void PrintLimitsStackSize() { PrintLimits(RLIMIT_STACK, "tamano de la pila", "Kilobytes", 1024); }
void PrintLimitsResidentSetSize() { PrintLimits(RLIMIT_RSS, "conjunto residente", "Megabytes", 1048576); }
void PrintLimitsFileSize() { PrintLimits(RLIMIT_FSIZE, "tamano fichero", "Megabytes", 1048576); }
void PrintLimitsOpenFiles() { PrintLimits(RLIMIT_NOFILE, "ficheros abiertos", "ficheros", 1); }

} // namespace

void Cmd_limits(char *[]) {
    PrintLimitsAddressSpace();
    PrintLimitsDataSize();
    PrintLimitsStackSize();
    PrintLimitsResidentSetSize();
    PrintLimitsFileSize();
    PrintLimitsOpenFiles();
}
