// SPDX-License-Identifier: MIT

#include "files/deletion.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <filesystem>

#include "tests/driver/session.h"

namespace {

const char *aLaVista_;          // when it is about to be opened, another process is played:
std::string victima_, destino_; // the one directory is moved aside and becomes a link to the other

} // namespace

/// Stands before the C library's function in this whole program.
extern "C" int openat(int df, const char *nombre, int flags, ...) {
    va_list args;
    va_start(args, flags);
    const mode_t modo = flags & O_CREAT ? va_arg(args, mode_t) : 0;
    va_end(args);
    if (aLaVista_ && strcmp(nombre, aLaVista_) == 0) {
        aLaVista_ = nullptr;
        std::filesystem::rename(victima_, victima_ + ".aparte");
        std::filesystem::create_symlink(destino_, victima_);
    }
    return static_cast<int>(syscall(SYS_openat, df, nombre, flags, modo));
}

TEST(BorrarDirectorio, StaysInsideTheTreeWhenADirectoryBecomesALink) {
    // The directory d was seen as one and is a link when it is opened; or while its own e is being emptied.
    for (const char *abierto : {"d", "e"}) {
        escenario::DirectorioTemporal tmp;
        for (const char *dir : {"t/d/e", "fuera/e"}) std::filesystem::create_directories(tmp / dir);
        escenario::EscribirFichero(tmp / "fuera/e/f", "valioso");
        victima_ = tmp / "t/d";
        destino_ = tmp / "fuera";
        aLaVista_ = abierto;
        errno = 0;
        EXPECT_EQ(BorrarDirectorio((tmp / "t").c_str()), -1) << abierto;
        EXPECT_EQ(errno, ENOTDIR) << abierto;
        EXPECT_EQ(aLaVista_, nullptr) << "the link was never put there";
        EXPECT_EQ(escenario::LeerFichero(tmp / "fuera/e/f"), "valioso") << abierto;
    }
}
