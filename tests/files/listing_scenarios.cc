// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Listing, EntersHiddenDirectoriesWhenAskedAndNeverTheOneAbove) {
    Sesion s;
    for (const char *dir : {"d", "d/c", "d/.a"}) mkdir((s / dir).c_str(), 0755);
    ASSERT_EQ(symlink("..", (s / "d/.a/l").c_str()), 0);
    const std::string todo = s.Linea("listrec -hid d"); // in the order of the file system
    for (const char *linea : {"************d/.a\n", "************d/c\n", "  .\n", "  ..\n", "       2  l\n"})
        EXPECT_TRUE(Contiene(todo, linea)) << todo;
    EXPECT_EQ(Veces(todo, "*d"), 3) << todo;
}

/// The line of `stat -long` with these permissions.
std::string Larga(const std::string &ruta, const char *permisos, const char *nombre) {
    struct stat st;
    EXPECT_EQ(lstat(ruta.c_str(), &st), 0) << ruta;
    const struct passwd *usuario = getpwuid(st.st_uid);
    const struct group *grupo = getgrgid(st.st_gid);
    char linea[512];
    snprintf(linea, sizeof linea, "%s %3lu (%8lu)%9s%9s %s%8lu %s\n",
             Fecha(st.st_mtime, "%Y/%m/%d-%H:%M").c_str(), static_cast<unsigned long>(st.st_nlink),
             static_cast<unsigned long>(st.st_ino), usuario ? usuario->pw_name : " ??????",
             grupo ? grupo->gr_name : "??????", permisos, static_cast<unsigned long>(st.st_size), nombre);
    return linea;
}

TEST(Listing, TheFormsOfALine) {
    Sesion s;
    EscribirFichero(s / "b", "hola\n");
    mkdir((s / "d").c_str(), 0777);
    ASSERT_EQ(symlink("b", (s / "l").c_str()) + mkfifo((s / "p").c_str(), 0600), 0);
    const struct timespec tiempos[] = {{1709651289, 0}, {1709647629, 0}}; // the 5th of March of 2024
    ASSERT_EQ(utimensat(AT_FDCWD, (s / "b").c_str(), tiempos, 0), 0);
    chmod((s / "d").c_str(), 0755);
    const std::string leido = Fecha(tiempos[0].tv_sec, "%Y/%m/%d-%H:%M"),
                      enlace = Larga(s / "l", "lrwxrwxrwx ", "l");
    s.Seguir({{"stat -acc b", "       5  " + leido + " b\n"},
              {"stat -link l b", "       1  l -> b\n       5  b\n"},
              {"stat -acc -link l", "~* l -> b\n"},
              {"stat -long d l", Larga(s / "d", "drwxr-xr-x ", "d") + enlace},
              {"stat -long d", Larga(s / "d", "drwxr-xr-x ", "d")},
              {"stat -long l", enlace},
              {"stat -long -link l", enlace.substr(0, enlace.size() - 1) + " -> b\n"},
              {"stat -long p", Larga(s / "p", "prw------- ", "p")},
              {"stat -long /dev/null", Larga("/dev/null", "crw-rw-rw- ", "/dev/null")}});
    static constexpr std::pair<mode_t, const char *> filas[] = {
        {0644, "-rw-r--r-- "}, {04755, "-rwsr-xr-x "}, {01777, "-rwxrwxrwt "}, {07000, "---s--s--t "}};
    for (const auto &[modo, permisos] : filas) {
        ASSERT_EQ(chmod((s / "b").c_str(), modo), 0);
        EXPECT_EQ(s.Linea("stat -long b"), Larga(s / "b", permisos, "b"));
    }
    SALTAR_SIN_SER_ROOT(); // to give a file away
    ASSERT_EQ(chown((s / "b").c_str(), 3999999999u, 3999999998u), 0);
    EXPECT_EQ(s.Linea("stat -long b"), Larga(s / "b", "------s--t ", "b"));
}

TEST(Listing, EveryOneGoesByTheTimeZoneOfTheMoment) {
    Sesion s({.entorno = {"TZ=UTC0"}});
    EscribirFichero(s / "f", "");
    const std::string sf = s.Dir("memmalloc 16384");
    s.Linea("memfs-format " + sf);
    for (const std::string &linea : {std::string("stat -acc f"), "memfs-list " + sf, std::string("malloc")}) {
        const std::string antes = s.Linea(linea);
        s.Linea("changevar -p TZ AAA-12:30");
        EXPECT_NE(s.Linea(linea), antes);
        s.Linea("changevar -p TZ UTC0");
    }
}

} // namespace
