#include "tests/driver/session.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <regex>

namespace {

using namespace escenario;

bool MuertoPor(int estado, int senal) { return WIFSIGNALED(estado) && WTERMSIG(estado) == senal; }

const char kRestaurado[] =
    "Manejada senal %s (%d) en 0x[0-9a-f]+\nShell restaurado a su estado al pricipio de main\n";

testing::AssertionResult Restaura(const std::string &texto, const char *nombre, int senal) {
    char patron[200];
    snprintf(patron, sizeof patron, kRestaurado, nombre, senal);
    std::string escapado = patron;
    escapado.replace(escapado.find('('), 1, "\\(");
    escapado.replace(escapado.find(')'), 1, "\\)");
    if (std::regex_search(texto, std::regex(escapado))) return testing::AssertionSuccess();
    return testing::AssertionFailure() << texto;
}

TEST(Recovery, AFaultWithoutProtectionEndsTheShellAfterAllThatWasPrinted) {
    SALTAR_SI_SANEADO();
    for (const bool fichero : {false, true}) {
        Opciones o;
        o.entradaFichero = o.salidaFichero = fichero;
        const struct {
            const char *orden;
            int senal;
        } filas[] = {
            {"segmentation", SIGSEGV}, {"fpe", SIGFPE}, {"memfill 0 1", SIGSEGV}, {"memdump 10", SIGSEGV}};
        for (const auto &f : filas) {
            const Resultado r = Ejecutar(std::string("prompt =\nauthors -l\n") + f.orden + "\npid\n", o);
            EXPECT_TRUE(MuertoPor(r.estado, f.senal)) << f.orden;
            EXPECT_NE(r.salida.find("=login del autor1\nlogin del autor2\n="), std::string::npos) << f.orden;
        }
    }
}

TEST(Recovery, ReturnsToTheLoopOnceAndAgainAfterUnmasking) {
    SALTAR_SI_SANEADO();
    Sesion s;
    EXPECT_EQ(s.Linea("protectsegv"), "Protegiendo de SEGV, el programa volvera al princiio de main\n"
                                      "El manejador se instala con SA_RESTART, solo se ejecuta una vez\n");
    EXPECT_TRUE(Restaura(s.Linea("segmentation"), "SEGV", SIGSEGV));
    EXPECT_EQ(s.Linea("sigmask"), "  SENALES ENMASCARADAS: SEGV \n");
    s.Linea("sigunmask SEGV");
    for (const char *orden :
         {"memfill 0", "memdump 10 30", "memcopy 0 8", "memcopy 8 0", "stringcopy 10 hola"}) {
        EXPECT_TRUE(Restaura(s.Linea(orden), "SEGV", SIGSEGV)) << orden;
        s.Linea("sigunmask SEGV");
    }
    s.Linea("protectfpe");
    EXPECT_TRUE(Restaura(s.Linea("fpe"), "FPE", SIGFPE));
    EXPECT_EQ(s.Linea("sigmask"), "  SENALES ENMASCARADAS: FPE \n");
    EXPECT_NE(s.Linea("historic -1").find("->historic -1\n"), std::string::npos);
    s.Enviar("fpe\n"); // blocked now: the second fault of its kind
    EXPECT_TRUE(MuertoPor(s.EsperarFin(), SIGFPE));
}

TEST(Recovery, AStackOverflowIsSurvivedOnAnAlternateStack) {
    SALTAR_SI_SANEADO();
    Sesion s;
    s.Linea("malloc 100");
    s.Linea("sigaltstack 65536");
    s.Linea("protectsegv");
    s.Enviar("recurse 1000000\n");
    s.Esperar("parametro:1000000(");
    EXPECT_TRUE(Restaura(s.EsperarPrompt(), "SEGV", SIGSEGV));
    EXPECT_NE(s.Linea("malloc").find("100 "), std::string::npos);
    s.Linea("sigunmask SEGV");
    EXPECT_TRUE(Restaura(s.Linea("recurse 1000000"), "SEGV", SIGSEGV));
}

TEST(Loop, EndsWithTheFirstInterruptAndTheShellWithTheSecond) {
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("loop -user -sys nada\n");
    t.Esperar("Iniciando bucle infinito...");
    t.Enviar("\x03");
    t.Esperar("  Manejando SIGINT\nterminado\n");
    t.Enviar("siginfo INT\n");
    t.Esperar("        INT: No Enmascarada SIG_DFL\n");
    t.Enviar("\x03");
    EXPECT_TRUE(MuertoPor(t.EsperarFin(), SIGINT));
}

TEST(UseSignals, DecidesWhetherAnInterruptedReadEndsTheShell) {
    const std::string cola = "\tEsto condiciona si el shell termina cuando la lectura de techado da error\n";
    {
        Sesion s;
        EXPECT_EQ(s.Linea("usesignals"), "El shell esta no preparado para el uso de senales\n" + cola);
        s.Linea("sighandler -show USR1");
        // A signal that comes just before the read does not interrupt it; one of several does.
        do kill(s.pid(), SIGUSR1);
        while (s.Esperar("\n", true).ends_with("\n"));
        EXPECT_EQ(s.EsperarFin(), 0);
    }
    Sesion s;
    EXPECT_EQ(s.Linea("usesignals quiza"), "parametro no valido: quiza\n");
    EXPECT_EQ(s.Linea("usarsenales on"), "");
    EXPECT_EQ(s.Linea("usesignals"), "El shell esta preparado para el uso de senales\n" + cola);
    s.Linea("sighandler -show USR1");
    s.Enviar("authors"); // half a line: the interruption loses none of it
    std::string todo;    // until a prompt shows that a read was interrupted
    for (int i = 0; i < 10'000 && todo.find('>') == std::string::npos; i++) {
        kill(s.pid(), SIGUSR1);
        todo += s.Esperar("\n");
    }
    EXPECT_NE(todo.find('>'), std::string::npos);
    s.Enviar(" -l\n");
    s.Esperar("login del autor1\nlogin del autor2\n");
    s.EsperarPrompt();
    EXPECT_EQ(s.Terminar(), 0); // a pipe that has ended gives nothing more
}

TEST(UseSignals, ATerminalMayEndTenTimesInARow) {
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("prompt listo%%>\n");
    t.Esperar("listo%>");
    t.Enviar("usesignals on\n");
    t.Esperar("listo%>");
    for (int i = 0; i < 9; i++) {
        t.Enviar("\x04");
        t.Esperar("listo%>");
    }
    t.Enviar("authors -l\n"); // a line begins the count anew
    t.Esperar("login del autor2\nlisto%>");
    for (int i = 0; i < 9; i++) {
        t.Enviar("\x04");
        t.Esperar("listo%>");
    }
    t.Enviar("\x04");
    EXPECT_EQ(t.EsperarFin(), 0);
}

} // namespace
