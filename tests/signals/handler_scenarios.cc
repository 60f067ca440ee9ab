#include "tests/driver/session.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <regex>

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

TEST(Handler, ShowsAndCountsEachRun) {
    Sesion s;
    EXPECT_EQ(s.Linea("sighandler -show -Frestart USR1 NADA INT -show"),
              "No existe senal NADA\nNo existe senal -show\n");
    for (int i = 1; i <= 3; i++) EXPECT_EQ(Provocar(&s, SIGUSR1).rfind(Recibida("USR1", i), 0), 0u);
    EXPECT_EQ(s.Linea("sigcount USR1 USR9 INT"), "  USR1=3\n  senal desconocida:USR9\n  INT=0\n");
    EXPECT_EQ(s.Linea("sigcount -zero USR1 USR9"), "");
    const std::string todas = s.Linea("contadorsenales");
    EXPECT_EQ(std::count(todas.begin(), todas.end(), '\n'), 31);
    EXPECT_EQ(todas.rfind("  HUP=0\n  INT=0\n", 0), 0u);
    EXPECT_NE(todas.find("  ABRT=0\n"), std::string::npos);
}

TEST(Handler, ResendsUpToTheLimit) {
    Sesion s;
    EXPECT_EQ(s.Linea("limitresend"), "limitresend: off\n");
    EXPECT_EQ(s.Linea("limitresend 5"), "");
    EXPECT_EQ(s.Linea("limitereenvios"), "limitresend: 5\n");
    s.Linea("sighandler -resend -show -Frestart USR2");
    Provocar(&s, SIGUSR2);
    for (int i = 2; i <= 5; i++) EXPECT_EQ(s.Esperar("\n").rfind(Recibida("USR2", i), 0), 0u);
    EXPECT_EQ(Provocar(&s, SIGUSR2).rfind(Recibida("USR2", 6), 0), 0u); // no re-send beyond the limit
    EXPECT_EQ(s.Linea("sigcount USR2"), "  USR2=6\n");
    s.Linea("limitresend nada");
    EXPECT_EQ(s.Linea("limitresend"), "limitresend: off\n");
}

TEST(Handler, NestedRunsGoDeeperIntoTheStack) {
    Sesion s;
    s.Linea("limitresend 3");
    s.Linea("sighandler -resend -show -Fnodefer -Frestart USR1");
    const std::string primera = Provocar(&s, SIGUSR1), segunda = s.Esperar("\n"), tercera = s.Esperar("\n");
    const auto marco = [](const std::string &linea) { return std::stoull(Direccion(linea), nullptr, 16); };
    EXPECT_GT(marco(primera), marco(segunda));
    EXPECT_GT(marco(segunda), marco(tercera));
}

TEST(Handler, TheOptionsReachTheInstallation) {
    Sesion s;
    s.Linea("sighandler -show -resend -sleep3 -Fonstack -Fnodefer -Fresethand -Frestart -maskQUIT -maskNADA "
            "TERM KILL");
    EXPECT_TRUE(
        std::regex_match(s.Linea("siginfo TERM"),
                         std::regex("       TERM: No Enmascarada 0x[0-9a-f]+ -show -resend -sleep:3 RESTART "
                                    "ONSTACK RESETHAND NODEFER \n\tmascara asociada QUIT \n")));
    EXPECT_EQ(s.Linea("siginfo KILL"), "       KILL: No Enmascarada SIG_DFL\n");
    s.Linea("sigaction -handler -sleep HUP");
    EXPECT_TRUE(std::regex_match(s.Linea("sigaction HUP"),
                                 std::regex("        HUP: No Enmascarada 0x[0-9a-f]+   -sleep:0 \n")));
    s.Linea("sigaction -ignore HUP");
    EXPECT_EQ(s.Linea("signal HUP"), "        HUP: No Enmascarada SIG_IGN\n");
    s.Linea("sigaction -default HUP");
    EXPECT_EQ(s.Linea("siginfo HUP"), "        HUP: No Enmascarada SIG_DFL\n");
    EXPECT_EQ(s.Linea("sigaction"), s.Linea("siginfo"));
    s.Linea("sighandler -Fresethand -show -Frestart QUIT");
    Provocar(&s, SIGQUIT);
    kill(s.pid(), SIGQUIT);
    const int estado = s.EsperarFin();
    EXPECT_TRUE(WIFSIGNALED(estado) && WTERMSIG(estado) == SIGQUIT);
}

TEST(Handler, WhatItSleepsHoldsTheShellUp) {
    Sesion s;
    s.Linea("sighandler -show -sleep1 -Frestart USR1");
    kill(s.pid(), SIGUSR1);
    const auto antes = std::chrono::steady_clock::now();
    s.Esperar("\n");
    s.Linea("pid"); // answered when the handler has slept its second
    EXPECT_GE(std::chrono::steady_clock::now() - antes, std::chrono::milliseconds(900));
    EXPECT_EQ(s.Linea("sigcount USR1"), "  USR1=1\n");
}

TEST(Handler, RunsOnTheAlternateStackAndNeedsLittleOfIt) {
    Sesion s;
    const std::string bloque = Direccion(s.Linea("malloc 16384"));
    ASSERT_NE(bloque, "");
    const unsigned long long base = std::stoull(bloque, nullptr, 16);
    char linea[64];
    snprintf(linea, sizeof linea, "sigaltstack 8192 %llx", base + 8192);
    s.Linea("memfill " + bloque + " 8192 'P'");
    EXPECT_EQ(s.Linea(linea), "");
    snprintf(linea, sizeof linea, "pila 8192 bytes en 0x%llx\n", base + 8192);
    EXPECT_EQ(s.Linea("sigaltstack"), linea);
    s.Linea("sighandler -show -Fonstack -Frestart USR1");
    const unsigned long long marco = std::stoull(Direccion(Provocar(&s, SIGUSR1)), nullptr, 16);
    EXPECT_TRUE(marco > base + 8192 && marco < base + 16384);
    const std::string debajo = s.Linea("memdump " + bloque + " 8192");
    EXPECT_EQ(std::count(debajo.begin(), debajo.end(), 'P'), 8192); // below the stack nothing was written
    EXPECT_NE(s.Linea("sigaltstack 100").find("Imposible establecer pila: "), std::string::npos);
    EXPECT_NE(s.Linea("sigaltstack -1").find("Imposible establecer pila: "), std::string::npos);
    EXPECT_NE(s.Linea("sigaltstack 65536 0").find("Imposible establecer pila: "), std::string::npos);
}

TEST(Handler, AStormOfSignalsLosesAndMixesNoLine) {
    Sesion s;
    s.Linea("sighandler -show -Frestart USR1");
    const pid_t objetivo = s.pid();
    const pid_t tormenta = fork();
    if (tormenta == 0) {
        for (int i = 0; i < 100'000; i++) kill(objetivo, SIGUSR1);
        _exit(0);
    }
    std::string todo;
    int lineas = 0;
    while (waitpid(tormenta, nullptr, WNOHANG) == 0) {
        todo += s.Linea("help -all");
        lineas++;
    }
    todo += s.Linea("help -all");
    lineas++;
    const std::string cuenta = s.Linea("sigcount USR1");
    static const std::regex aviso("Recibida senal USR1 [0-9]+ veces en 0x[0-9a-f]+\n");
    todo += cuenta;
    const auto avisos =
        std::distance(std::sregex_iterator(todo.begin(), todo.end(), aviso), std::sregex_iterator());
    EXPECT_NE(cuenta.find("  USR1=" + std::to_string(avisos) + "\n"), std::string::npos) << avisos << cuenta;
    std::string resto = std::regex_replace(todo, aviso, "");
    const std::string ayuda = LeerFichero(std::string(EXPECTED_DIR) + "/shell/expected/help_all_piped.txt");
    for (; lineas > 0; lineas--) {
        ASSERT_EQ(resto.rfind(ayuda, 0), 0u);
        resto.erase(0, ayuda.size());
    }
    EXPECT_EQ(resto, "  USR1=" + std::to_string(avisos) + "\n");
}

TEST(Handler, ASignalThatWasWaitingComesAfterAllThatWasPrinted) {
    DirectorioTemporal d;
    EscribirFichero(d / "avisa", "kill -USR1 $PPID\n");
    for (const bool fichero : {false, true}) {
        Opciones o;
        o.entradaFichero = o.salidaFichero = fichero;
        const Resultado r = Ejecutar("sighandler -show USR1\nsigmask USR1\nfg /bin/sh " + (d / "avisa") +
                                         "\nauthors -l\nsigunmask USR1\nauthors -n\n",
                                     o);
        const size_t antes = r.salida.find("login del autor2\n"),
                     aviso = r.salida.find("Recibida senal USR1 1 ");
        EXPECT_LT(antes, aviso);
        EXPECT_LT(aviso, r.salida.find("Nombre del autor2\n")) << r.salida;
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
    EXPECT_EQ(s.Linea("sigignore"), "  SENALES SIGNORADAS: USR2 \n");
    EXPECT_EQ(s.Linea("sigmask"), "  SENALES ENMASCARADAS: WINCH \n");
    s.Linea(
        "sighandler -show USR1"); // from here on output holds a signal off while it is written, and only then
    EXPECT_EQ(s.Linea("sigmask"), "  SENALES ENMASCARADAS: WINCH \n");
    s.Enviar(std::string("fg ") + SHELL_PROGRAM + "\n"); // nested: reads its input until `exit`
    s.Enviar("ppid\nsigignore\nsigmask\nsigdefault USR1\nexit\n");
    s.Esperar("Pid del padre del shell: " + std::to_string(s.pid()) + "\n");
    s.Esperar("  SENALES SIGNORADAS: USR2 \n");
    s.Esperar("  SENALES ENMASCARADAS: WINCH \n");
    s.EsperarPrompt();
}

} // namespace
