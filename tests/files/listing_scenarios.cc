#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <sstream>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The last word of every line in byte order within its heading, headings as they came: " d:b,c, d/c:x,".
std::string Esquema(const std::string &listado) {
    std::istringstream entrada(listado);
    std::vector<std::string> nombres;
    size_t primero = 0; // of the names under this heading
    for (std::string linea; std::getline(entrada, linea);) {
        const bool cabecera = linea.compare(0, 12, "************") == 0;
        nombres.push_back(cabecera ? " " + linea.substr(12) + ":"
                                   : linea.substr(linea.find_last_of(' ') + 1) + ",");
        if (cabecera) primero = nombres.size();
        std::sort(nombres.begin() + static_cast<long>(primero), nombres.end());
    }
    return std::accumulate(nombres.begin(), nombres.end(), std::string());
}

/// The directory d with .a, b (5 bytes), c/x and l, a link to c. The clock shows UTC.
struct Listado : testing::Test {
    DirectorioTemporal tmp;
    Opciones o;
    void SetUp() override {
        o.directorio = tmp.ruta();
        o.entorno = {"TZ=UTC"};
        umask(022);
        for (const char *dir : {"d", "d/c", "d/.a"}) ASSERT_EQ(mkdir((tmp / dir).c_str(), 0755), 0);
        EscribirFichero(tmp / "d/b", "hola\n");
        EscribirFichero(tmp / "d/c/x", "");
        ASSERT_EQ(symlink("c", (tmp / "d/l").c_str()), 0);
        // 2024-03-05 14:07:09; read an hour and a minute after it was written
        const struct timespec tiempos[] = {{1709651289, 0}, {1709647629, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, (tmp / "d/b").c_str(), tiempos, 0), 0);
    }
};

TEST_F(Listado, DirectoriesHiddenEntriesAndRecursion) {
    Sesion s(o);
    static constexpr struct {
        const char *linea, *esquema;
    } filas[] = {
        {"listdir d", " d:b,c,l,"},
        {"listdir -hid d", " d:.,..,.a,b,c,l,"},
        {"listrec d", " d:b,c,l, d/c:x,"},
        {"listrev d", " d/c:x, d:b,c,l,"},
        {"list -recb d", " d/c:x, d:b,c,l,"},
        {"list -recb -reca d", " d:b,c,l, d/c:x,"},
        {"list d d/b -hid", " d:b,c,d/b,directory,l,"}, // -hid: no such file or directory
    };
    for (const auto &fila : filas) EXPECT_EQ(Esquema(s.Linea(fila.linea)), fila.esquema) << fila.linea;
    const std::string todo = Esquema(s.Linea("listrec -hid d"));
    EXPECT_NE(todo.find(" d/.a:.,..,"), std::string::npos) << todo;
    EXPECT_EQ(todo.find(" d/.:"), std::string::npos) << todo;
    EXPECT_EQ(todo.find(" d/l:"), std::string::npos) << todo;
    for (const char *linea : {"stat -long", "list", "listrev -hid"})
        EXPECT_EQ(s.Linea(linea), tmp.ruta() + "\n") << linea;
}

TEST_F(Listado, TheFormsOfALine) {
    Sesion s(o);
    struct stat st;
    ASSERT_EQ(stat((tmp / "d/b").c_str(), &st), 0);
    char numero[32];
    snprintf(numero, sizeof numero, "(%8lu)", static_cast<unsigned long>(st.st_ino));
    EXPECT_EQ(s.Linea("stat d/b"), "       5  d/b\n");
    EXPECT_EQ(s.Linea("stat -acc d/b"), "       5  2024/03/05-15:08 d/b\n");
    EXPECT_EQ(s.Linea("stat -hid d/b"),
              " ****error al acceder a -hid:No such file or directory\n       5  d/b\n");
    EXPECT_EQ(s.Linea("stat -link d/l"), "       1  d/l -> c\n");
    EXPECT_EQ(s.Linea("listdir d/l"), "       1  d/l\n"); // not what it leads to
    const std::string largo = s.Linea("stat -long d/b");
    EXPECT_EQ(largo.substr(0, 21 + strlen(numero)), "2024/03/05-14:07   1 " + std::string(numero));
    EXPECT_EQ(largo.substr(largo.size() - 25), " -rw-r--r--        5 d/b\n") << largo;
}

TEST_F(Listado, SpecialBitsAndOwnersWithoutAName) {
    static constexpr struct {
        mode_t modo;
        const char *permisos;
    } filas[] = {{04755, " -rwsr-xr-x "}, {04644, " -rwsr--r-- "}, {02755, " -rwxr-sr-x "},
                 {01777, " -rwxrwxrwt "}, {07000, " ---s--s--t "}, {0, " ---------- "}};
    Sesion s(o);
    for (const auto &fila : filas) {
        ASSERT_EQ(chmod((tmp / "d/b").c_str(), fila.modo), 0);
        EXPECT_NE(s.Linea("stat -long d/b").find(fila.permisos), std::string::npos) << fila.permisos;
    }
    EXPECT_NE(s.Linea("stat -long d").find(" drwxr-xr-x "), std::string::npos);
    if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
    ASSERT_EQ(chown((tmp / "d/b").c_str(), 3999999999u, 3999999998u), 0);
    EXPECT_NE(s.Linea("stat -long d/b").find(")   ??????   ?????? "), std::string::npos);
}

TEST_F(Listado, ADirectoryThatCannotBeOpenedIsToldOnlyWhenItWasNamed) {
    if (geteuid() == 0) o.uid = 65534;
    ASSERT_EQ(chmod(tmp.ruta().c_str(), 0755), 0);
    ASSERT_EQ(chmod((tmp / "d/c").c_str(), 0), 0);
    Sesion s(o);
    EXPECT_EQ(s.Linea("listdir d/c"), "Error al listar directorio d/c:Permission denied\n");
    EXPECT_EQ(Esquema(s.Linea("listrec d")), " d:b,c,l,");
    chmod((tmp / "d/c").c_str(), 0755);
}

} // namespace
