// SPDX-License-Identifier: MIT

#include <fnmatch.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The pid at the start of the last line of a listing.
pid_t UltimoPid(const std::string &lista) {
    const size_t antes = lista.rfind('\n', lista.size() - 2);
    return atoi(lista.c_str() + (antes == std::string::npos ? 0 : antes + 1));
}

/// Lists until the listing has the form `patron`: the shell learns of its children only when it looks.
std::string ListarHasta(Sesion *s, const std::string &patron) {
    std::string lista;
    for (int i = 0; i < 5000; i++) {
        lista = s->Linea("listjobs");
        if (fnmatch(patron.c_str(), lista.c_str(), 0) == 0) return lista;
        poll(nullptr, 0, 1);
    }
    ADD_FAILURE() << "never listed \"" << patron << "\": " << lista;
    return lista;
}

TEST(Jobs, FollowAProcessThatIsStoppedContinuedAndKilled) {
    Sesion s;
    EXPECT_EQ(s.Linea("back NULLENV /bin/sleep 100 @1 x"), "");
    const pid_t pid =
        UltimoPid(ListarHasta(&s, " *[0-9] * p=* [12][0-9][0-9][0-9]/[01][0-9]/[0-3][0-9] "
                                  "[0-2][0-9]:[0-5][0-9]:* ACTIVO (000) NULLENV /bin/sleep 100 @1 x\n"));
    ASSERT_GT(pid, 1);
    char parado[32];
    snprintf(parado, sizeof parado, "* PARADO (%03d) *", SIGSTOP);
    kill(pid, SIGSTOP);
    ListarHasta(&s, parado);
    kill(pid, SIGCONT);
    ListarHasta(&s, "* ACTIVO (000) *");
    s.Enviar("job -fg " + std::to_string(pid) + "\n");
    kill(pid, SIGTERM);
    EXPECT_EQ(s.EsperarPrompt(), "Proceso " + std::to_string(pid) + " terminado por la senal TERM\n");
    s.Linea("back /bin/sleep 100");
    kill(UltimoPid(s.Linea("listjobs")), SIGTERM);
    const std::string final = ListarHasta(&s, "* p=-1 * SENALADO (TERM) *");
    EXPECT_EQ(s.Linea("deljobs -sig -term"), final);
}

TEST(Jobs, ASignalEndsTheWaitForOne) {
    Sesion s;
    s.Linea("usesignals on");
    s.Linea("sighandler -show USR1");
    s.Linea("back /bin/sleep 100");
    const pid_t pid = UltimoPid(s.Linea("listjobs"));
    s.Enviar("job -fg " + std::to_string(pid) + "\n");
    std::string todo; // until a prompt shows that a signal has ended the wait
    for (int i = 0; i < 10'000 && todo.find('>') == std::string::npos; i++) {
        kill(s.pid(), SIGUSR1);
        todo += s.Esperar("\n");
    }
    EXPECT_NE(todo.find('>'), std::string::npos);
    EXPECT_EQ(kill(pid, SIGKILL), 0);
}

TEST(Jobs, EndWithTheirStatusAndLeaveTheListWhenAsked) {
    DirectorioTemporal dir;
    EscribirFichero(dir / "sal3", "exit 3\n");
    Sesion s;
    s.Linea("/bin/sh " + (dir / "sal3") + " & x");
    // Removed by the state of the previous look: whatever the process has done, its record is still there.
    const std::string pid = std::to_string(UltimoPid(s.Linea("deljobs -term")));
    const std::string lista = ListarHasta(&s, "* TERMINADO (003) /bin/sh */sal3\n");
    EXPECT_EQ(s.Linea("job -fg " + pid), "Proceso " + pid + " pid ya esta finalizado\n");
    EXPECT_EQ(s.Linea("job " + pid), lista);
    EXPECT_EQ(s.Linea("job 1"), lista);
    s.Linea("fork");
    EXPECT_EQ(s.Linea("listjobs"), ""); // the jobs are the parent's
    EXPECT_EQ(s.Linea("exit"), "");
    EXPECT_EQ(s.Linea("deljobs -term"), "");
    s.Linea("backas nosuchuser /bin/true");
    ListarHasta(&s, "* uid -000001 p=-1 *");
    EXPECT_EQ(s.Linea("deljobs -clear"), "");
}

TEST(Pipes, JoinTwoProgramsInTheForegroundAndInTheBackground) {
    DirectorioTemporal dir;
    Opciones o;
    o.directorio = dir.ruta();
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"pipe /bin/echo hola % /usr/bin/wc -c", "5\n"},
        {"pipe /bin/echo a % b % /bin/cat", "a\n"},
        {"pipe /bin/echo desviado >out % /bin/cat", ""},
        {"/bin/cat out", "desviado\n"},
        {"pipe NULLENV /usr/bin/env % V=1 /usr/bin/env", "V=1\n"},
        {"pipe /bin/echo x <no/hay % /bin/cat",
         "Imposible redireccionar 0 a no/hay: No such file or directory\nx <no/hay\n"},
        {"pipe nohay % nohay", ""},
        {"concat & /bin/echo % /bin/cat", "pipe prog1 args .. % prog2 args ..\n"},
        {"listjobs", ""},
    };
    Sesion s(o);
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    s.Linea("pipe /bin/true % /bin/true x & y");
    s.Linea("backpipe /bin/true % nohay &");
    ListarHasta(&s, "*) /bin/true\n*) /bin/true x\n*) /bin/true\n* TERMINADO (255) nohay &\n");
    o.antesDeExec = [] {
        const struct rlimit cuatro = {4, 4};
        setrlimit(RLIMIT_NOFILE, &cuatro);
    };
    Sesion apretada(o);
    EXPECT_EQ(apretada.Linea("backpipe /bin/true % /bin/true"), "");
    EXPECT_EQ(apretada.Linea("listjobs"), "");
    EXPECT_EQ(apretada.Linea("/bin/echo sigue"), "sigue\n"); // its loader needs the one descriptor left
}

} // namespace
