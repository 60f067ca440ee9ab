#include <pwd.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

constexpr unsigned kSinEntrada = 54321; // an id that no user database has

std::string Credenciales(unsigned real, unsigned efectiva) {
    const auto linea = [](const char *cual, unsigned uid) {
        const struct passwd *usuario = getpwuid(uid);
        return std::string("Credencial ") + cual + ": " + std::to_string(uid) + ", (" +
               (usuario ? usuario->pw_name : " ??????") + ")\n";
    };
    return linea("real", real) + linea("efectiva", efectiva);
}

TEST(Credentials, AnOrdinaryUserKeepsHisOwn) {
    const unsigned yo = getuid() == 0 ? kSinEntrada : getuid();
    Opciones o;
    o.uid = getuid() == 0 ? yo : 0;
    const std::string suyas = Credenciales(yo, yo);
    const std::string negada = "Imposible cambiar credencial: Operation not permitted\n";
    const std::pair<const char *, std::string> filas[] = {
        {"getuid x", suyas},
        {"uid -set", suyas},
        {"uid -x -l", suyas},
        {"setuid -5", "Valor no valido de la credencial -5\n"},
        {"uid -set -5", "Valor no valido de la credencial -5\n"},
        {"setuid -l nosuchuser", "Usuario no existente nosuchuser\n"},
        {"uid -set -l nosuchuser", "Usuario no existente nosuchuser\n"},
        {"uid -x 5", "uid [-get|-set] [-l] [id]\n"},
        {"setuid 0", negada},
        {"uid -set -l root", negada},
    };
    Sesion s(o);
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Credentials, RootChangesTheEffectiveUserAndComesBack) {
    if (getuid() != 0) GTEST_SKIP() << "only root may change to another user";
    Sesion s;
    EXPECT_EQ(s.Linea("uid -set 54321"), "");
    EXPECT_EQ(s.Linea("uid"), Credenciales(0, kSinEntrada));
    EXPECT_EQ(s.Linea("setuid -l root"), "");
    EXPECT_EQ(s.Linea("getuid"), Credenciales(0, 0));
}

} // namespace
