// SPDX-License-Identifier: MIT

#include "files/open_file_table.h"

#include <fcntl.h>
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/failure.h"
#include "base/large_storage.h"
#include "base/output.h"

namespace {

/// What is known of one descriptor. The name is a heap string of the table's own; null: the entry is free.
struct FicheroAbierto {
    char *nombre;
    int modo;  // the open flags; 0 in a free entry
    int redir; // 1 when it takes part in redirection; independent of the name
};

alignas(kAparte) FicheroAbierto OpenFilesList[kMaxDescriptores];

constexpr const char *kNombresEstandar[] = {"entrada estandar", "salida estandar", "error estandar"};
constexpr int kEntradasSiempreListadas = 20;

/// Flags in the order in which they are shown. All bits of a flag must be there.
constexpr struct {
    int flag;
    const char *palabra;
} kModos[] = {
    {O_CREAT, "O_CREAT "}, {O_EXCL, "O_EXCL "},     {O_RDONLY, "O_RDONLY "}, {O_WRONLY, "O_WRONLY "},
    {O_RDWR, "O_RDWR "},   {O_APPEND, "O_APPEND "}, {O_TRUNC, "O_TRUNC "},
};

bool EstaEnTabla(int df) { return df >= 0 && df < kMaxDescriptores; }

/// Whether no descriptor from `desde` on (less than FD_SETSIZE) is open; false too where the system does not
/// tell. A number that is not open is EBADF in a set, but beyond the system's own table of the process, which
/// ends soon after the highest descriptor that was ever open, systems ignore what a set has.
bool NingunoAbiertoDesde(int desde) {
    if (DescriptorEnUso(desde)) return false;
    fd_set conjunto;
    FD_ZERO(&conjunto);
    FD_SET(desde, &conjunto);
    struct timeval sinEsperar = {};
    return select(desde + 1, nullptr, nullptr, &conjunto, &sinEsperar) == 0;
}

/// A number that all open descriptors of the table lie below.
int FinDeAbiertos() {
    for (int fin = 64; fin < FD_SETSIZE; fin *= 4) // where the table of a process of few descriptors ends
        if (NingunoAbiertoDesde(fin)) return fin;
    return kMaxDescriptores;
}

void AnotarHeredado(int df) {
    const int modo = fcntl(df, F_GETFL);
    if (modo == -1) return;
    AddOpenFile(df, df <= STDERR_FILENO ? kNombresEstandar[df] : "desconocido", modo,
                DescriptorRedireccion(df));
}

bool TieneModo(int modo, int flag) {
    // O_RDONLY may be the absence of the other access flags.
    return flag == O_RDONLY ? (modo & O_ACCMODE) == O_RDONLY : (modo & flag) == flag;
}

} // namespace

void InitOpenFiles() {
    // Asking for each of the 4096 would take a third of the start-up. poll() would tell of many at once, but
    // takes one that can only name a file (O_PATH) for closed; /proc costs more than these questions.
    const int fin = FinDeAbiertos();
    for (int df = 0; df < fin; df++) AnotarHeredado(df);
}

int AddOpenFile(int df, const char *nombre, int modo, int redir) {
    if (!EstaEnTabla(df)) return Fallo(ENOENT);
    if (!nombre) return Fallo(EFAULT);
    char *copia = strdup(nombre); // before the old name goes: it may be the same one
    if (!copia) return -1;
    free(OpenFilesList[df].nombre);
    OpenFilesList[df] = {copia, modo, redir};
    return df;
}

int RemoveOpenFile(int df) {
    if (!NombreFicheroDescriptor(df)) return Fallo(ENOENT);
    free(OpenFilesList[df].nombre);
    OpenFilesList[df].nombre = nullptr;
    OpenFilesList[df].modo = 0;
    return df;
}

void ClearOpenFilesList() {
    for (int df = 0; df < kMaxDescriptores; df++) RemoveOpenFile(df);
}

const char *CadOffset(int df) {
    static char offset[24]; // every 64-bit offset fits
    const off_t posicion = lseek(df, 0, SEEK_CUR);
    if (posicion == -1) return "  ";
    snprintf(offset, sizeof offset, "%lld", static_cast<long long>(posicion));
    return offset;
}

void PrintOpenFile(int df) {
    const char *nombre = NombreFicheroDescriptor(df);
    // A number that the table does not have is shown as a free one.
    Imprimir("descriptor: %d, offset: (%s)-> %s ", df, CadOffset(df), nombre ? nombre : "no usado ");
    for (const auto &modo : kModos)
        if (nombre && TieneModo(OpenFilesList[df].modo, modo.flag)) EscribirTexto(modo.palabra);
    if (DescriptorRedireccion(df)) EscribirTexto("(redir)");
    EscribirTexto("\n");
}

void ListOpenFiles(int n) {
    for (int df = 0; df < kMaxDescriptores; df++) {
        const bool sigue = n == -1 ? df < kEntradasSiempreListadas || OpenFilesList[df].nombre : df < n;
        if (!sigue) return;
        PrintOpenFile(df);
    }
}

const char *NombreFicheroDescriptor(int df) { return EstaEnTabla(df) ? OpenFilesList[df].nombre : nullptr; }

int DescriptorEnUso(int df) { return fcntl(df, F_GETFD) != -1; }

int DescriptorRedireccion(int df) { return EstaEnTabla(df) ? OpenFilesList[df].redir : 0; }

void UsarEnRedireccion(int df) {
    if (EstaEnTabla(df)) OpenFilesList[df].redir = 1;
}

void LiberarDeRedireccion(int df) {
    if (EstaEnTabla(df)) OpenFilesList[df].redir = 0;
}
