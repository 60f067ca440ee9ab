// SPDX-License-Identifier: MIT

#include <signal.h>
#include <sys/wait.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// Sends a signal and reads the line that the handler shows.
std::string Provocar(Sesion *s, int senal) {
    kill(s->pid(), senal);
    return s->Esperar("\n");
}

unsigned long Marco(const std::string &aviso) { return Valor(Direccion(aviso)); }

TEST(Handler, RunsNestedWithinItselfWhenItIsNotDeferred) {
    Sesion s;
    s.Linea("limitresend 3");
    s.Linea("sighandler -resend -show -Fnodefer -Frestart USR2");
    const unsigned long primera = Marco(Provocar(&s, SIGUSR2)), segunda = Marco(s.Esperar("\n"));
    EXPECT_TRUE(primera > segunda && segunda > Marco(s.Esperar("\n")));
    s.Seguir({{"sigcount USR2", "  USR2=3\n"}});
}

TEST(Handler, SleepsAndIsResetWhereItWasAskedTo) {
    Sesion s({.preload = WITH_SYSTEMD_SHIM}); // tells of what it sleeps
    s.Linea("sighandler -Fresethand -show -sleep1 -Frestart QUIT");
    Provocar(&s, SIGQUIT);
    s.Esperar("[1]");
    kill(s.pid(), SIGQUIT);
    EXPECT_TRUE(MuertoPor(s.EsperarFin(), SIGQUIT));
}

TEST(Handler, RunsOnTheAlternateStackAndNotBelowIt) {
    Sesion s;
    const std::string bloque = s.Dir("malloc 16384"), pila = Mas(bloque, 8192);
    s.Linea("memfill " + bloque + " 8192 'P'");
    s.Seguir(
        {{"sigaltstack 8192 " + pila.substr(2), ""}, {"sigaltstack", "pila 8192 bytes en " + pila + "\n"}});
    s.Linea("sighandler -show -Fonstack -Frestart USR1");
    const unsigned long marco = Marco(Provocar(&s, SIGUSR1));
    EXPECT_TRUE(marco > Valor(pila) && marco < Valor(pila) + 8192);
    EXPECT_EQ(Veces(s.Linea("memdump " + bloque + " 8192"), "P"),
              8192); // below the stack nothing was written
}

TEST(Handler, AStormOfSignalsLosesAndMixesNoLine) {
    Sesion s(
        {.antesDeExec = EstrecharSalida}); // the listing is written in many parts, with signals in between
    std::string ruta;
    for (int i = 0; i < 150; i++) {
        const std::string dir = std::to_string(i) + std::string(60, 'd');
        ruta += dir + "\n";
        s.Linea("search +" + dir);
    }
    s.Linea("sighandler -show -Frestart USR1 USR2");
    const pid_t tormenta = fork();
    if (tormenta == 0) {
        for (int i = 0; kill(s.pid(), i % 2 ? SIGUSR1 : SIGUSR2) == 0; i++) continue;
        _exit(0);
    }
    std::string todo, esperado;
    for (int i = 0, avisados = 0; i < 2000 && avisados < 1000;
         i++) { // the historic takes twice as many lines
        const std::string parte = s.Linea("search");
        avisados += Veces(parte, "\n") - 150;
        todo += parte;
        esperado += ruta;
    }
    kill(tormenta, SIGKILL);
    waitpid(tormenta, nullptr, 0);
    todo += s.Linea("sigcount USR1 USR2"); // behind the last of the notices
    int avisos[2] = {};
    std::string listado;
    for (size_t pos = 0, fin; (fin = todo.find('\n', pos)) != std::string::npos; pos = fin + 1) {
        const std::string linea = todo.substr(pos, fin + 1 - pos);
        const int cual = linea.starts_with("Recibida senal USR2 ");
        if (Casa(linea, std::string("Recibida senal ") + (cual ? "USR2 " : "USR1 ") +
                            std::to_string(avisos[cual] + 1) + " veces en 0x" + Direccion(linea).erase(0, 2) +
                            "\n"))
            avisos[cual]++;
        else
            listado += linea;
    }
    esperado += "  USR1=" + std::to_string(avisos[0]) + "\n  USR2=" + std::to_string(avisos[1]) + "\n";
    EXPECT_TRUE(listado == esperado) << avisos[0] << " " << avisos[1];
    s.Seguir({{"sigmask", "  SENALES ENMASCARADAS: \n"}}); // what was held off has been let go
}

TEST(Handler, ANoticeThatCannotBeWrittenIsTheLastWhereItWouldBringTheNext) {
    const Opciones o{.ficheros = true, .antesDeExec = Limitar<RLIMIT_FSIZE, 300>};
    EXPECT_EQ(Ejecutar("sighandler -show -Frestart XFSZ\nhelp -all\nexit\n", o).estado, 0);
}

TEST(Handler, ASignalThatWasWaitingComesAfterAllThatWasPrinted) {
    DirectorioTemporal d;
    EscribirFichero(d / "avisa", "for i in $(seq 500); do kill -USR1 $PPID; done; echo avisado\n");
    for (const bool ficheros : {false, true}) {
        const std::string salida = Salida(
            "sighandler -show -Frestart USR1\nsigmask USR1\nfg /bin/sh avisa\nauthors -l\nsigunmask USR1\n"
            "authors -n\nfg /bin/sh avisa\nauthors\n",
            {.directorio = d.ruta(), .ficheros = ficheros});
        // The second time the signals interrupt the wait for the program, which goes on.
        EXPECT_TRUE(Casa(salida,
                         "*=avisado\n=*login del autor2\n=*Recibida senal USR1 1 *Nombre del autor2\n=*"
                         "avisado\n*=*autor2: login del autor2\n="))
            << salida;
    }
    // The names are told before the call that lets the signal in, which ends the shell.
    EscribirFichero(d / "fin", "kill -TERM $PPID\n");
    const Resultado r =
        Ejecutar("sigmask TERM\n/bin/sh fin\nsigprocmask -unblock NADA TERM\n", {.directorio = d.ruta()});
    EXPECT_TRUE(MuertoPor(r.estado, SIGTERM) && r.salida.ends_with("Senal desconocida NADA\n")) << r.salida;
}

TEST(Handler, WithoutRestartEndsTheWaitForAProgramAndThePromptComesBack) {
    for (const char *linea : {"fg /bin/sh insiste", "pipe /bin/sh insiste % /bin/sh insiste"}) {
        Sesion s;
        EscribirFichero(s / "insiste", "until [ -e visto ]; do kill -USR1 $PPID || exit; done\n");
        s.Linea("usesignals on");
        s.Linea("sighandler USR1");
        s.Linea(linea); // the program goes on until it is told that the prompt has been seen
        EscribirFichero(s / "visto", "");
        s.Enviar("exit\n");
    }
}

TEST(Handler, DispositionsAndMasksGivenToTheShellStayAndAreInherited) {
    Sesion s({.antesDeExec = [] {
        signal(SIGUSR2, SIG_IGN);
        sigset_t bloqueada;
        sigemptyset(&bloqueada);
        sigaddset(&bloqueada, SIGWINCH);
        sigprocmask(SIG_BLOCK, &bloqueada, nullptr);
    }});
    s.Linea("sighandler -show USR1"); // held off while output is written, and only then
    s.Seguir({{"sigmask", "  SENALES ENMASCARADAS: WINCH \n"}});
    // Nested, with an environment of these two variables: reads its input until `exit`.
    s.Enviar(std::string("fg LD_PRELOAD=") + NO_SYSTEMD_SHIM + " ASAN_OPTIONS=verify_asan_link_order=0 " +
             SHELL_PROGRAM + "\nppid\nsigignore\nsigmask\nexit\n");
    const std::string salida = s.EsperarPrompt();
    EXPECT_TRUE(Casa(salida, "*Pid del padre del shell: " + std::to_string(s.pid()) +
                                 "\n*  SENALES SIGNORADAS: USR2 \n*"
                                 "  SENALES ENMASCARADAS: WINCH \n*"))
        << salida;
}

} // namespace
