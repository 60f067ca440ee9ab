// SPDX-License-Identifier: MIT

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Recovery, AFaultWithoutProtectionEndsTheShellAfterAllThatWasPrinted) {
    SALTAR_SI_SANEADO();
    static constexpr struct {
        const char *orden;
        int senal;
        const char *final;
    } filas[] = {{"segmentation", SIGSEGV, "autor2\n="},
                 {"fpe", SIGFPE, "autor2\n="},
                 {"protectfpe\nfpe\nfpe", SIGFPE, "a su estado al pricipio de main\n="}, // blocked by then
                 {"memdump 0", SIGSEGV, "Volcando 25 bytes desde la direccion (nil)\n"},
                 {"memfill xyz 5 1 2", SIGSEGV, "el byte   (01) a partir de la direccion (nil)\n"},
                 {"memcopy 0 0 8", SIGSEGV, "autor2\n="},
                 {"stringcopy 0x10 hola", SIGSEGV, "autor2\n="}};
    for (const bool ficheros : {false, true})
        for (const auto &[orden, senal, final] : filas) {
            const Resultado r =
                Ejecutar(std::string("prompt =\nauthors -l\n") + orden + "\npid\n", {.ficheros = ficheros});
            EXPECT_TRUE(MuertoPor(r.estado, senal) && r.salida.ends_with(final)) << orden << r.salida;
        }
}

TEST(Recovery, AJumpOutOfAHandlersWriteLetsTheHeldSignalsGo) {
    SALTAR_SIN_PROC(); // to tell when the program sleeps
    Sesion s({.antesDeExec = EstrecharSalida});
    for (const char *linea : {"protectsegv", "sigdefault TERM", "limitresend 150", // more than the pipe holds
                              "sighandler -show -resend -Frestart USR1", "sighandler -show -Frestart HUP"})
        s.Linea(linea);
    kill(s.pid(), SIGUSR1);
    s.EsperarEscrituraParada(3968);
    EXPECT_TRUE(Contiene(LeerFichero("/proc/" + std::to_string(s.pid()) + "/status"),
                         "\nSigBlk:\t0000000000000201\n"));
    kill(s.pid(), SIGSEGV);
    s.Esperar("Shell restaurado a su estado al pricipio de main\n");
    s.EsperarPrompt();
    // The handlers that were left behind keep their own signals blocked, and no other.
    s.Enviar("sigmask\n");
    s.Esperar("  SENALES ENMASCARADAS: ");
    const std::string bloqueadas = s.Esperar("\n");
    EXPECT_TRUE(bloqueadas == "USR1 SEGV \n" || bloqueadas == "SEGV \n") << bloqueadas;
    s.EsperarPrompt();
    for (const char *linea : {"protectfpe", "sigmask HUP", "fpe"}) s.Linea(linea); // a jump from elsewhere
    EXPECT_TRUE(Contiene(s.Linea("sigmask"), "HUP"));
}

TEST(Recovery, AJumpOutOfAWriteThatWaitsPrintsEachByteOnce) {
    SALTAR_SIN_PROC(); // to tell when the program sleeps
    Sesion s({.antesDeExec = EstrecharSalida});
    s.Linea("protectsegv");
    const std::string volcado = "memdump " + s.Dir("malloc 5000") + " 5000";
    const std::string texto = s.Linea(volcado);
    s.Enviar(volcado + "\n");
    s.EsperarEscrituraParada(1); // pieces go into an empty page only
    kill(s.pid(), SIGSEGV);
    const std::string salida = s.EsperarPrompt();
    const std::string antes = salida.substr(0, salida.find("Manejada senal SEGV"));
    EXPECT_TRUE(antes.size() > 4096 && texto.starts_with(antes)) << salida;
}

TEST(Recovery, AJumpOutOfAWriteToATerminalPrintsEachByteOnce) {
    SALTAR_SIN_PROC();
    SALTAR_SIN_TERMINALES();
    std::string linea = "siginfo", texto;
    for (int i = 1000; i < 1800; i++) {
        linea += " " + std::to_string(i);
        texto += "  senal desconocida:" + std::to_string(i) + "\r\n";
    }
    Terminal t;
    t.Enviar("fg /bin/stty -echo onlcr\n"); // carriage returns: of a piece only a part may find room
    t.Esperar("listo%>");
    t.Enviar("protectsegv\n");
    t.Esperar("listo%>");
    t.Enviar(linea + "\n");
    t.EsperarEscrituraParada(4000);
    kill(t.pid(), SIGSEGV);
    EXPECT_EQ(t.Esperar("Manejada"), texto + "listo%>Manejada");
    t.Esperar("listo%>");
}

TEST(Loop, GoesRoundUntilTheFirstInterruptAndTheSecondEndsTheShell) {
    Sesion s({.preload = WITH_SYSTEMD_SHIM}); // a sign for each pause
    s.Enviar("loop -user -dly -sys\n");
    s.Esperar("Iniciando bucle infinito...[1][1]");
    kill(s.pid(), SIGINT);
    s.Esperar("  Manejando SIGINT\n");
    EXPECT_TRUE(s.EsperarPrompt().ends_with("terminado\n"));
    kill(s.pid(), SIGINT);
    EXPECT_TRUE(MuertoPor(s.EsperarFin(), SIGINT));
}

TEST(UseSignals, DecidesWhetherAnInterruptedReadEndsTheShell) {
    // A signal that comes just before the read does not interrupt it; one of several does.
    Sesion frio;
    frio.Linea("sighandler USR1");
    siginfo_t fin = {};
    for (int i = 0; i < 10'000 && fin.si_pid == 0; i++) {
        kill(frio.pid(), SIGUSR1);
        poll(nullptr, 0, 1);
        waitid(P_PID, static_cast<id_t>(frio.pid()), &fin, WEXITED | WNOHANG | WNOWAIT);
    }
    EXPECT_EQ(fin.si_pid, frio.pid());
    Sesion s;
    s.Linea("usesignals on");
    s.Linea("sighandler -show USR1");
    s.Enviar("authors"); // half a line: the interruption loses none of it
    std::string todo;    // until a prompt shows that a read was interrupted
    for (int i = 0; i < 10'000 && !Contiene(todo, kMarca); i++) {
        kill(s.pid(), SIGUSR1);
        todo += s.Esperar("\n");
    }
    EXPECT_TRUE(Contiene(todo, kMarca));
    s.Enviar(" -l\n");
    s.Esperar("login del autor1\nlogin del autor2\n");
    // A pipe that has ended gives nothing more; a terminal may end nine times in a row.
    EXPECT_EQ(Ejecutar("usesignals on\n").estado, 0);
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("usesignals on\n");
    for (int vuelta = 0; vuelta < 2; vuelta++) {
        t.Enviar("authors -l\n"); // a line begins the count anew
        t.Esperar("login del autor2\nlisto%>");
        for (int i = 0; i < 9; i++) {
            t.Enviar("\x04");
            t.Esperar("listo%>");
        }
    }
    t.Enviar("\x04");
    std::string resto;
    t.EsperarFin(&resto);
    EXPECT_EQ(resto, "");
}

} // namespace
