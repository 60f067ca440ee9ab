// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
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
    Sesion s({.uid = Ordinario()});
    for (const char *dir : {"d", "d/c", "d/.a"}) mkdir((s / dir).c_str(), 0755);
    for (const char *fichero : {"b", "d/c/x"}) EscribirFichero(s / fichero, "");
    ASSERT_EQ(symlink("..", (s / "d/.a/l").c_str()), 0);
    static constexpr std::pair<const char *, const char *> filas[] = {{"listdir d", "d,c,"},
                                                                      {"listrec d", "d,c,d/c,x,"},
                                                                      {"listrev d", "d/c,x,d,c,"},
                                                                      {"list -recb d b", "d/c,x,d,c,b,"},
                                                                      {"list -recb -reca d", "d,c,d/c,x,"}};
    for (const auto &[linea, nombres] : filas) EXPECT_EQ(Nombres(s.Linea(linea)), nombres) << linea;
    const std::string todo = s.Linea("listrec -hid d");
    EXPECT_TRUE(Contiene(todo, "************d/.a\n")) << todo;
    for (const char *ciclo : {"d/.\n", "d/..\n", "/l\n"}) EXPECT_FALSE(Contiene(todo, ciclo)) << todo;
    s.Seguir({{"listdir d/c", "************d/c\n       0  x\n"},
              {"listdir d/.a/l", "       2  d/.a/l\n"}, // not what it leads to
              {"listrev -hid", s.ruta() + "\n"},
              {"stat -long", s.ruta() + "\n"},
              {"stat -hid b", " ****error al acceder a -hid:No such file or directory\n       0  b\n"}});
    // A directory that cannot be opened is told only when it was named.
    ASSERT_EQ(chmod((s / "d/c").c_str(), 0), 0);
    EXPECT_EQ(s.Linea("listdir d/c"), "Error al listar directorio d/c:Permission denied\n");
    EXPECT_EQ(Nombres(s.Linea("listrec d")), "d,c,");
    chmod((s / "d/c").c_str(), 0755);
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

} // namespace
