#include "files/open_file_table.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/failure.h"
#include "base/output.h"

FicheroAbierto OpenFilesList[kMaxDescriptores];

namespace {

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

constexpr int kMaxTramo = 256;
static_assert(kMaxDescriptores % kMaxTramo == 0 && (kMaxTramo & (kMaxTramo - 1)) == 0,
              "slices, halved or not, must end where the table ends");

/// Asks the system about the descriptors from `desde` on, *tam of them: those that are not open come back as
/// POLLNVAL. A slice larger than the descriptor limit is refused, so it is halved until it fits; when none
/// does, no answer rules a descriptor out.
void ConsultarTramo(struct pollfd tramo[], int desde, int *tam) {
    for (;; *tam /= 2) {
        for (int i = 0; i < *tam; i++) tramo[i] = {desde + i, 0, 0};
        int resultado;
        do resultado = poll(tramo, static_cast<nfds_t>(*tam), 0);
        while (resultado == -1 && errno == EINTR);
        if (resultado != -1 || *tam == 1) return;
    }
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
    // A few polls tell which of the 4096 are open, in place of 4096 questions. They say of a descriptor that
    // can only name a file (O_PATH) that it is not open, and so does the table: no read, write or offset goes
    // through it.
    struct pollfd tramo[kMaxTramo];
    int tam = kMaxTramo;
    for (int desde = 0; desde < kMaxDescriptores; desde += tam) {
        ConsultarTramo(tramo, desde, &tam);
        for (int i = 0; i < tam; i++)
            if (!(tramo[i].revents & POLLNVAL)) AnotarHeredado(desde + i);
    }
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
