// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(CreationAndDeletion, DoesItOrSaysWhyNotAndFollowsNoLink) {
    DirectorioTemporal tmp;
    Sesion s({.directorio = tmp.ruta()});
    EXPECT_EQ(s.Linea("create -f"), tmp.ruta() + "\n");
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"create -f f", ""},
        {"makefile f", "Imposible crear f: File exists"},
        {"create d -f", ""},
        {"link f dura", ""},
        {"link -s nada blanda", ""}, // dangling
        {"symlink nada blanda", "Imposible crear enlace simbolico a nada: File exists\n"},
        {"link f", "uso: link f1 f2\n"},
        {"delete f nada dura", "Imposible borrar nada: No such file or directory\n"},
        {"makefile d/.oculto", ""},
        {"delete d", "Imposible borrar d: Directory not empty\n"},
        {"makedir t", ""},
        {"symlink ../d t/l", ""},
        {"symlink d l", ""},
        {"deltree l/", "Imposible borrar l/: Not a directory\n"},
        {"deltree t l blanda nada", "Imposible borrar nada: No such file or directory\n"},
        {"delete d/.oculto", ""}, // still there
        {"deltree d", ""},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    EXPECT_TRUE(std::filesystem::is_empty(tmp.ruta()));
}

TEST(Deletion, ATreeDeeperThanPathsAndDescriptorsReachIsDeletedWhole) {
    DirectorioTemporal tmp;
    mkdir((tmp / "t").c_str(), 0777);
    int df = open((tmp / "t").c_str(), O_RDONLY);
    for (int i = 0; i < 400; i++) {
        // Siblings on both sides of the way down: coming back up, each level must be gone through again.
        for (const char *nombre : {"antes", "directorio", "z"}) ASSERT_EQ(mkdirat(df, nombre, 0777), 0);
        close(openat(df, "z/f", O_CREAT, 0666));
        const int abajo = openat(df, "directorio", O_RDONLY);
        close(df);
        df = abajo;
    }
    close(df);
    Sesion s({.directorio = tmp.ruta(), .antesDeExec = [] {
                  const struct rlimit limite = {20, 20};
                  setrlimit(RLIMIT_NOFILE, &limite);
              }});
    EXPECT_EQ(s.Linea("deltree t"), "");
    EXPECT_TRUE(std::filesystem::is_empty(tmp.ruta()));
    EXPECT_EQ(s.Linea("open ."), "Anadida entrada 3 a la tabla ficheros abiertos\n") << "some were left open";
}

} // namespace
