// SPDX-License-Identifier: MIT

// The commands that show the user ids and change the effective one. The real one stays, and with it the way
// back.

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "environment/commands.h"
#include "environment/credentials.h"
#include "files/owner_names.h"

namespace {

void MostrarCredenciales() {
    const uid_t real = getuid();
    const uid_t efectiva = geteuid();
    Imprimir("Credencial real: %d, (%s)\n", static_cast<int>(real), NombreUsuario(real));
    Imprimir("Credencial efectiva: %d, (%s)\n", static_cast<int>(efectiva), NombreUsuario(efectiva));
}

void Establecer(uid_t uid) {
    if (seteuid(uid) == -1) Imprimir("Imposible cambiar credencial: %s\n", strerror(errno));
}

void EstablecerLogin(const char *login) {
    const uid_t uid = UidUsuario(login);
    if (uid == static_cast<uid_t>(-1))
        Imprimir("Usuario no existente %s\n", login);
    else
        Establecer(uid);
}

void EstablecerNumero(const char *palabra) {
    const int uid = atoi(palabra);
    if (uid < 0)
        Imprimir("Valor no valido de la credencial %s\n", palabra);
    else
        Establecer(static_cast<uid_t>(uid));
}

} // namespace

void Cmd_getuid(char *[]) { MostrarCredenciales(); }

void Cmd_setuid(char *args[]) {
    const bool porLogin = args[0] && strcmp(args[0], "-l") == 0;
    if (!args[0] || (porLogin && !args[1]))
        MostrarCredenciales();
    else if (porLogin)
        EstablecerLogin(args[1]);
    else
        EstablecerNumero(args[0]);
}

void Cmd_uid(char *args[]) {
    if (!args[0] || strcmp(args[0], "-get") == 0 || !args[1]) {
        MostrarCredenciales();
        return;
    }
    const bool porLogin = strcmp(args[1], "-l") == 0;
    if (porLogin && !args[2])
        MostrarCredenciales();
    else if (strcmp(args[0], "-set") != 0)
        EscribirTexto("uid [-get|-set] [-l] [id]\n");
    else if (porLogin)
        EstablecerLogin(args[2]);
    else
        EstablecerNumero(args[1]);
}
