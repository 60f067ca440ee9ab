// SPDX-License-Identifier: MIT

#include "files/redirection.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/descriptor.h"
#include "base/failure.h"
#include "base/output.h"
#include "files/open_file_table.h"

namespace {

constexpr int kNumFlujos = 3;
constexpr const char *kNombresFlujos[kNumFlujos] = {"entrada", "salida", "error"};
constexpr int kPrimeroLibre = STDERR_FILENO + 1; // the descriptors that are no standard ones begin here

/// How a standard stream stands. It is redirected exactly when `nombre`, a heap string, is not null.
struct FlujoEstandar {
    int descriptor; // -1: not open when redirection was initialised
    int copia;      // a duplicate of what the descriptor was then
    int fichero;    // the descriptor of the file in use, -1: none
    char *nombre;   // of that file, as typed
};

FlujoEstandar redstruct[kNumFlujos];
int inicializadaredireccion;

/// Puts a duplicate of df in the place of a standard descriptor. In two steps on purpose, where dup2 would do
/// in one: that dup gives the lowest free number, the one just closed, is what redirection shows. In between
/// the stream is closed; the shell prints nothing then, and a handler's notice is lost.
void Sustituir(int estandar, int df) {
    close(estandar);
    const int nuevo = dup(df);
    if (nuevo == estandar) return;
    // A lower standard descriptor was closed too, and dup took that one.
    fcntl(df, F_DUPFD, estandar);
    close(nuevo);
}

/// Opens a file for redirection, never as a standard descriptor: where one of those is closed, the shell
/// would print into the file, or read from it, without being asked. On purpose its number is another one then
/// than open() gave.
int AbrirFichero(const char *fichero, int flags) {
    const int df = open(fichero, flags, 0755);
    if (df == -1 || df >= kPrimeroLibre) return df;
    const Descriptor bajo(df);
    return fcntl(df, F_DUPFD, kPrimeroLibre);
}

void InitRedirDescriptor(int fd) {
    // dup() would take the place of a standard descriptor that is closed. On purpose the copy has another
    // number then than dup() would give it: kPrimeroLibre or more.
    const int copia = fcntl(fd, F_DUPFD, kPrimeroLibre);
    if (copia == -1) return;
    redstruct[fd] = {fd, copia, -1, nullptr};
    UsarEnRedireccion(fd);
    char nombre[64];
    snprintf(nombre, sizeof nombre, "copia descriptor %d", fd);
    AddOpenFile(copia, nombre, fcntl(copia, F_GETFL), 1);
    UsarEnRedireccion(copia);
    inicializadaredireccion = 1;
}

} // namespace

int HayRedireccion() { return inicializadaredireccion == 1; }

void InitRedir() {
    for (FlujoEstandar &flujo : redstruct) {
        free(flujo.nombre); // what a redirection before the last ClearRedir left
        flujo = {-1, -1, -1, nullptr};
    }
    for (int fd = 0; fd < kNumFlujos; fd++)
        if (DescriptorEnUso(fd)) InitRedirDescriptor(fd);
}

int DoRedir(int flujo, const char *fichero) {
    FlujoEstandar *f = &redstruct[flujo];
    if (f->descriptor == -1) return Fallo(EBADF); // there would be no way back
    const int flags = f->descriptor == STDIN_FILENO ? O_RDWR : O_WRONLY | O_CREAT | O_APPEND;
    char *nombre = strdup(fichero);
    const int df = nombre ? AbrirFichero(fichero, flags) : -1;
    if (df == -1) {
        const int motivo = errno;
        free(nombre);
        return Fallo(motivo);
    }
    if (f->nombre) {
        free(f->nombre);
        LiberarDeRedireccion(f->fichero); // it stays open, and can be closed by the user now
    }
    f->nombre = nombre;
    Sustituir(f->descriptor, df);
    f->fichero = df;
    AddOpenFile(df, fichero, flags, 1);
    return 0;
}

int UndoRedir(int flujo) {
    FlujoEstandar *f = &redstruct[flujo];
    if (!f->nombre) return -1;
    if (!DescriptorEnUso(f->copia)) return -1; // closing the stream now would lose it for good
    free(f->nombre);
    f->nombre = nullptr;
    close(f->fichero);
    RemoveOpenFile(f->fichero);
    f->fichero = -1;
    Sustituir(f->descriptor, f->copia);
    return 0;
}

void ShowRedir() {
    for (int i = 0; i < kNumFlujos; i++) {
        const FlujoEstandar &f = redstruct[i];
        if (!DescriptorRedireccion(i)) continue;
        Imprimir("%s estandar en fichero %s (%d) \n", kNombresFlujos[i],
                 f.nombre ? f.nombre : "configuracion original", f.fichero);
    }
}

void ClearRedir() {
    for (int df = 0; df < kMaxDescriptores; df++)
        if (DescriptorRedireccion(df)) LiberarDeRedireccion(df);
    inicializadaredireccion = 0;
}
