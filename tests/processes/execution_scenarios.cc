#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// What a script prints after its line "prompt $".
std::string Salida(const std::string &guion, const Opciones &o = {}) {
    const std::string salida = Ejecutar("prompt $\n" + guion, o).salida;
    return salida.substr(salida.find('$'));
}

Opciones Ordinario(long maxProcesos) {
    Opciones o;
    o.uid = getuid() == 0 ? 54321 : 0;
    o.maxProcesos = maxProcesos;
    return o;
}

TEST(Execution, EveryByteComesOnceAndInOrderWhateverTheInputAndTheOutput) {
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"authors -l", "login del autor1\nlogin del autor2\n"},
        {"/bin/echo uno", "uno\n"},
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
    t.Enviar("prompt listo%%>\n"); // the echo of the line does not hold the prompt itself
    t.Esperar("listo%>");
    t.Enviar("fork\n");
    t.Esperar("ejecutando proceso");
    t.Esperar("listo%>");
    t.Enviar("/bin/cat\n");
    t.Esperar("/bin/cat\n");
    t.Enviar("hola\n");
    EXPECT_EQ(t.Esperar("hola\nhola\n"), "hola\nhola\n");
    t.Enviar("\x04");
    t.Esperar("listo%>");
    t.Enviar("exit\n");
    EXPECT_EQ(t.Esperar("listo%>"), "exit\nlisto%>");
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
                     "fg /bin/echo a > out\n"
                     "fg /bin/cat <vacio\n"
                     "/bin/cat <largo\n"
                     "fg /bin/echo a <no/hay >mixto\n"
                     "fg /bin/cat nohay *error\n"
                     "fg /bin/sh df\n"
                     "fg /bin/sh df >abiertos\n"
                     "fg /bin/nonexistent >mudo *mudo2\n",
                     o),
              "$$$a > out\n"
              "$$x\n23456789\n"
              "$Imposible redireccionar 0 a no/hay: No such file or directory\n"
              "$$$$$");
    EXPECT_EQ(LeerFichero(dir / "nuevo"), "a b\n");
    EXPECT_EQ(LeerFichero(dir / "largo"), "x\n23456789\n");
    EXPECT_EQ(LeerFichero(dir / "mixto"), "a <no/hay\n");
    EXPECT_EQ(LeerFichero(dir / "error"), "/bin/cat: nohay: No such file or directory\n");
    EXPECT_EQ(LeerFichero(dir / "abiertos"), "3\n");
    EXPECT_EQ(LeerFichero(dir / "mudo2"), "No ejecutado: No such file or directory\n");
    struct stat st;
    EXPECT_EQ(stat((dir / "vacio").c_str(), &st), 0);
    EXPECT_NE(st.st_mode & S_IXUSR, 0u);
}

TEST(Execution, AFailedExecuteLeavesTheShellRedirected) {
    DirectorioTemporal dir;
    Opciones o;
    o.directorio = dir.ruta();
    EXPECT_EQ(Salida("execute nohay <no/hay >salida *error\nauthors -l\n", o),
              "$Imposible redireccionar 0 a no/hay: No such file or directory\n");
    EXPECT_EQ(LeerFichero(dir / "salida"), "$login del autor1\nlogin del autor2\n$");
    EXPECT_EQ(LeerFichero(dir / "error"), "Imposible ejecutar: No such file or directory\n");
}

TEST(Execution, WorksWithTheStandardDescriptorsClosed) {
    DirectorioTemporal dir;
    EscribirFichero(dir / "g", "fg /bin/echo a >uno *dos\npipe /bin/echo b % /bin/cat >tres\n");
    Opciones o;
    o.directorio = dir.ruta();
    o.entradaFichero = true;
    o.antesDeExec = [] {
        close(1);
        close(2);
    };
    Ejecutar(LeerFichero(dir / "g"), o);
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
        {"fg CASA /usr/bin/env", "CASA=/c\n"},
        {"X=1 CASA Z= /usr/bin/env", "X=1\nCASA=/c\nZ=\n"},
        {"fg NULLENV /usr/bin/env", ""},
        {"fg NULLENV", "No ejecutado: Bad address\n"},
        {"fg CASA", "No ejecutado: Bad address\n"},
        {"fg /bin/echo CASA X=1", "CASA X=1\n"},
        {"fg " + justas + "/usr/bin/env", todas},
        {"fg X=1 " + justas + "/usr/bin/env", "No ejecutado: Argument list too long\n"},
        {"execute X=1 " + justas + "/usr/bin/env", "Imposible ejecutar: Argument list too long\n"},
        {"fg /usr/bin/nice @19 x", "19\n"},
        {"fg /bin/sh -c nice @18 <nada @17", "18\n"},
        {"fgpri 18 /bin/echo @5 x", "@5 x\n"},
        {"fgpri 18 /usr/bin/nice", "18\n"},
        {"fg @5", "No ejecutado: No such file or directory\n"},
        {"fg NULLENV @5 /bin/echo", "No ejecutado: Bad address\n"},
        {"priority 1 5", "imposible cambiar la prioridad del proceso  1:Operation not permitted\n"},
        {"priority 99999999", "Imposible obtener prioridad de proceso 99999999: No such process\n"},
        {"fgas root /bin/true",
         "Imposible cambiar credencial: Operation not permitted\nNo ejecutado: Operation not permitted\n"},
        {"executeas nosuchuser /bin/true", "Imposible cambiar credencial: No such file or directory\n"
                                           "Imposible ejecutar: No such file or directory\n"},
        {"executepri -20 /bin/true",
         "Imposible cambiar prioridad: Permission denied\nImposible ejecutar: Permission denied\n"},
        {"executepri 17", "Imposible ejecutar: Bad address\n"},
    };
    DirectorioTemporal dir;
    chmod(dir.ruta().c_str(), 0777);
    Opciones o = Ordinario(-1);
    o.directorio = dir.ruta();
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
    Opciones o;
    o.directorio = dir.ruta();
    o.argumentos = {"-p"};
    o.entorno = {"PATH=/nohay::/bin"};
    Sesion s(o);
    const std::pair<std::string, std::string> filas[] = {
        {"search", "/nohay\n/bin\n"},
        {"search -path", "Importados 2 directorios en la ruta de busqueda\n"},
        {"search -clear", ""},
        {"echo", "No ejecutado: No such file or directory\n"},
        {"guion", "No ejecutado: Exec format error\n"},
        {"search -add", "Imposible realizar operacion -add: Bad address\n"},
        {"search -del", "Imposible realizar operacion -del: No such file or directory\n"},
        {"search -/bin", "Imposible realizar operacion -/bin: No such file or directory\n"},
        {"search x", "Argumento incorrecto x\n"},
        {"search -add " + dir.ruta(), ""},
        {"search +/bin", ""},
        {"path", dir.ruta() + "\n/bin\n"},
        {"where guion", dir / "guion" + "\n"},
        {"where ./guion", "./guion\n"},
        {"where help", "help: comando interno help\n"},
        {"echo a", "a\n"},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Execution, AForkThatFailsIsToldAndLeavesNothing) {
    const std::string fallo = "Imposible crear proceso: Resource temporarily unavailable\n";
    Sesion s(Ordinario(1));
    for (const char *linea : {"/bin/true", "back /bin/true", "pipe /bin/true % /bin/true",
                              "backpipe /bin/true % /bin/true", "fg nohay &"})
        EXPECT_EQ(s.Linea(linea), fallo) << linea;
    EXPECT_EQ(s.Linea("fork"), "");
    EXPECT_EQ(s.Linea("listjobs"), "");
    EXPECT_EQ(s.Linea("pid"), "Pid de shell: " + std::to_string(s.pid()) + "\n");
    s.Enviar(
        "execute /bin/sh -s\nfor d in 3 4 5 6; do { true >&$d; } 2>/dev/null && echo $d; done; echo fin\n");
    EXPECT_EQ(s.Esperar("fin\n"), "fin\n");
}

TEST(Execution, WhenOnlyTheSecondOfAPipeFailsTheFirstIsKept) {
    if (getuid() != 0) GTEST_SKIP() << "needs a user with no other process";
    const std::string fallo = "Imposible crear proceso: Resource temporarily unavailable\n";
    Sesion s(Ordinario(2));
    EXPECT_EQ(s.Linea("pipe /bin/true % /bin/cat"), fallo);
    EXPECT_EQ(s.Linea("listjobs"), "");
    EXPECT_EQ(s.Linea("backpipe /bin/true % /bin/cat"), fallo);
    const std::string lista = s.Linea("listjobs");
    EXPECT_TRUE(lista.find(") /bin/true\n") == lista.size() - 12) << lista;
}

} // namespace
