// SPDX-License-Identifier: MIT

#include <pwd.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

std::string Credenciales(unsigned real, unsigned efectiva) {
    const auto linea = [](const char *cual, unsigned uid) {
        const struct passwd *usuario = getpwuid(uid);
        return std::string("Credencial ") + cual + ": " + std::to_string(uid) + ", (" +
               (usuario ? usuario->pw_name : " ??????") + ")\n";
    };
    return linea("real", real) + linea("efectiva", efectiva);
}

TEST(Credentials, AnOrdinaryUserKeepsHisOwnAndRootComesBack) {
    Opciones o;
    o.uid = getuid() == 0 ? 54321 : 0; // an id that no user database has
    const unsigned yo = getuid() == 0 ? o.uid : getuid();
    const std::string negada = "Imposible cambiar credencial: Operation not permitted\n";
    const std::pair<const char *, std::string> filas[] = {
        {"getuid x", Credenciales(yo, yo)},
        {"setuid -5", "Valor no valido de la credencial -5\n"},
        {"uid -set -l nosuchuser", "Usuario no existente nosuchuser\n"},
        {"uid -x 5", "uid [-get|-set] [-l] [id]\n"},
        {"setuid 0", negada},
        {"uid -set -l root", negada},
    };
    Sesion s(o);
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    if (getuid() != 0) return; // only root may change to another user
    Sesion root;
    EXPECT_EQ(root.Linea("uid -set 54321"), "");
    EXPECT_EQ(root.Linea("uid"), Credenciales(0, 54321));
    EXPECT_EQ(root.Linea("setuid -l root"), "");
    EXPECT_EQ(root.Linea("getuid"), Credenciales(0, 0));
}

} // namespace
