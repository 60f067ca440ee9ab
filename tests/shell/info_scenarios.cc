// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <fnmatch.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace {

using namespace escenario;

const std::string kDia = "[0-3][0-9]/[01][0-9]/[0-9][0-9][0-9][0-9]";
const std::string kHora = "[0-2][0-9]:[0-5][0-9]:[0-6][0-9]";

bool Casa(const std::string &texto, const std::string &patron) {
    return fnmatch(patron.c_str(), texto.c_str(), 0) == 0;
}

TEST(Info, AnswersAboutTheShellTheSystemAndTheDirectory) {
    DirectorioTemporal d;
    Sesion s;
    struct utsname u;
    uname(&u);
    const std::pair<std::string, std::string> filas[] = {
        {"authors", "Nombre del autor1: login del autor1\nNombre del autor2: login del autor2\n"},
        {"authors -n", "Nombre del autor1\nNombre del autor2\n"},
        {"pid -p", "Pid del padre del shell: " + std::to_string(getpid()) + "\n"},
        {"getpid foo", "Pid de shell: " + std::to_string(s.pid()) + "\n"},
        {"infosys", std::string(u.nodename) + " (" + u.machine + "), OS: " + u.sysname + "-" + u.release +
                        "-" + u.version + "\n"},
        {"chdir /nonexistent", "Imposible cambiar directorio: No such file or directory\n"},
        {"cd " + d.ruta(), ""},
        {"pwd", d.ruta() + "\n"},
        {"chroot", d.ruta() + "\n"},
        {"chroot /nonexistent", "Imposible cambiar directorio root: No such file or directory\n"},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    EXPECT_TRUE(Casa(s.Linea("date"), kHora + "\n" + kDia + "\n"));
    EXPECT_TRUE(Casa(s.Linea("fecha -d"), kDia + "\n"));
    EXPECT_TRUE(Casa(s.Linea("hora"), kHora + "\n"));
    EXPECT_TRUE(Casa(s.Linea("numserie"),
                     "numserie del shell 4.L.12 Fecha ejecutable: " + kDia + ", " + kHora + "\n"));
}

TEST(Info, LimitsAreDividedEvenWhenUnlimited) {
    Opciones o;
    o.antesDeExec = [] {
        const struct rlimit pila = {8192 * 1024, RLIM_INFINITY}, ficheros = {200, 300};
        setrlimit(RLIMIT_STACK, &pila);
        setrlimit(RLIMIT_NOFILE, &ficheros);
    };
    const std::string texto = Sesion(o).Linea("limits");
    EXPECT_TRUE(Casa(texto, "espacio direcciones: [0-9]* 4K pages(soft) [0-9]* 4K pages\n"
                            "espacio datos: [0-9]* Megabytes(soft) [0-9]* Megabytes\n"
                            "tamano de la pila: 8192 Kilobytes(soft) 18014398509481983 Kilobytes\n"
                            "conjunto residente: *\ntamano fichero: * Megabytes\n"
                            "ficheros abiertos: 200 ficheros(soft) 300 ficheros\n"))
        << texto;
}

TEST(Info, StartUpLinesAndTheWarning) {
    Opciones o;
    o.argumentos = {"-p"};
    EXPECT_TRUE(Ejecutar("", o).salida.starts_with("Iniciando shell..\nversion del shell 4.L.12 "));
    o.argumentos = {"otra", "cosa"};
    o.preload = WITH_SYSTEMD_SHIM;
    const std::string aviso = "Ufff!....Tu disribución de linux usa systemd: deberias usar otra cosa\n[1]"
                              "Muchas cosas en tu sistema no van a funcionar como deberian.[1].[1].[1]\n"
                              "systemd es una desgracia para el mundo informatico en general.[1].[1]\n"
                              "..y para  el software libre en particular.[1]\n"
                              "Espera 10 segundos que me mentalice de coexistir con "
                              "systemd.[1].[1].[1].[1].[1].[1].[1].[1].[1].[1]\n.[1]\n";
    EXPECT_TRUE(Ejecutar("", o).salida.starts_with(
        aviso + "Iniciando shell..\nEjecutar " + SHELL_PROGRAM +
        " -p para importar el path\n\nversion del shell 4.L.12 Fecha ejecutable: "));
}

} // namespace
