// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace escenario;

bool MuertoPor(int estado, int senal) { return WIFSIGNALED(estado) && WTERMSIG(estado) == senal; }

/// Expects that a line brings a fault and the shell back, the signal blocked; unblocks it.
void EsperarVuelta(Sesion *s, const std::string &linea, const std::string &senal) {
    const std::string texto = s->Linea(linea);
    const size_t aviso = texto.rfind("Manejada senal " + senal + " en 0x");
    ASSERT_NE(aviso, std::string::npos) << linea;
    EXPECT_EQ(texto.substr(texto.find('\n', aviso)), "\nShell restaurado a su estado al pricipio de main\n");
    const std::string nombre = senal.substr(0, senal.find(' '));
    EXPECT_EQ(s->Linea("sigmask"), "  SENALES ENMASCARADAS: " + nombre + " \n");
    s->Linea("sigunmask " + nombre);
}

TEST(Recovery, AFaultWithoutProtectionEndsTheShellAfterAllThatWasPrinted) {
    SALTAR_SI_SANEADO();
    static constexpr std::pair<const char *, int> filas[] = {
        {"segmentation", SIGSEGV}, {"fpe", SIGFPE}, {"memfill 0 1", SIGSEGV}};
    for (const bool fichero : {false, true}) {
        Opciones o;
        o.entradaFichero = o.salidaFichero = fichero;
        for (const auto &[orden, senal] : filas) {
            const Resultado r = Ejecutar(std::string("prompt =\nauthors -l\n") + orden + "\npid\n", o);
            EXPECT_TRUE(MuertoPor(r.estado, senal)) << orden;
            EXPECT_NE(r.salida.find("=login del autor1\nlogin del autor2\n="), std::string::npos) << orden;
        }
    }
}

TEST(Recovery, ReturnsToTheLoopOnceAndAgainAfterUnmasking) {
    SALTAR_SI_SANEADO();
    Sesion s;
    EXPECT_EQ(s.Linea("protectsegv"), "Protegiendo de SEGV, el programa volvera al princiio de main\n"
                                      "El manejador se instala con SA_RESTART, solo se ejecuta una vez\n");
    for (const char *orden : {"segmentation", "memfill 0", "memdump 10 30", "memcopy 8 0", "stringcopy 10 x"})
        EsperarVuelta(&s, orden, "SEGV (11)");
    s.Linea("malloc 100");
    s.Linea("sigaltstack 65536");
    s.Linea("protectsegv"); // on the alternate stack a full one is survived, too
    for (int i = 0; i < 2; i++) EsperarVuelta(&s, "recurse 1000000", "SEGV (11)");
    EXPECT_NE(s.Linea("malloc").find("            100 "), std::string::npos);
    s.Linea("protectfpe");
    EsperarVuelta(&s, "fpe", "FPE (8)");
    s.Linea("sigmask FPE");
    s.Enviar("fpe\n"); // blocked: as a second fault of its kind would be
    EXPECT_TRUE(MuertoPor(s.EsperarFin(), SIGFPE));
}

TEST(Recovery, AJumpOutOfAHandlersWriteLetsTheHeldSignalsGo) {
    if (access("/proc/self/stat", R_OK) == -1) GTEST_SKIP() << "no /proc to tell when the program sleeps";
    Opciones o;
    o.salidaEstrecha = true;
    Sesion s(o);
    s.Linea("protectsegv");
    s.Linea("limitresend 150"); // more notices than the pipe holds
    s.Linea("sighandler -show -resend -Frestart USR1");
    s.Linea("sighandler -show -Frestart USR2");
    kill(s.pid(), SIGUSR1);
    s.EsperarEscrituraParada(3968);
    kill(s.pid(), SIGSEGV);
    s.Esperar("Shell restaurado a su estado al pricipio de main\n");
    s.EsperarPrompt();
    // The handlers that were left behind keep their own signals blocked, and no other.
    s.Enviar("sigmask\n");
    s.Esperar("  SENALES ENMASCARADAS: ");
    const std::string bloqueadas = s.Esperar("\n");
    EXPECT_TRUE(bloqueadas == "USR1 SEGV \n" || bloqueadas == "SEGV \n") << bloqueadas;
}

TEST(Recovery, AJumpOutOfAWriteThatWaitsPrintsEachByteOnce) {
    if (access("/proc/self/stat", R_OK) == -1) GTEST_SKIP() << "no /proc to tell when the program sleeps";
    Sesion s({.salidaEstrecha = true});
    s.Linea("protectsegv");
    const std::string volcado = "memdump " + Direccion(s.Linea("malloc 5000")) + " 5000";
    const std::string texto = s.Linea(volcado);
    s.Enviar(volcado + "\n");
    s.EsperarEscrituraParada(1); // pieces go into an empty page only
    kill(s.pid(), SIGSEGV);
    const std::string salida = s.EsperarPrompt();
    const std::string antes = salida.substr(0, salida.find("Manejada senal SEGV"));
    EXPECT_TRUE(antes.size() > 4096 && texto.starts_with(antes)) << salida;
}

TEST(Recovery, AFaultInAChildBeforeItsProgramEndsTheChild) {
    SALTAR_SI_SANEADO();
    Sesion s;
    s.Linea("protectsegv");
    s.Linea("sighandler -show SIGBUS");
    s.Linea("memfill " + Direccion(s.Linea("showenv -addr")) + " 8 'A'"); // the first entry leads nowhere
    const std::string pid = s.Linea("pid");
    for (const char *linea : {"ls", "fg ls", "back ls", "pipe ls % ls", "fgpri 1 ls", "mem -pmap"}) {
        EXPECT_EQ(s.Linea(linea), "") << linea;
        EXPECT_EQ(s.Linea("pid"), pid) << linea;
    }
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
    Sesion frio;
    EXPECT_EQ(frio.Linea("usesignals"), "El shell esta no preparado para el uso de senales\n" + cola);
    frio.Linea("sighandler -show USR1");
    // A signal that comes just before the read does not interrupt it; one of several does.
    do kill(frio.pid(), SIGUSR1);
    while (frio.Esperar("\n", true).ends_with("\n"));
    EXPECT_EQ(frio.EsperarFin(), 0);
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
    // A pipe that has ended gives nothing more; a terminal may end nine times in a row.
    EXPECT_EQ(Ejecutar("usesignals on\n").estado, 0);
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("prompt listo%%>\nusesignals on\n");
    for (int vuelta = 0; vuelta < 2; vuelta++) {
        t.Enviar("authors -l\n"); // a line begins the count anew
        t.Esperar("login del autor2\nlisto%>");
        for (int i = 0; i < 9; i++) {
            t.Enviar("\x04");
            t.Esperar("listo%>");
        }
    }
    t.Enviar("\x04");
    EXPECT_EQ(t.EsperarFin(), 0);
}

} // namespace
