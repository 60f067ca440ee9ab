// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace {

using namespace escenario;

std::string Recibida(const char *senal, int veces) {
    return std::string("Recibida senal ") + senal + " " + std::to_string(veces) + " veces en 0x";
}

/// Sends a signal and reads the line that the handler shows.
std::string Provocar(Sesion *s, int senal) {
    kill(s->pid(), senal);
    return s->Esperar("\n");
}

unsigned long long Marco(const std::string &aviso) { return std::stoull(Direccion(aviso), nullptr, 16); }

TEST(Handler, ShowsCountsAndResendsUpToTheLimit) {
    Sesion s;
    EXPECT_EQ(s.Linea("sighandler -show -Frestart USR1 NADA INT -show"),
              "No existe senal NADA\nNo existe senal -show\n");
    for (int i = 1; i <= 3; i++) EXPECT_TRUE(Provocar(&s, SIGUSR1).starts_with(Recibida("USR1", i)));
    EXPECT_EQ(s.Linea("sigcount USR1 USR9 INT"), "  USR1=3\n  senal desconocida:USR9\n  INT=0\n");
    EXPECT_EQ(s.Linea("sigcount -zero USR1 USR9"), "");
    const std::string todas = s.Linea("contadorsenales");
    EXPECT_EQ(std::count(todas.begin(), todas.end(), '\n'), 31);
    EXPECT_TRUE(todas.starts_with("  HUP=0\n  INT=0\n")) << todas;
    EXPECT_EQ(s.Linea("limitresend"), "limitresend: off\n");
    EXPECT_EQ(s.Linea("limitresend 3"), "");
    s.Linea("sighandler -resend -show -Fnodefer -Frestart USR2");
    const std::string primera = Provocar(&s, SIGUSR2), segunda = s.Esperar("\n"), tercera = s.Esperar("\n");
    EXPECT_TRUE(tercera.starts_with(Recibida("USR2", 3))) << tercera;
    EXPECT_TRUE(Marco(primera) > Marco(segunda) && Marco(segunda) > Marco(tercera)); // one within the other
    EXPECT_EQ(s.Linea("sigcount USR2"), "  USR2=3\n"); // no re-send beyond the limit
    EXPECT_TRUE(Provocar(&s, SIGUSR2).starts_with(Recibida("USR2", 4)));
    EXPECT_EQ(s.Linea("limitereenvios"), "limitresend: 3\n");
    EXPECT_EQ(s.Linea("limitresend nada"), "");
    EXPECT_EQ(s.Linea("limitresend"), "limitresend: off\n");
}

TEST(Handler, DispositionsMasksAndOptionsAreShownAndChanged) {
    Opciones o;
    o.preload = WITH_SYSTEMD_SHIM; // tells of what it sleeps
    Sesion s(o);
    const std::string todas = s.Linea("siginfo");
    EXPECT_EQ(std::count(todas.begin(), todas.end(), '\n'), 31);
    EXPECT_TRUE(todas.starts_with("      HUP: No Enmascarada SIG_DFL\n")) << todas;
    s.Linea("sigaction -handler -sleep HUP");
    const std::string manejador = Direccion(s.Linea("siginfo HUP"));
    const std::pair<const char *, std::string> filas[] = {
        {"siginfo INT int", "        INT: No Enmascarada SIG_DFL\n  senal desconocida:int\n"},
        {"sigignore INT KILL nada", ""},
        {"sigignore", "  SENALES SIGNORADAS: INT \n"},
        {"sigdefault INT", ""},
        {"sigignore", "  SENALES SIGNORADAS: \n"},
        {"sigmask USR1 ALRM nada", ""},
        {"sigmask", "  SENALES ENMASCARADAS: USR1 ALRM \n"},
        {"siginfo ALRM", "       ALRM: Enmascarada    SIG_DFL\n"},
        {"sigprocmask -block -setmask HUP nada", "Senal desconocida nada\n"},
        {"sigprocmask TERM", ""},
        {"sigunmask", "  SENALES ENMASCARADAS: HUP TERM \n"},
        {"sigprocmask -unblock HUP TERM", ""},
        {"sigaction HUP", "        HUP: No Enmascarada " + manejador + "   -sleep:0 \n"},
        {"sigaction -ignore HUP", ""},
        {"signal HUP", "        HUP: No Enmascarada SIG_IGN\n"},
        {"sighandler -show -resend -sleep3 -Fonstack -Fnodefer -Fresethand -Frestart -maskQUIT -maskNADA "
         "TERM KILL",
         ""},
        {"siginfo KILL", "       KILL: No Enmascarada SIG_DFL\n"},
        {"siginfo TERM", "       TERM: No Enmascarada " + manejador +
                             " -show -resend -sleep:3 RESTART ONSTACK RESETHAND NODEFER \n"
                             "\tmascara asociada QUIT \n"},
        {"sighandler -Fresethand -show -sleep2 -Frestart QUIT", ""},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    Provocar(&s, SIGQUIT);
    s.Esperar("[2]");
    kill(s.pid(), SIGQUIT);
    const int estado = s.EsperarFin();
    EXPECT_TRUE(WIFSIGNALED(estado) && WTERMSIG(estado) == SIGQUIT);
}

TEST(Handler, RunsOnTheAlternateStackAndNotBelowIt) {
    Sesion s;
    const std::string bloque = Direccion(s.Linea("malloc 16384"));
    const unsigned long long pila = std::stoull(bloque, nullptr, 16) + 8192;
    char linea[64];
    s.Linea("memfill " + bloque + " 8192 'P'");
    snprintf(linea, sizeof linea, "sigaltstack 8192 %llx", pila);
    EXPECT_EQ(s.Linea(linea), "");
    snprintf(linea, sizeof linea, "pila 8192 bytes en 0x%llx\n", pila);
    EXPECT_EQ(s.Linea("sigaltstack"), linea);
    s.Linea("sighandler -show -Fonstack -Frestart USR1");
    const unsigned long long marco = Marco(Provocar(&s, SIGUSR1));
    EXPECT_TRUE(marco > pila && marco < pila + 8192);
    const std::string debajo = s.Linea("memdump " + bloque + " 8192");
    EXPECT_EQ(std::count(debajo.begin(), debajo.end(), 'P'), 8192); // below the stack nothing was written
    for (const char *imposible : {"sigaltstack 100", "sigaltstack -1", "sigaltstack 65536 0"})
        EXPECT_NE(s.Linea(imposible).find("Imposible establecer pila: "), std::string::npos) << imposible;
}

TEST(Handler, AStormOfSignalsLosesAndMixesNoLine) {
    Opciones o;
    o.salidaEstrecha = true; // the listing is written in many parts, with signals in between
    Sesion s(o);
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
    long avisados = 0;
    for (int i = 0; i < 2000 && avisados < 1000; i++) { // the historic takes twice as many lines
        const std::string parte = s.Linea("search");
        avisados += std::count(parte.begin(), parte.end(), '\n') - 150;
        todo += parte;
        esperado += ruta;
    }
    kill(tormenta, SIGKILL);
    waitpid(tormenta, nullptr, 0);
    const std::string cuenta = s.Linea("sigcount USR1 USR2"); // behind the last of the notices
    todo += cuenta;
    int avisos[2] = {};
    std::string listado;
    for (size_t pos = 0, fin; (fin = todo.find('\n', pos)) != std::string::npos; pos = fin + 1) {
        const std::string linea = todo.substr(pos, fin + 1 - pos);
        const int cual = linea.starts_with("Recibida senal USR2 ");
        if (linea == Recibida(cual ? "USR2" : "USR1", avisos[cual] + 1) + Direccion(linea).erase(0, 2) + "\n")
            avisos[cual]++;
        else
            listado += linea;
    }
    esperado += "  USR1=" + std::to_string(avisos[0]) + "\n  USR2=" + std::to_string(avisos[1]) + "\n";
    EXPECT_TRUE(listado == esperado) << avisos[0] << " " << avisos[1] << cuenta;
    EXPECT_EQ(s.Linea("sigmask"), "  SENALES ENMASCARADAS: \n"); // what was held off has been let go
}

TEST(Handler, ANoticeThatCannotBeWrittenIsTheLastWhereItWouldBringTheNext) {
    Opciones o;
    o.salidaFichero = o.erroresAparte = true;
    o.antesDeExec = [] {
        const struct rlimit corto = {300, 300};
        setrlimit(RLIMIT_FSIZE, &corto);
    };
    EXPECT_EQ(Ejecutar("sighandler -show -Frestart XFSZ\nhelp -all\nexit\n", o).estado, 0);
    // Only of the two signals that a refusal sends; any other shows itself again as soon as it can.
    DirectorioTemporal d;
    EscribirFichero(d / "avisa", "kill -USR1 $PPID\n");
    EXPECT_NE(Ejecutar("sighandler -show -Frestart USR1\ninitredir\nredout /dev/full\nfg /bin/sh avisa\n"
                       "redout -reset\nfg /bin/sh avisa\n",
                       {.directorio = d.ruta()})
                  .salida.find("Recibida senal USR1 2 veces"),
              std::string::npos);
}

TEST(Handler, ASignalThatWasWaitingComesAfterAllThatWasPrinted) {
    DirectorioTemporal d;
    EscribirFichero(d / "avisa", "for i in $(seq 500); do kill -USR1 $PPID; done; echo avisado\n");
    for (const bool fichero : {false, true}) {
        Opciones o;
        o.directorio = d.ruta();
        o.entradaFichero = o.salidaFichero = fichero;
        const std::string salida =
            Ejecutar("sighandler -show -Frestart USR1\nsigmask USR1\nfg /bin/sh avisa\n"
                     "authors -l\nsigunmask USR1\nauthors -n\n"
                     "fg /bin/sh avisa\nauthors\n",
                     o)
                .salida;
        size_t pos = 0; // the second time the signals interrupt the wait for the program, which goes on
        for (const char *texto : {"avisado\n", "login del autor2\n", "Recibida senal USR1 1 ",
                                  "Nombre del autor2\n", "avisado\n", "autor2: login del autor2\n"}) {
            pos = salida.find(texto, pos);
            ASSERT_NE(pos, std::string::npos) << texto << salida;
        }
    }
    // The names are told before the call that lets the signal in, which ends the shell.
    EscribirFichero(d / "fin", "kill -TERM $PPID\n");
    const Resultado r =
        Ejecutar("sigmask TERM\n/bin/sh fin\nsigprocmask -unblock NADA TERM\n", {.directorio = d.ruta()});
    EXPECT_TRUE(WIFSIGNALED(r.estado) && r.salida.ends_with("Senal desconocida NADA\n")) << r.salida;
}

TEST(Handler, WithoutRestartEndsTheWaitForAProgramAndThePromptComesBack) {
    DirectorioTemporal d;
    EscribirFichero(d / "insiste", "until [ -e visto ]; do kill -USR1 $PPID; done\n");
    for (const char *linea : {"fg /bin/sh insiste", "pipe /bin/sh insiste % /bin/sh insiste"}) {
        unlink((d / "visto").c_str());
        Sesion s({.directorio = d.ruta()});
        s.Linea("usesignals on");
        s.Linea("sighandler USR1");
        s.Linea(linea); // the program goes on until it is told that the prompt has been seen
        EscribirFichero(d / "visto", "");
        s.Enviar("exit\n");
        EXPECT_EQ(s.EsperarFin(), 0) << linea;
    }
}

TEST(Handler, DispositionsAndMasksGivenToTheShellStayAndAreInherited) {
    Opciones o;
    o.antesDeExec = [] {
        signal(SIGUSR2, SIG_IGN);
        sigset_t bloqueada;
        sigemptyset(&bloqueada);
        sigaddset(&bloqueada, SIGWINCH);
        sigprocmask(SIG_BLOCK, &bloqueada, nullptr);
    };
    Sesion s(o);
    s.Linea("sighandler -show USR1"); // held off while output is written, and only then
    EXPECT_EQ(s.Linea("sigmask"), "  SENALES ENMASCARADAS: WINCH \n");
    // Nested, with an environment of these two variables: reads its input until `exit`.
    s.Enviar(std::string("fg LD_PRELOAD=") + NO_SYSTEMD_SHIM + " ASAN_OPTIONS=verify_asan_link_order=0 " +
             SHELL_PROGRAM + "\n");
    s.Enviar("ppid\nsigignore\nsigmask\nexit\n");
    s.Esperar("Pid del padre del shell: " + std::to_string(s.pid()) + "\n");
    s.Esperar("  SENALES SIGNORADAS: USR2 \n");
    s.Esperar("  SENALES ENMASCARADAS: WINCH \n");
    s.EsperarPrompt();
}

} // namespace
