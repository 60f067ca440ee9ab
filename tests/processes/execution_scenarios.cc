// SPDX-License-Identifier: MIT

#include <fnmatch.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// What a script prints after its line "prompt $".
std::string Salida(const std::string &guion, const Opciones &o = {}) {
    const std::string salida = Ejecutar("prompt $\n" + guion, o).salida;
    return salida.substr(salida.find('$'));
}

Opciones Ordinario() {
    Opciones o;
    o.uid = getuid() == 0 ? 54321 : 0;
    return o;
}

/// The user of the program may have no more than N processes.
template<rlim_t N> void LimitarProcesos() {
    const struct rlimit limite = {N, N};
    setrlimit(RLIMIT_NPROC, &limite);
}

TEST(Execution, EveryByteComesOnceAndInOrderWhateverTheInputAndTheOutput) {
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"authors -l", "login del autor1\nlogin del autor2\n"},
        {"fg /bin/nonexistent", "No ejecutado: No such file or directory\n"},
        {"fork", "ejecutando proceso [0-9]*\n"},
        {"/bin/echo hijo", "hijo\n"},
        {"pipe /bin/echo dos % /bin/cat", "dos\n"},
        {"exit", ""},
        {"/bin/echo padre", "padre\n"},
        {"execute /bin/nonexistent", "Imposible ejecutar: No such file or directory\n"},
        {"fork", "ejecutando proceso [0-9]*\n"},
        {"execute /bin/echo otro &", "otro &\n"},
        {"fg", "No ejecutado: Bad address\n"},
        {"pipe /bin/echo % /bin/nonexistent", ""}};
    for (const char *ultima : {"/bin/cat", "execute /bin/cat"}) {
        std::string guion, esperado;
        for (const auto &[linea, salida] : filas) {
            guion += linea + std::string("\n");
            esperado += std::string("$") + salida;
        }
        guion += ultima + std::string("\npid no es ya una linea del shell\nni esta");
        esperado += "$pid no es ya una linea del shell\nni esta";
        if (*ultima == '/') esperado += "$"; // the shell is still there
        for (int i = 0; i < 4; i++) {
            Opciones o;
            o.entradaFichero = i & 1;
            o.salidaFichero = i & 2;
            const std::string salida = Salida(guion, o);
            EXPECT_EQ(fnmatch(esperado.c_str(), salida.c_str(), 0), 0) << i << salida;
        }
    }
}

TEST(Execution, OnATerminalForkAndAForegroundProgramShareTheKeyboard) {
    SALTAR_SIN_TERMINALES();
    Terminal t;
    // What is sent, and what shows that the program is ready for the next. (The echo of the first does not
    // hold the prompt itself.)
    static constexpr std::pair<const char *, const char *> pasos[] = {
        {"prompt listo%%>\n", "listo%>"}, {"fork\n", "ejecutando proceso"}, {"", "listo%>"},
        {"/bin/cat\n", "/bin/cat\n"},     {"hola\n", "hola\nhola\n"},       {"\x04", "listo%>"}};
    for (const auto &[teclas, respuesta] : pasos) {
        t.Enviar(teclas);
        t.Esperar(respuesta);
    }
    t.Enviar("exit\n");
    EXPECT_EQ(t.Esperar("listo%>"), "exit\nlisto%>"); // the child has ended, the parent is there
    t.Enviar("exit\n");
    EXPECT_EQ(t.EsperarFin(), 0);
}

TEST(Execution, RedirectsAtTheGivenWordsAndCutsTheLineThere) {
    DirectorioTemporal dir;
    Opciones o;
    o.directorio = dir.ruta();
    EscribirFichero(dir / "largo", "0123456789\n");
    // Which descriptors from 3 on are open: only what the redirection left.
    EscribirFichero(dir / "df", "for d in 3 4 5 6 7; do (eval \"echo $d >&$d\") 2>/dev/null; done\n");
    EXPECT_EQ(Salida("fg /bin/echo a b >nuevo c\n"
                     "fg /bin/echo x >largo\n"
                     "/bin/cat <largo\n"
                     "fg /bin/echo a > out\n"
                     "fg /bin/echo a <no/hay >mixto\n"
                     "fg /bin/sh df >abiertos\n"
                     "fg /bin/nonexistent >mudo *mudo2\n"
                     "execute nohay <no/hay >salida *error\n" // leaves the shell redirected
                     "authors -l\n",
                     o),
              "$$$x\n23456789\n"
              "$a > out\n"
              "$Imposible redireccionar 0 a no/hay: No such file or directory\n"
              "$$$Imposible redireccionar 0 a no/hay: No such file or directory\n");
    static constexpr std::pair<const char *, const char *> ficheros[] = {
        {"nuevo", "a b\n"},
        {"largo", "x\n23456789\n"},
        {"mixto", "a <no/hay\n"},
        {"abiertos", "3\n"},
        {"mudo2", "No ejecutado: No such file or directory\n"},
        {"salida", "$login del autor1\nlogin del autor2\n$"},
        {"error", "Imposible ejecutar: No such file or directory\n"},
    };
    for (const auto &[nombre, texto] : ficheros) EXPECT_EQ(LeerFichero(dir / nombre), texto) << nombre;
}

TEST(Execution, WorksWithTheStandardDescriptorsClosed) {
    DirectorioTemporal dir;
    Opciones o;
    o.directorio = dir.ruta();
    o.antesDeExec = [] {
        close(1);
        close(2);
    };
    Ejecutar("fg /bin/echo a >uno *dos\npipe /bin/echo b % /bin/cat >tres\n", o);
    EXPECT_EQ(LeerFichero(dir / "uno"), "a\n");
    EXPECT_EQ(LeerFichero(dir / "tres"), "b\n");
}

TEST(Execution, EnvironmentAndPriorityWordsAndTheAsCommands) {
    std::string justas, todas;
    for (int i = 0; i < 127; i++) {
        justas += "V" + std::to_string(i) + "=x ";
        todas += "V" + std::to_string(i) + "=x\n";
    }
    const std::pair<std::string, std::string> filas[] = {
        {"X=1 CASA Z= /usr/bin/env", "X=1\nCASA=/c\nZ=\n"},
        {"fg NULLENV /usr/bin/env", ""},
        {"fg " + justas + "/usr/bin/env", todas},
        {"fg X=1 " + justas + "/usr/bin/env", "No ejecutado: Argument list too long\n"},
        {"fg /usr/bin/nice @19 x", "19\n"},
        {"fg /bin/sh -c nice @18 </dev/null @17", "18\n"},
        {"fgpri 18 /bin/echo @5 x", "@5 x\n"},
        {"priority 1 5", "imposible cambiar la prioridad del proceso  1:Operation not permitted\n"},
        {"fgas root /bin/true",
         "Imposible cambiar credencial: Operation not permitted\nNo ejecutado: Operation not permitted\n"},
        {"executepri -20 /bin/true",
         "Imposible cambiar prioridad: Permission denied\nImposible ejecutar: Permission denied\n"},
    };
    Opciones o = Ordinario();
    o.entorno = {"CASA=/c"};
    Sesion s(o);
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    EXPECT_EQ(s.Linea("priority 0 16"), "");
    EXPECT_EQ(s.Linea("priority"), "Prioridad del proceso " + std::to_string(s.pid()) + " es 16\n");
}

TEST(Execution, LooksProgramsUpInItsOwnPathAndNowhereElse) {
    DirectorioTemporal dir;
    EscribirFichero(dir / "guion", "echo no\n"); // no first line that names an interpreter
    chmod((dir / "guion").c_str(), 0755);
    std::string justa = "/";
    while (justa.size() < 1017) justa += "./";
    justa += "bin"; // with "/sh" 1023 characters, the most that is tried
    Opciones o;
    o.directorio = dir.ruta();
    o.argumentos = {"-p"};
    o.entorno = {"PATH=/nohay::/bin:" + std::string(3000, 'd')};
    Sesion s(o);
    const std::pair<std::string, std::string> filas[] = {
        {"search", "/nohay\n/bin\n" + std::string(2047 - strlen("/nohay::/bin:"), 'd') + "\n"},
        {"search -clear", ""},
        {"echo", "No ejecutado: No such file or directory\n"},
        {"guion", "No ejecutado: Exec format error\n"},
        {"search -add " + dir.ruta(), ""},
        {"search +/" + justa, ""},
        {"search +" + justa, ""},
        {"search +/bin", ""},
        {"where guion", dir / "guion" + "\n"},
        {"where sh", justa + "/sh\n"},
        {"where help", "help: comando interno help\n"},
        {"echo a", "a\n"},
        {"search -/" + justa, ""},
        {"search -del nada", "Imposible realizar operacion -del: No such file or directory\n"},
        {"path", dir.ruta() + "\n" + justa + "\n/bin\n"},
        {"search -/bin", ""},
        {"echo a", "No ejecutado: No such file or directory\n"},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Execution, AForkThatFailsIsToldAndLeavesNothing) {
    const std::string fallo = "Imposible crear proceso: Resource temporarily unavailable\n";
    Opciones o = Ordinario();
    if (o.uid != 0) o.uid = 20000 + getpid() % 40000; // whose processes no other test adds to
    o.antesDeExec = LimitarProcesos<1>;
    {
        Sesion s(o);
        for (const char *linea : {"back /bin/true", "pipe /bin/true % /bin/true", "fg nohay &"})
            EXPECT_EQ(s.Linea(linea), fallo) << linea;
        EXPECT_EQ(s.Linea("fork"), "");
        EXPECT_EQ(s.Linea("listjobs"), "");
        s.Enviar("execute /bin/sh -s\n"
                 "for d in 3 4 5 6; do { true >&$d; } 2>/dev/null && echo $d; done; echo fin\n");
        EXPECT_EQ(s.Esperar("fin\n"), "fin\n");
    }
    if (o.uid == 0) return; // this user has other processes
    o.antesDeExec = LimitarProcesos<2>;
    Sesion s(o);
    EXPECT_EQ(s.Linea("backpipe /bin/true % /bin/cat"), fallo);
    EXPECT_TRUE(s.Linea("listjobs").ends_with(") /bin/true\n")); // the first alone is kept
}

} // namespace
