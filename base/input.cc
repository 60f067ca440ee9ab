// SPDX-License-Identifier: MIT

#include "base/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/large_storage.h"
#include "base/output.h"

namespace {

constexpr size_t kTamBloque = 4096; // one page: it is read anew after each program that a line starts

/// How descriptor 0 may be read without taking more than a line; found out anew after each SincronizarES,
/// since whatever runs then may put another file there. Not even a terminal keeps to a line: what was typed
/// ahead while its lines were not being edited arrives in one piece.
enum class Fuente { Desconocida, Fichero, Otra };

// The small ones stand together, in one page of memory.
Fuente fuente_;
size_t pos_, fin_;    // the part of bloque_ that has been read and not yet used
off_t lugar_;         // of a file: the offset of the byte after the block
size_t numPendiente_; // the bytes of an unfinished line in the caller's buffer
alignas(kAparte) char bloque_[kTamBloque];

/// Whether descriptor `df` leads to the file described.
bool LlevaA(int df, const struct stat &fichero) {
    struct stat st;
    return fstat(df, &st) == 0 && st.st_ino == fichero.st_ino && st.st_dev == fichero.st_dev;
}

Fuente ClaseDeEntrada() {
    struct stat st;
    if (fstat(STDIN_FILENO, &st) == -1 || !S_ISREG(st.st_mode)) return Fuente::Otra;
    // Where what is printed goes to the same file, every write may move the offset, and change what comes
    // next.
    if (LlevaA(STDOUT_FILENO, st) || LlevaA(STDERR_FILENO, st)) return Fuente::Otra;
    lugar_ = lseek(STDIN_FILENO, 0, SEEK_CUR);
    return lugar_ == -1 ? Fuente::Otra : Fuente::Fichero;
}

/// Reads a block ahead, at the shell's own place: a program in the background may be moving the offset
/// meanwhile.
ssize_t LeerDeFichero() {
    const ssize_t n = pread(STDIN_FILENO, bloque_, kTamBloque, lugar_);
    if (n > 0) lugar_ += n;
    return n;
}

/// Reads a byte where nothing can be given back. This read may wait; the prompt must be seen.
ssize_t LeerDeOtra() {
    VolcarSalida();
    for (;;) {
        const ssize_t n = read(STDIN_FILENO, bloque_, 1);
        if (n != -1 || errno != EAGAIN) return n;
        // A descriptor that somebody left non-blocking: reading has to wait, and only a read that waits is
        // restarted after a signal.
        const int modo = fcntl(STDIN_FILENO, F_GETFL);
        if (modo == -1 || fcntl(STDIN_FILENO, F_SETFL, modo & ~O_NONBLOCK) == -1) return -1;
    }
}

/// Reads more input into the empty block. Returns what read() returned.
ssize_t LeerBloque() {
    if (fuente_ == Fuente::Desconocida) fuente_ = ClaseDeEntrada();
    return fuente_ == Fuente::Fichero ? LeerDeFichero() : LeerDeOtra();
}

Lectura Entregar(char *linea) {
    linea[numPendiente_] = '\0';
    numPendiente_ = 0;
    return Lectura::Linea;
}

} // namespace

Lectura LeerLinea(char *linea, size_t tam) {
    const size_t maximo = tam - 1;
    for (;;) {
        if (pos_ < fin_) {
            size_t n = fin_ - pos_;
            if (n > maximo - numPendiente_) n = maximo - numPendiente_;
            const void *salto = memchr(bloque_ + pos_, '\n', n);
            if (salto) n = static_cast<size_t>(static_cast<const char *>(salto) - (bloque_ + pos_)) + 1;
            memcpy(linea + numPendiente_, bloque_ + pos_, n);
            pos_ += n;
            numPendiente_ += n;
            if (salto || numPendiente_ == maximo) return Entregar(linea);
        }
        pos_ = fin_ = 0;
        const ssize_t n = LeerBloque();
        if (n > 0)
            fin_ = static_cast<size_t>(n);
        else if (n == 0)
            return numPendiente_ > 0 ? Entregar(linea) : Lectura::Fin;
        else
            return errno == EINTR ? Lectura::Interrumpida : Lectura::Error;
    }
}

bool EntradaEsTerminal() { return isatty(STDIN_FILENO) == 1; }

void DevolverEntrada() {
    const int motivo = errno;
    if (fuente_ == Fuente::Fichero) {
        lseek(STDIN_FILENO, lugar_ - static_cast<off_t>(fin_ - pos_), SEEK_SET);
        pos_ = fin_ = 0;
    }
    fuente_ = Fuente::Desconocida;
    errno = motivo;
}
