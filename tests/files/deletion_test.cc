#include "files/deletion.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "tests/driver/session.h"

namespace {

/// When the directory `aLaVista` is about to be opened, another process is played: `victima` is moved aside
/// and becomes a link to `destino`.
struct Cambio {
    const char *aLaVista;
    std::string victima, destino;
} cambio;

} // namespace

/// Stands before the C library's function in this whole program.
extern "C" int openat(int df, const char *nombre, int flags, ...) {
    va_list args;
    va_start(args, flags);
    const mode_t modo = flags & O_CREAT ? va_arg(args, mode_t) : 0;
    va_end(args);
    if (cambio.aLaVista && strcmp(nombre, cambio.aLaVista) == 0) {
        cambio.aLaVista = nullptr;
        EXPECT_EQ(rename(cambio.victima.c_str(), (cambio.victima + ".aparte").c_str()), 0);
        EXPECT_EQ(symlink(cambio.destino.c_str(), cambio.victima.c_str()), 0);
    }
    return static_cast<int>(syscall(SYS_openat, df, nombre, flags, modo));
}

namespace {

using namespace escenario;

TEST(BorrarDirectorio, StaysInsideTheTreeWhenADirectoryBecomesALink) {
    static constexpr struct {
        const char *aLaVista, *victima;
    } filas[] = {{"d", "t/d"},  // seen as a directory, a link when it is opened
                 {"e", "t/d"}}; // becomes a link while its subdirectory is being emptied
    for (const auto &fila : filas) {
        DirectorioTemporal tmp;
        for (const char *dir : {"t", "t/d", "t/d/e", "fuera", "fuera/e"}) mkdir((tmp / dir).c_str(), 0777);
        EscribirFichero(tmp / "fuera/e/f", "valioso");
        EscribirFichero(tmp / "fuera/f", "valioso");
        cambio = {fila.aLaVista, tmp / fila.victima, tmp / "fuera"};
        errno = 0;
        EXPECT_EQ(BorrarDirectorio((tmp / "t").c_str()), -1) << fila.aLaVista;
        EXPECT_EQ(errno, ENOTDIR) << fila.aLaVista;
        EXPECT_EQ(cambio.aLaVista, nullptr) << "the link was never put there";
        EXPECT_EQ(LeerFichero(tmp / "fuera/f") + LeerFichero(tmp / "fuera/e/f"), "valiosovalioso")
            << fila.aLaVista;
    }
}

} // namespace
