// SPDX-License-Identifier: MIT

#include <poll.h>
#include <signal.h>

#include <climits>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The pid at the start of the last line of a listing.
pid_t UltimoPid(const std::string &lista) {
    const size_t antes = lista.rfind('\n', lista.size() - 2);
    const pid_t pid = atoi(lista.c_str() + (antes == std::string::npos ? 0 : antes + 1));
    EXPECT_GT(pid, 1) << lista;
    return pid > 1 ? pid : INT_MAX; // nobody is signalled in its place
}

/// Lists until the listing has the form `patron`: the shell learns of its children only when it looks.
std::string ListarHasta(Sesion *s, const std::string &patron, const std::string &linea = "listjobs") {
    std::string lista;
    for (int i = 0; i < 2000; i++) { // the historic takes no more than twice as many lines
        lista = s->Linea(linea);
        if (Casa(lista, patron)) return lista;
        poll(nullptr, 0, 5);
    }
    ADD_FAILURE() << "never listed \"" << patron << "\": " << lista;
    return lista;
}

TEST(Jobs, FollowAProcessThatIsStoppedContinuedAndKilled) {
    Sesion s;
    const time_t antes = time(nullptr);
    s.Linea("back NULLENV /bin/sleep 100 @18 x");
    const std::string lista = ListarHasta(&s, "* p=18 * ACTIVO (000) NULLENV /bin/sleep 100 @18 x\n");
    EXPECT_TRUE(DeAhora(lista, antes, " %Y/%m/%d %H:%M:")) << lista;
    s.Seguir({{"deljobs", lista}, {"deljobs -all", lista}, {"job -fg", lista}});
    const pid_t pid = UltimoPid(lista);
    const std::string numero = std::to_string(pid);
    EXPECT_EQ(getsid(pid), pid) << "a session of its own";
    kill(pid, SIGSTOP);
    ListarHasta(&s, "* PARADO (0" + std::to_string(SIGSTOP) + ") *");
    kill(pid, SIGCONT);
    ListarHasta(&s, "* ACTIVO (000) *");
    s.Enviar("job -fg " + numero + "\n");
    kill(pid, SIGTERM);
    EXPECT_EQ(s.EsperarPrompt(), "Proceso " + numero + " terminado por la senal TERM\n");
    s.Linea("back /bin/sleep 100");
    kill(UltimoPid(s.Linea("listjobs")), SIGTERM);
    const std::string final = ListarHasta(&s, "* p=-1 * SENALADO (TERM) *");
    s.Seguir({{"deljobs -sig -term", final},
              {"deljobs x -sig", final},
              {"job -fg " + std::to_string(UltimoPid(final)), "~Proceso * pid ya esta finalizado\n"},
              {"deljobs -term -sig", ""}});
}

TEST(Jobs, ASignalEndsTheWaitForOne) {
    SALTAR_SI(kSaneado, "the sanitizers make calls of their own");
    Sesion s({.entorno = {"FALLAR=waitpid", "VEZ=1", "INFORME=/dev/null"},
              .preload = NO_SYSTEMD_SHIM ":" FAILING_CALLS_SHIM});
    s.Linea("back /bin/sleep 100");
    const std::string lista = s.Linea("listjobs");
    s.Seguir({{"job -fg " + std::to_string(UltimoPid(lista)), ""}, {"listjobs", lista}});
    EXPECT_EQ(kill(UltimoPid(lista), SIGKILL), 0);
}

TEST(Jobs, EndWithTheirStatusAndLeaveTheListWhenAsked) {
    Sesion s({.entorno = {"TZ=UTC0"}});
    EscribirFichero(s / "sal3", "exit 3\n");
    s.Linea("/bin/sh sal3 & x");
    // Removed by the state of the previous look: whatever the process has done, its record is still there.
    const std::string pid = std::to_string(UltimoPid(s.Linea("deljobs -term")));
    const std::string lista = ListarHasta(&s, "* TERMINADO (003) /bin/sh sal3\n", "job " + pid);
    s.Seguir({{"job -fg " + pid, "Proceso " + pid + " pid ya esta finalizado\n"},
              {"job " + pid, lista},
              {"job", lista},
              {"deljobs -sig", lista},
              {"changevar -p TZ AAA-12:30", ""}});
    EXPECT_NE(s.Linea("job " + pid), lista);
    s.Seguir({{"changevar -p TZ UTC0", ""},
              {"listjobs", lista},
              {"fork", "~ejecutando*"},
              {"listjobs", ""}, // the jobs are the parent's
              {"exit", ""},
              {"deljobs -all", ""},
              {"job " + pid, ""},
              {"backas nosuchuser /bin/true", "~*"}});
    ListarHasta(&s, "* uid -000001 p=-1 *");
    s.Linea("deljobs -clear");
    EscribirFichero(s / "espera", "until [ -e ya ]; do :; done; exit 4\n");
    s.Linea("backpri 19 /bin/sh espera");
    const std::string ultimo = std::to_string(UltimoPid(s.Linea("listjobs")));
    s.Enviar("job -fg " + ultimo + "\n");
    EscribirFichero(s / "ya", "");
    EXPECT_EQ(s.EsperarPrompt(), "Proceso " + ultimo + " terminado normalmente. Valor devuelto 4\n");
    s.Seguir({{"listjobs", ""}});
}

TEST(Pipes, InTheBackgroundTheyAreTwoJobs) {
    Sesion s;
    s.Linea("pipe /bin/true % /bin/true x & y");
    s.Linea("backpipe /bin/true % nohay &");
    ListarHasta(&s, "*) /bin/true\n*) /bin/true x\n*) /bin/true\n* TERMINADO (255) nohay &\n");
}

} // namespace
