#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// A session in a directory of its own.
struct EnDirectorio {
    DirectorioTemporal tmp;
    Sesion s;
    explicit EnDirectorio(void (*antesDeExec)() = nullptr) : s(Aqui(antesDeExec)) {}

    Opciones Aqui(void (*antesDeExec)()) const {
        Opciones o;
        o.directorio = tmp.ruta();
        o.antesDeExec = antesDeExec;
        return o;
    }
    bool Hay(const std::string &nombre) const {
        struct stat st;
        return lstat((tmp / nombre).c_str(), &st) == 0;
    }
};

TEST(Creation, CreatesFilesDirectoriesAndLinksOrSaysWhyNot) {
    EnDirectorio e;
    for (const char *linea : {"create", "create -f", "makefile", "makedir", "delete", "deltree"})
        EXPECT_EQ(e.s.Linea(linea), e.tmp.ruta() + "\n") << linea;
    static constexpr struct {
        const char *linea, *salida;
    } filas[] = {
        {"create -f f", ""},
        {"create -f f", "Imposible crear f: File exists"},
        {"create d -f", ""},
        {"makedir d", "Imposible crear d: File exists"},
        {"makefile nada/f", "Imposible crear nada/f: No such file or directory"},
        {"link f dura", ""},
        {"hardlink f dura", "Imposible crear enlace real a f: File exists\n"},
        {"link -s nada blanda", ""}, // dangling
        {"symlink nada blanda", "Imposible crear enlace simbolico a nada: File exists\n"},
        {"link f", "uso: link f1 f2\n"},
        {"link -s f", "uso: symlink f1 f2\n"},
        {"delete f nada dura", "Imposible borrar nada: No such file or directory\n"},
        {"makefile d/.oculto", ""},
        {"delete d", "Imposible borrar d: Directory not empty\n"},
        {"deltree d blanda nada", "Imposible borrar nada: No such file or directory\n"},
    };
    for (const auto &fila : filas) EXPECT_EQ(e.s.Linea(fila.linea), fila.salida) << fila.linea;
    for (const char *nombre : {"f", "dura", "blanda", "d"}) EXPECT_FALSE(e.Hay(nombre)) << nombre;
}

TEST(Deletion, LinksAreDeletedAndNeverFollowed) {
    EnDirectorio e;
    for (const char *linea : {"makedir d", "makefile d/f", "makedir t", "symlink ../d t/l", "symlink d l"})
        EXPECT_EQ(e.s.Linea(linea), "");
    for (const char *nombre : {"l/", "l//", "d/f/"})
        EXPECT_EQ(e.s.Linea(std::string("deltree ") + nombre),
                  std::string("Imposible borrar ") + nombre + ": Not a directory\n");
    EXPECT_EQ(e.s.Linea("deltree t l"), "");
    EXPECT_TRUE(e.Hay("d/f"));
    EXPECT_FALSE(e.Hay("t") || e.Hay("l"));
}

TEST(Deletion, ATreeDeeperThanPathsAndDescriptorsReachIsDeletedWhole) {
    EnDirectorio e([] {
        const struct rlimit limite = {20, 20};
        setrlimit(RLIMIT_NOFILE, &limite);
    });
    mkdir((e.tmp / "t").c_str(), 0777);
    int df = open((e.tmp / "t").c_str(), O_RDONLY);
    for (int i = 0; i < 400; i++) {
        // Siblings on both sides of the way down: coming back up, each level must be gone through again.
        for (const char *nombre : {"antes", "directorio", "z"}) ASSERT_EQ(mkdirat(df, nombre, 0777), 0);
        close(openat(df, "z/f", O_CREAT, 0666));
        const int abajo = openat(df, "directorio", O_RDONLY);
        close(df);
        df = abajo;
    }
    close(df);
    EXPECT_EQ(e.s.Linea("deltree t"), "");
    EXPECT_FALSE(e.Hay("t"));
    e.s.Linea("open .");
    EXPECT_NE(e.s.Linea("listopen").find("descriptor: 3, offset: (0)-> . "), std::string::npos)
        << "descriptors were left open";
}

} // namespace
