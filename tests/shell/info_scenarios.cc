#include "tests/driver/session.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <regex>

namespace {

using namespace escenario;

bool Casa(const std::string &texto, const char *patron) {
    return std::regex_match(texto, std::regex(patron));
}

TEST(Info, DatesAndAuthors) {
    Sesion s;
    EXPECT_TRUE(Casa(s.Linea("date"), "\\d\\d:\\d\\d:\\d\\d\n\\d\\d/\\d\\d/\\d{4}\n"));
    EXPECT_TRUE(Casa(s.Linea("fecha -d"), "\\d\\d/\\d\\d/\\d{4}\n"));
    EXPECT_TRUE(Casa(s.Linea("hora"), "\\d\\d:\\d\\d:\\d\\d\n"));
    EXPECT_EQ(s.Linea("date -x"), "");
    EXPECT_EQ(s.Linea("authors"),
              "Nombre del autor1: login del autor1\nNombre del autor2: login del autor2\n");
    EXPECT_EQ(s.Linea("authors -n"), "Nombre del autor1\nNombre del autor2\n");
    EXPECT_EQ(s.Linea("authors -x"), "");
}

TEST(Info, ProcessAndSystem) {
    Sesion s;
    const std::string padre = "Pid del padre del shell: " + std::to_string(getpid()) + "\n";
    EXPECT_EQ(s.Linea("ppid"), padre);
    EXPECT_EQ(s.Linea("pid -p"), padre);
    EXPECT_EQ(s.Linea("getpid foo"), "Pid de shell: " + std::to_string(s.pid()) + "\n");
    struct utsname u;
    uname(&u);
    EXPECT_EQ(s.Linea("infosys"), std::string(u.nodename) + " (" + u.machine + "), OS: " + u.sysname + "-" +
                                      u.release + "-" + u.version + "\n");
    EXPECT_TRUE(Casa(s.Linea("numserie"), "numserie del shell 4.L.12 Fecha ejecutable: "
                                          "\\d\\d/\\d\\d/\\d{4}, \\d\\d:\\d\\d:\\d\\d\n"));
}

TEST(Info, DirectoriesAndTheirErrors) {
    DirectorioTemporal d;
    Sesion s;
    const std::string motivo = std::string(strerror(ENOENT)) + "\n";
    EXPECT_EQ(s.Linea("chdir /nonexistent"), "Imposible cambiar directorio: " + motivo);
    EXPECT_EQ(s.Linea("cd " + d.ruta()), "");
    EXPECT_EQ(s.Linea("pwd"), d.ruta() + "\n");
    EXPECT_EQ(s.Linea("carpeta"), d.ruta() + "\n");
    EXPECT_EQ(s.Linea("chroot"), d.ruta() + "\n");
    EXPECT_EQ(s.Linea("chroot /nonexistent"), "Imposible cambiar directorio root: " + motivo);
}

TEST(Info, LimitsAreDividedEvenWhenUnlimited) {
    Opciones o;
    o.antesDeExec = [] {
        const struct rlimit pila = {8192 * 1024, RLIM_INFINITY}, ficheros = {200, 300};
        setrlimit(RLIMIT_STACK, &pila);
        setrlimit(RLIMIT_NOFILE, &ficheros);
    };
    Sesion s(o);
    const std::string texto = s.Linea("limits");
    EXPECT_NE(texto.find("\ntamano de la pila: 8192 Kilobytes(soft) 18014398509481983 Kilobytes\n"),
              std::string::npos)
        << texto;
    EXPECT_NE(texto.find("\nficheros abiertos: 200 ficheros(soft) 300 ficheros\n"), std::string::npos)
        << texto;
    EXPECT_TRUE(Casa(texto, "espacio direcciones: \\d+ 4K pages\\(soft\\) \\d+ 4K pages\n"
                            "espacio datos: \\d+ Megabytes\\(soft\\) \\d+ Megabytes\ntamano.*\n"
                            "conjunto residente: .*\ntamano fichero: .* Megabytes\nficheros abiertos.*\n"));
}

TEST(Info, StartUpLinesAndTheWarning) {
    Opciones o;
    o.argumentos = {"otra", "cosa"};
    const std::string cola = std::string("Iniciando shell..\nEjecutar ") + SHELL_PROGRAM +
                             " -p para importar el path\n\nversion del shell 4.L.12 Fecha ejecutable: ";
    EXPECT_EQ(Ejecutar("", o).salida.compare(0, cola.size(), cola), 0);
    o.argumentos = {"-p"};
    EXPECT_EQ(Ejecutar("", o).salida.rfind("Iniciando shell..\nversion del shell 4.L.12 ", 0), 0u);
    o.argumentos = {};
    o.preload = WITH_SYSTEMD_SHIM;
    const std::string aviso = "Ufff!....Tu disribución de linux usa systemd: deberias usar otra cosa\n[1]"
                              "Muchas cosas en tu sistema no van a funcionar como deberian.[1].[1].[1]\n"
                              "systemd es una desgracia para el mundo informatico en general.[1].[1]\n"
                              "..y para  el software libre en particular.[1]\n"
                              "Espera 10 segundos que me mentalice de coexistir con "
                              "systemd.[1].[1].[1].[1].[1].[1].[1].[1].[1].[1]\n.[1]\n";
    EXPECT_EQ(Ejecutar("", o).salida.substr(0, aviso.size() + cola.size()), aviso + cola);
}

} // namespace
