// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The last word of every line: "d,c,d/c,x,".
std::string Nombres(const std::string &listado) {
    std::istringstream entrada(listado);
    std::string nombres;
    for (std::string linea; std::getline(entrada, linea);)
        nombres += linea.substr(linea.find_last_of("* ") + 1) + ",";
    return nombres;
}

TEST(Listing, DirectoriesHiddenEntriesAndRecursion) {
    DirectorioTemporal tmp;
    umask(022);
    for (const char *dir : {"d", "d/c", "d/.a"}) mkdir((tmp / dir).c_str(), 0755);
    ASSERT_EQ(chmod(tmp.ruta().c_str(), 0755), 0);
    for (const char *fichero : {"b", "d/c/x"}) EscribirFichero(tmp / fichero, "");
    ASSERT_EQ(symlink("..", (tmp / "d/.a/l").c_str()), 0);
    Sesion s({.directorio = tmp.ruta(), .uid = geteuid() == 0 ? 65534u : 0});
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"listdir d", "d,c,"},
        {"listrec d", "d,c,d/c,x,"},
        {"listrev d", "d/c,x,d,c,"},
        {"list -recb d b", "d/c,x,d,c,b,"},
        {"list -recb -reca d", "d,c,d/c,x,"},
    };
    for (const auto &[linea, nombres] : filas) EXPECT_EQ(Nombres(s.Linea(linea)), nombres) << linea;
    EXPECT_EQ(s.Linea("listdir d/c"), "************d/c\n       0  x\n");
    EXPECT_EQ(s.Linea("listdir d/.a/l"), "       2  d/.a/l\n"); // not what it leads to
    EXPECT_EQ(s.Linea("listrev -hid"), tmp.ruta() + "\n");
    const std::string todo = s.Linea("listrec -hid d");
    EXPECT_NE(todo.find("************d/.a\n"), std::string::npos) << todo;
    for (const char *ciclo : {"d/.\n", "d/..\n", "/l\n"})
        EXPECT_EQ(todo.find(ciclo), std::string::npos) << todo;
    // A directory that cannot be opened is told only when it was named.
    ASSERT_EQ(chmod((tmp / "d/c").c_str(), 0), 0);
    EXPECT_EQ(s.Linea("listdir d/c"), "Error al listar directorio d/c:Permission denied\n");
    EXPECT_EQ(Nombres(s.Linea("listrec d")), "d,c,");
    chmod((tmp / "d/c").c_str(), 0755);
}

TEST(Listing, TheFormsOfALine) {
    DirectorioTemporal tmp;
    Sesion s({.entorno = {"TZ=UTC"}, .directorio = tmp.ruta()});
    const std::string b = tmp / "b";
    EscribirFichero(b, "hola\n");
    ASSERT_EQ(symlink("b", (tmp / "l").c_str()), 0);
    // 2024-03-05 14:07:09; read an hour and a minute after it was written
    const struct timespec tiempos[] = {{1709651289, 0}, {1709647629, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, b.c_str(), tiempos, 0), 0);
    EXPECT_EQ(s.Linea("stat -acc b"), "       5  2024/03/05-15:08 b\n");
    EXPECT_EQ(s.Linea("stat -hid b"),
              " ****error al acceder a -hid:No such file or directory\n       5  b\n");
    EXPECT_EQ(s.Linea("stat -link l"), "       1  l -> b\n");
    static constexpr std::pair<mode_t, const char *> filas[] = {
        {0644, "-rw-r--r--"}, {04755, "-rwsr-xr-x"}, {01777, "-rwxrwxrwt"}, {07000, "---s--s--t"}};
    for (const auto &[modo, permisos] : filas) {
        ASSERT_EQ(chmod(b.c_str(), modo), 0);
        const std::string linea = s.Linea("stat -long b");
        EXPECT_EQ(linea.find("2024/03/05-14:07   1 ("), 0u) << linea;
        EXPECT_NE(linea.find(std::string(" ") + permisos + "        5 b\n"), std::string::npos) << linea;
    }
    if (geteuid() != 0) return; // only root gives files away
    ASSERT_EQ(chown(b.c_str(), 3999999999u, 3999999998u), 0);
    EXPECT_NE(s.Linea("stat -long b").find(")   ??????   ?????? "), std::string::npos);
}

} // namespace
