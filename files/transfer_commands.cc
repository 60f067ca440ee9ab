// SPDX-License-Identifier: MIT

// The commands that move an offset, or bytes between a descriptor and memory or the screen: one system call
// each. A typed address goes to the kernel as it is: one that is no good is refused with EFAULT.

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/address.h"
#include "base/output.h"
#include "base/synchronisation.h"
#include "base/words.h"
#include "files/commands.h"

namespace {

/// Whether the first n words are there; says so when they are not.
bool HayPalabras(char *const args[], int n) {
    for (int i = 0; i < n; i++) {
        if (args[i]) continue;
        EscribirTexto("Parametros incorrectos\n");
        return false;
    }
    return true;
}

/// A byte count. A negative one becomes a size that every call refuses.
size_t LeerCuenta(const char *palabra) { return static_cast<size_t>(strtoll(palabra, nullptr, 10)); }

/// The reference point of lseek that a word names; the start of the file when it is no other.
int PuntoReferencia(const char *palabra) {
    if (palabra && strcmp(palabra, "SEEK_CUR") == 0) return SEEK_CUR;
    if (palabra && strcmp(palabra, "SEEK_END") == 0) return SEEK_END;
    return SEEK_SET;
}

} // namespace

void Cmd_read(char *args[]) {
    SincronizarES();
    if (!HayPalabras(args, 3)) return;
    const int df = atoi(args[0]);
    void *dir = cadtop(args[1]);
    SincronizarCadaLinea();
    const ssize_t leidos = read(df, dir, LeerCuenta(args[2]));
    if (leidos == -1)
        Imprimir("Error al leer del descriptor %d a la direccion %p: %s\n", df, dir, strerror(errno));
    else
        Imprimir("Leidos %zd bytes del descriptor %d en la direccion %p\n", leidos, df, dir);
}

void Cmd_write(char *args[]) {
    SincronizarES();
    if (!HayPalabras(args, 3)) return;
    const int df = atoi(args[0]);
    void *dir = cadtop(args[1]);
    const ssize_t escritos = write(df, dir, LeerCuenta(args[2]));
    if (escritos == -1)
        Imprimir("Error al escribir en el descriptor %d desde la direccion %p: %s\n", df, dir,
                 strerror(errno));
    else
        Imprimir("Escritos %zd bytes en el descriptor %d dsde la direccion %p\n", escritos, df, dir);
}

void Cmd_lseek(char *args[]) {
    SincronizarES();
    if (!HayPalabras(args, 2)) return;
    const int df = atoi(args[0]);
    const long long off = strtoll(args[1], nullptr, 10);
    if (lseek(df, off, PuntoReferencia(args[2])) == -1)
        Imprimir("Error al intentar posicionar el descriptor %d en el offset  %lld: %s\n", df, off,
                 strerror(errno));
    else
        Imprimir("Descriptor %d posicionado en %lld\n", df, off);
}

void Cmd_readstr(char *args[]) {
    SincronizarES();
    if (!HayPalabras(args, 2)) return;
    const int df = atoi(args[0]);
    const size_t cont = LeerCuenta(args[1]);
    char *bytes = static_cast<char *>(malloc(cont > 0 ? cont : 1)); // no bytes may come as null
    if (!bytes) {
        EscribirTexto("Imposible asignar memoria para la lectura\n");
        return;
    }
    const ssize_t leidos = read(df, bytes, cont);
    if (leidos == -1) {
        Imprimir("Error al intentar leer del descriptor %d: %s", df, strerror(errno));
    } else {
        Imprimir("Leidos %zd bytes del descriptor %d\n", leidos, df);
        EscribirBytes(bytes, static_cast<size_t>(leidos));
    }
    free(bytes);
    EscribirTexto("\n");
}

void Cmd_writestr(char *args[]) {
    SincronizarES();
    if (!HayPalabras(args, 2)) return;
    const int df = atoi(args[0]);
    char texto[kMaxLinea]; // no line holds more
    const size_t largo = UnirPalabras(texto, sizeof texto, args + 1);
    if (write(df, texto, largo) == -1)
        Imprimir("Error intentar escribir %zd bytes en el descriptor %d: %s\n", static_cast<ssize_t>(largo),
                 df, strerror(errno));
}
