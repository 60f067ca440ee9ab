// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Deletion, ATreeDeeperThanPathsAndDescriptorsReachIsDeletedWhole) {
    Sesion s({.antesDeExec = Limitar<RLIMIT_NOFILE, 20>});
    mkdir((s / "t").c_str(), 0777);
    int df = open((s / "t").c_str(), O_RDONLY);
    for (int i = 0; i < 400; i++) {
        // Siblings on both sides of the way down: coming back up, each level must be gone through again.
        for (const char *nombre : {"antes", "directorio", "z"}) ASSERT_EQ(mkdirat(df, nombre, 0777), 0);
        close(openat(df, "z/f", O_CREAT, 0666));
        const int abajo = openat(df, "directorio", O_RDONLY);
        close(df);
        df = abajo;
    }
    close(df);
    if (!kSaneado) {
        Sesion baja({.directorio = s.ruta(), .antesDeExec = Limitar<RLIMIT_STACK, 1 << 18>});
        baja.Seguir({{"deltree t", "Imposible borrar t: File name too long\n"}});
    }
    s.Seguir(
        {{"deltree t", ""}, {"open .", "Anadida entrada 3 a la tabla ficheros abiertos\n"}}); // none left
    EXPECT_TRUE(std::filesystem::is_empty(s.ruta()));
}

} // namespace
