// SPDX-License-Identifier: MIT

// Preloaded: fails one call of one function of the program, the one that FALLAR and VEZ name, and
// writes into the file INFORME what the judge of the session needs (see failing_calls.py). Arguments are
// passed on as they stand in the registers, so that one text serves every function; no header that declares
// them is included.

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/syscall.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" long syscall(long, ...) noexcept;

namespace {

constexpr long kFalla = -1, kNulo = 0;

#define FUNCION(nombre, motivo, valor) #nombre,
#define OTRA(nombre) #nombre,
constexpr const char *nombres_[] = {
#include "tests/faults/failing_calls.def"
};
#undef FUNCION
#undef OTRA
constexpr int kFunciones = sizeof nombres_ / sizeof nombres_[0];

int Indice(const char *nombre) {
    int f = 0;
    while (f < kFunciones && strcmp(nombres_[f], nombre) != 0) f++;
    return f;
}

/// What the shell and its children count together.
struct Cuenta {
    std::atomic<long> llamadas[kFunciones], lineas;
};
Cuenta *cuenta_;
int fallar_; // this function fails
long vez_;   // at this call
char informe_[4096];
long sesion_;
unsigned long desde_, hasta_; // where the program's own code stands

void Anotar(const char *que, long n) {
    char linea[64];
    const long df = syscall(SYS_openat, -100, informe_, 02001, 0); // O_WRONLY | O_APPEND
    const int tam = snprintf(linea, sizeof linea, "%s %ld\n", que, n);
    syscall(SYS_write, df, linea, tam);
    syscall(SYS_close, df);
}

int BuscarPrograma(dl_phdr_info *objeto, size_t, void *) {
    for (int i = 0; i < objeto->dlpi_phnum; i++)
        if (const auto &tramo = objeto->dlpi_phdr[i]; tramo.p_type == PT_LOAD && tramo.p_flags & PF_X) {
            desde_ = objeto->dlpi_addr + tramo.p_vaddr;
            hasta_ = desde_ + tramo.p_memsz;
        }
    return 1; // the first object is the program
}

__attribute__((constructor)) void Empezar() {
    dl_iterate_phdr(BuscarPrograma, nullptr);
    fallar_ = Indice(getenv("FALLAR"));
    vez_ = atol(getenv("VEZ"));
    snprintf(informe_, sizeof informe_, "%s", getenv("INFORME"));
    for (const char *variable : {"FALLAR", "VEZ", "INFORME", "LD_PRELOAD"}) unsetenv(variable);
    sesion_ = syscall(SYS_getpid);
    cuenta_ = reinterpret_cast<Cuenta *>(
        syscall(SYS_mmap, 0, sizeof *cuenta_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
}

/// The end of the session: how often each function was called, the descriptors still open and the children
/// not waited for.
__attribute__((destructor)) void Acabar() {
    if (syscall(SYS_getpid) != sesion_) return;
    for (int f = 0; f < kFunciones; f++) Anotar(nombres_[f], cuenta_->llamadas[f]);
    for (long df = 0; df < 1024; df++)
        if (syscall(SYS_fcntl, df, 1) != -1) Anotar("abierto", df); // F_GETFD
    char hijos[4096] = "";
    const long df = syscall(SYS_openat, -100, "/proc/thread-self/children", 0);
    syscall(SYS_read, df, hijos, sizeof hijos - 1);
    for (char *resto, *pid = strtok_r(hijos, " ", &resto); pid; pid = strtok_r(nullptr, " ", &resto))
        Anotar("hijo", atol(pid));
}

/// Whether this call of the program's (the C library's own calls are let go) is the one that fails.
bool Toca(const char *nombre, const void *vuelta) {
    const int funcion = Indice(nombre);
    const auto lugar = reinterpret_cast<unsigned long>(vuelta);
    if (!cuenta_ || lugar < desde_ || lugar >= hasta_ || ++cuenta_->llamadas[funcion] != vez_ ||
        funcion != fallar_)
        return false;
    Anotar("fallada", cuenta_->lineas);
    return true;
}

} // namespace

#pragma GCC diagnostic ignored "-Wunused-parameter"
#define ARGUMENTOS long a, long b, long c, long d, long e, long f
#define DEFINIR(nombre, ...)                                                                                 \
    extern "C" long F_##nombre(ARGUMENTOS) __asm__(#nombre);                                                 \
    extern "C" long F_##nombre(ARGUMENTOS) {                                                                 \
        static const auto real = reinterpret_cast<long (*)(ARGUMENTOS)>(dlsym(RTLD_NEXT, #nombre));          \
        const auto hacer = [&] { return real(a, b, c, d, e, f); };                                           \
        __VA_ARGS__                                                                                          \
    }
#define FUNCION(nombre, motivo, valor)                                                                       \
    DEFINIR(nombre, if (!Toca(#nombre, __builtin_return_address(0))) return hacer(); errno = motivo;         \
            return valor;)
#define OTRA(nombre)
#include "tests/faults/failing_calls.def"

// A descriptor is gone even when its closing fails.
#define FALLAR_TRAS_HACER(nombre)                                                                            \
    DEFINIR(nombre, const bool toca = Toca(#nombre, __builtin_return_address(0)); const long n = hacer();    \
            if (!toca) return n; errno = EIO; return kFalla;)
FALLAR_TRAS_HACER(close)
FALLAR_TRAS_HACER(closedir)

// A failed read of the input ends the session, as it should: those are let go.
#define FALLAR_SALVO_ENTRADA(nombre)                                                                         \
    DEFINIR(                                                                                                 \
        nombre,                                                                                              \
        if (static_cast<int>(a) == 0) {                                                                      \
            const long n = hacer();                                                                          \
            if (n == 1 && *reinterpret_cast<char *>(b) == '\n') ++cuenta_->lineas;                           \
            return n;                                                                                        \
        } if (!Toca(#nombre, __builtin_return_address(0))) return hacer();                                   \
        errno = EIO; return kFalla;)
FALLAR_SALVO_ENTRADA(read)
FALLAR_SALVO_ENTRADA(__read_chk)
FALLAR_SALVO_ENTRADA(pread)

// Nobody waits for a pause, and the endless loop is interrupted.
DEFINIR(sleep, static_cast<void>(hacer); return Toca("sleep", __builtin_return_address(0));)
DEFINIR(getpid, static long veces; constexpr long kMuchas = 10000;
        if (++veces == kMuchas) syscall(SYS_kill, sesion_, SIGINT);
        return veces > kMuchas ? sesion_ : hacer();)
