// SPDX-License-Identifier: MIT

// What becomes of calls that are refused, and of what others do between two calls.

#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <map>

#include "files/deletion.h"
#include "files/directory.h"
#include "files/file_details.h"
#include "files/listing.h"
#include "files/open_file_table.h"
#include "files/owner_names.h"
#include "files/redirection.h"
#include "tests/driver/session.h"

namespace {

namespace fs = std::filesystem;
using namespace escenario;

/// What happens at the next call of a function, or the next openat of a name: the reason why it fails, or 0.
using Sucesos = std::map<std::string, std::function<int()>>;
Sucesos *sucesos_;
int usuariosBuscados_;

bool Falla(const std::string &llamada) {
    const auto suceso = sucesos_ ? sucesos_->extract(llamada) : Sucesos::node_type();
    return suceso && (errno = suceso.mapped()()) != 0;
}

constexpr auto Da = [](int motivo) { return [motivo] { return motivo; }; };

struct RefusedCalls : testing::Test {
    Sucesos sucesos;
    DirectorioTemporal tmp;
    RefusedCalls() { fs::current_path(tmp.ruta()), sucesos_ = &sucesos; }
    ~RefusedCalls() { sucesos_ = nullptr; }
    /// That what was called failed for this reason; 0: that it did not.
    void Motivo(int motivo, int resultado) {
        EXPECT_EQ(resultado == -1 ? errno : resultado, motivo);
        EXPECT_TRUE(sucesos.empty()) << "it never happened: " << sucesos.begin()->first;
    }
};

} // namespace

// These stand before the C library's functions in this whole program.
#define DELANTE(nombre, llamada, fallo)                                                                      \
    extern "C" long F_##nombre(long a, long b, long c, long d) __asm__(#nombre);                             \
    extern "C" long F_##nombre(long a, long b, long c, long d) {                                             \
        static const auto real = reinterpret_cast<decltype(&F_##nombre)>(dlsym(RTLD_NEXT, #nombre));         \
        return Falla(llamada) ? fallo : real(a, b, c, d);                                                    \
    }
DELANTE(fstat, "fstat", -1)
DELANTE(readdir, "readdir", 0)
DELANTE(readlinkat, "readlinkat", errno == ENODATA ? 0 : -1)
DELANTE(strdup, "strdup", 0)
DELANTE(openat, reinterpret_cast<const char *>(b), -1)

extern "C" struct passwd *getpwuid(uid_t uid) {
    if (!sucesos_) return reinterpret_cast<decltype(&getpwuid)>(dlsym(RTLD_NEXT, "getpwuid"))(uid);
    static std::string nombre;
    static struct passwd usuario;
    nombre = uid == 1 ? std::string(56, 'n') : std::to_string(uid);
    usuario.pw_name = nombre.data();
    usuariosBuscados_++;
    return Falla("getpwuid") ? nullptr : &usuario;
}

TEST_F(RefusedCalls, DeletionStaysInsideTheTree) {
    const auto mudar = [] { return rename("t/d", "fuera/d"); };
    const auto enlazar = [] { return rename("t/d", "t/otro") + symlink("../fuera", "t/d"); };
    const auto fallarTras = [&] { return sucesos["fstat"] = Da(EIO), 0; };
    // Without descriptors those above are closed and opened again, but for one that could not be known again.
    const std::pair<Sucesos, int> filas[] = {{{{"d", enlazar}}, ENOTDIR},
                                             {{{"e", enlazar}}, ENOTDIR},
                                             {{{"e", Da(EACCES)}}, EACCES},
                                             {{{"readdir", Da(EIO)}}, EIO},
                                             {{{"e", Da(EMFILE)}}, 0},
                                             {{{"e", Da(EMFILE)}, {"fstat", Da(EIO)}}, 0},
                                             {{{"e", Da(EMFILE)}, {"..", fallarTras}}, EIO},
                                             {{{"e", Da(EMFILE)}, {"..", Da(EIO)}}, EIO},
                                             {{{"e", Da(ENFILE)}, {"..", mudar}}, ESTALE}};
    for (const auto &[pasa, motivo] : filas) {
        for (const char *dir : {"t/d/e", "fuera/e"}) fs::create_directories(dir);
        EscribirFichero("fuera/e/f", "valioso");
        sucesos = pasa;
        Motivo(motivo, BorrarDirectorio("t"));
        EXPECT_EQ(LeerFichero("fuera/e/f"), "valioso") << pasa.begin()->first << motivo;
        EXPECT_EQ(fs::remove_all("t") > 0, motivo != 0);
    }
}

TEST_F(RefusedCalls, DeletionTakesAPathApart) {
    fs::create_directory("d");
    sucesos = {{"/", Da(EPERM)}, {"raiz", Da(EPERM)}}; // nothing is to be deleted there
    const auto motivo = [](const std::string &ruta) {
        return BorrarDirectorio(ruta.c_str()) == -1 ? errno : 0;
    };
    EXPECT_EQ(motivo("/"), EPERM);
    EXPECT_EQ(motivo("/raiz"), EPERM);
    EXPECT_EQ(motivo("no/t"), ENOENT);
    EXPECT_EQ(motivo("./" + std::string(4093, '/') + "d"), ENAMETOOLONG);
}

TEST_F(RefusedCalls, AListingTellsOfItsOwnDirectory) {
    fs::create_directories("t/d");
    sucesos["t"] = Da(EMFILE); // its subdirectories can be listed a moment later
    Motivo(EMFILE, ListarDirectorio({AT_FDCWD, "t", "t"}, {.rec = 1}));
    const int df = dup(0); // the number that a directory gets
    close(df);
    for (const auto listar : {ListarDirectorioSimple, ListarSubdirectorios}) {
        Motivo(0, listar({AT_FDCWD, "t/d", "t/d"}, {}));
        Motivo(ENOENT, listar({AT_FDCWD, "nada", "nada"}, {}));
        sucesos["readdir"] = [df] { return close(df); };
        Motivo(EBADF, listar({AT_FDCWD, "t/d", "t/d"}, {})); // its closing
    }
}

TEST_F(RefusedCalls, WhatAFileIsIsAskedForWhereItIsNotKnown) {
    auto es = [entrada = dirent()](const char *nombre, unsigned char tipo) mutable {
        entrada.d_type = tipo;
        strcpy(entrada.d_name, nombre);
        return EntradaEsDirectorio(AT_FDCWD, &entrada);
    };
    EXPECT_TRUE(es(".", DT_UNKNOWN));
    EXPECT_FALSE(es(".", DT_REG) || es("/dev/null", DT_UNKNOWN) || es("nada", DT_UNKNOWN));
    sucesos["readlinkat"] = Da(EIO);
    EXPECT_TRUE(
        Casa(DetallesFichero(1, AT_FDCWD, "/proc/self", 1, 0), "*f -> ?*error al leer enlace: Input*error"));
    sucesos["readlinkat"] = Da(ENODATA);
    EXPECT_TRUE(Casa(DetallesFichero(1, AT_FDCWD, "/proc/self", 1, 0), "*f -> "));
    EXPECT_EQ(TipoFichero(0), '?');
    EXPECT_EQ(FechaFichero("nada"), -1);
}

TEST_F(RefusedCalls, AUserIsLookedUpOnceInACommand) {
    errno = EMFILE;                   // of something before
    for (unsigned n : {16, 16, 20}) { // so many share their places; more of them take them from each other
        EXPECT_LE(usuariosBuscados_, 16);
        for (unsigned uid = 0; uid < n * 200704000; uid += 200704000)
            EXPECT_EQ(UsuarioListado(uid), std::to_string(uid));
    }
    EXPECT_EQ(UsuarioListado(1), std::string(56, 'n'));
    for (int motivo : {EMFILE, ENFILE, ENOMEM, EIO, EINTR}) { // that is not for the rest of the command
        IniciarDetalles();
        sucesos["getpwuid"] = Da(motivo);
        EXPECT_STREQ(UsuarioListado(9), " ??????") << motivo;
        EXPECT_STREQ(UsuarioListado(9), "9") << motivo;
    }
}

TEST_F(RefusedCalls, TheTableOfFilesStaysAsItWas) {
    for (int df : {-1, kMaxDescriptores}) Motivo(ENOENT, AddOpenFile(df, "f", 0, 1));
    for (int df : {0, 7, kMaxDescriptores - 1}) EXPECT_EQ(AddOpenFile(df, "f", 0, 0), df);
    Motivo(EFAULT, AddOpenFile(7, nullptr, 0, 1));
    sucesos["strdup"] = Da(ENOMEM);
    Motivo(ENOMEM, AddOpenFile(7, "g", 0, 1));
    EXPECT_EQ(NombreFicheroDescriptor(7) + std::to_string(DescriptorRedireccion(7)), "f0");
    EXPECT_EQ(RemoveOpenFile(7), 7);
    ClearOpenFilesList();
    for (int df : {0, 7, kMaxDescriptores - 1}) Motivo(ENOENT, RemoveOpenFile(df));
}

TEST_F(RefusedCalls, RedirectionLosesNoStreamAndTakesNoPlace) {
    dup2(open("/dev/null", O_RDONLY), 0);
    const int error = dup(2), copia = dup(0);
    close(copia);
    sucesos["strdup"] = Da(ENOMEM); // there is no room for the name of the first copy
    InitRedir();
    EXPECT_EQ(DescriptorRedireccion(copia), 1);
    EXPECT_EQ(UndoRedir(2), -1) << "nothing to undo";
    sucesos["strdup"] = Da(ENOMEM);
    Motivo(ENOMEM, DoRedir(2, "f"));
    close(0); // the number that what is opened would get
    for (int vez : {0, 1}) {
        EXPECT_EQ(DoRedir(2, "f"), 0);
        EXPECT_EQ(write(2, "x", 1), 1);
        if (vez == 1) close(copia + 2); // without its copy it stays
        EXPECT_EQ(UndoRedir(2), -vez);
        EXPECT_EQ(fcntl(0, F_GETFD), -1);
    }
    EXPECT_EQ(DescriptorRedireccion(copia + 3), 1);
    EXPECT_EQ(write(2, "y", 1), 1);
    EXPECT_EQ(LeerFichero("f"), "xxy");
    dup2(error, 2);
    ClearRedir();
}
