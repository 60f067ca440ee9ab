#include "shell/input.h"

#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "shell/output.h"

namespace {

constexpr size_t kTamBloque = 8192;
constexpr size_t kTamPendiente = 4096;

/// How descriptor 0 may be read without taking more than a line; found out anew after each SincronizarES,
/// since whatever runs then may put another file there.
enum class Fuente { Desconocida, Fichero, Terminal, Otra };

// The small ones stand together, in one page of memory.
Fuente fuente_;
size_t pos_, fin_;    // the part of bloque_ that has been read and not yet used
size_t numPendiente_; // the bytes in pendiente_
char bloque_[kTamBloque];
char pendiente_[kTamPendiente]; // the line being put together; survives an interrupted read

Fuente ClaseDeEntrada() {
    struct stat st;
    if (fstat(STDIN_FILENO, &st) == 0 && S_ISREG(st.st_mode) && lseek(STDIN_FILENO, 0, SEEK_CUR) != -1)
        return Fuente::Fichero;
    struct termios t;
    // A terminal in canonical mode hands over one line at the most.
    if (tcgetattr(STDIN_FILENO, &t) == 0 && (t.c_lflag & ICANON)) return Fuente::Terminal;
    return Fuente::Otra;
}

/// Reads more input into the empty block. Returns what read() returned.
ssize_t LeerBloque() {
    if (fuente_ == Fuente::Desconocida) fuente_ = ClaseDeEntrada();
    if (fuente_ != Fuente::Fichero) VolcarSalida(); // this read may wait; the prompt must be seen
    for (;;) {
        const ssize_t n = read(STDIN_FILENO, bloque_, fuente_ == Fuente::Otra ? 1 : kTamBloque);
        if (n != -1 || errno != EAGAIN) return n;
        struct pollfd espera = {STDIN_FILENO, POLLIN, 0}; // a descriptor left non-blocking by somebody else
        if (poll(&espera, 1, -1) == -1) return -1;
    }
}

Lectura Entregar(char *linea) {
    memcpy(linea, pendiente_, numPendiente_);
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
            memcpy(pendiente_ + numPendiente_, bloque_ + pos_, n);
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

void SincronizarES() {
    const int motivo = errno;
    VolcarSalida();
    if (fuente_ == Fuente::Fichero && pos_ < fin_) {
        lseek(STDIN_FILENO, -static_cast<off_t>(fin_ - pos_), SEEK_CUR);
        pos_ = fin_ = 0;
    }
    fuente_ = Fuente::Desconocida;
    errno = motivo;
}
