#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <regex>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The pid at the start of the last line of a listing.
pid_t UltimoPid(const std::string &lista) {
    const size_t antes = lista.rfind('\n', lista.size() - 2);
    return atoi(lista.c_str() + (antes == std::string::npos ? 0 : antes + 1));
}

/// Lists until the listing holds `texto`: the shell learns of its children only when it looks.
std::string ListarHasta(Sesion *s, const std::string &texto) {
    std::string lista;
    for (int i = 0; i < 5000; i++) {
        lista = s->Linea("listjobs");
        if (lista.find(texto) != std::string::npos) return lista;
        poll(nullptr, 0, 1);
    }
    ADD_FAILURE() << "never listed \"" << texto << "\": " << lista;
    return lista;
}

TEST(Jobs, FollowAProcessThatIsStoppedContinuedAndKilled) {
    Sesion s;
    EXPECT_EQ(s.Linea("back NULLENV /bin/sleep 100 @1 x"), "");
    const std::string lista = s.Linea("listjobs");
    const pid_t pid = UltimoPid(lista);
    ASSERT_GT(pid, 1);
    const std::regex forma(
        " *[0-9]+ +[^ ].* p=-?[0-9]+ [0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{1,2} "
        "ACTIVO \\(000\\) NULLENV /bin/sleep 100 @1 x\n");
    EXPECT_TRUE(std::regex_match(lista, forma)) << lista;
    char parado[32];
    snprintf(parado, sizeof parado, " PARADO (%03d) ", SIGSTOP);
    kill(pid, SIGSTOP);
    ListarHasta(&s, parado);
    kill(pid, SIGCONT);
    ListarHasta(&s, " ACTIVO (000) ");
    s.Enviar("job -fg " + std::to_string(pid) + "\nback /bin/sleep 100\n");
    kill(pid, SIGTERM);
    EXPECT_EQ(s.EsperarPrompt(), "Proceso " + std::to_string(pid) + " terminado por la senal TERM\n");
    s.EsperarPrompt();
    const pid_t otro = UltimoPid(s.Linea("listjobs"));
    kill(otro, SIGTERM);
    const std::string final = ListarHasta(&s, " SENALADO (TERM) ");
    EXPECT_NE(final.find(" p=-1 "), std::string::npos) << final;
    EXPECT_EQ(s.Linea("deljobs -sig -term"), final);
    EXPECT_EQ(s.Linea("deljobs -sig x -term"), "");
}

TEST(Jobs, EndWithTheirStatusAndLeaveTheListWhenAsked) {
    DirectorioTemporal dir;
    EscribirFichero(dir / "sal3", "exit 3\n");
    Opciones o;
    o.directorio = dir.ruta();
    Sesion s(o);
    s.Linea("back /bin/sh sal3");
    // Removed by the state of the previous look: whatever the process has done, its record is still there.
    const std::string pid = std::to_string(UltimoPid(s.Linea("deljobs -term")));
    ListarHasta(&s, " TERMINADO (003) ");
    EXPECT_EQ(s.Linea("job -fg " + pid), "Proceso " + pid + " pid ya esta finalizado\n");
    EXPECT_EQ(s.Linea("job " + pid), s.Linea("job 1"));
    EXPECT_EQ(s.Linea("deljobs -term"), "");
    s.Linea("/bin/sh sal3 & x");
    const std::string otro = std::to_string(UltimoPid(s.Linea("job")));
    // The record may have become final at that look; then the state says so.
    EXPECT_TRUE(std::regex_match(s.Linea("proc -fg " + otro),
                                 std::regex("Proceso " + otro +
                                            " (terminado normalmente. Valor devuelto 3|pid ya "
                                            "esta finalizado)\n")));
    s.Linea("back nohay");
    ListarHasta(&s, " TERMINADO (255) nohay\n");
    s.Linea("backas nosuchuser /bin/true");
    ListarHasta(&s, " uid -000001 p=-1 ");
    EXPECT_EQ(s.Linea("deljobs -clear"), "");
}

TEST(Jobs, TheChildOfForkHasNone) {
    Sesion s;
    s.Linea("back /bin/true");
    s.Linea("fork");
    EXPECT_EQ(s.Linea("listjobs"), "");
    EXPECT_EQ(s.Linea("exit"), "");
    EXPECT_NE(s.Linea("listjobs"), "");
}

TEST(Pipes, JoinTwoProgramsInTheForegroundAndInTheBackground) {
    const std::string uso = "pipe prog1 args .. % prog2 args ..\n";
    DirectorioTemporal dir;
    Opciones o;
    o.directorio = dir.ruta();
    const struct {
        const char *linea;
        std::string salida;
    } filas[] = {
        {"pipe /bin/echo hola % /usr/bin/wc -c", "5\n"},
        {"pipe /bin/echo a % b % /bin/cat", "a\n"},
        {"pipe /bin/echo desviado >out % /usr/bin/wc -c", "0\n"},
        {"pipe NULLENV /usr/bin/env % V=1 /usr/bin/env", "V=1\n"},
        {"pipe /bin/echo x <no/hay % /bin/cat",
         "Imposible redireccionar 0 a no/hay: No such file or directory\nx <no/hay\n"},
        {"pipe nohay % nohay", ""},
        {"pipe % ", ""},
        {"pipe /bin/echo x %", ""},
        {"pipe /bin/echo /usr/bin/wc", uso},
        {"pipe", uso},
        {"concat & /bin/echo % /bin/cat", uso},
        {"backpipe /bin/echo /usr/bin/wc", uso},
    };
    Sesion s(o);
    for (const auto &fila : filas) EXPECT_EQ(s.Linea(fila.linea), fila.salida) << fila.linea;
    EXPECT_EQ(LeerFichero(dir / "out"), "desviado\n");
    EXPECT_EQ(s.Linea("listjobs"), "");
    s.Linea("pipe /bin/true % /bin/true x & y");
    s.Linea("backpipe /bin/true % nohay &");
    const std::string lista = ListarHasta(&s, " TERMINADO (255) nohay &\n");
    EXPECT_TRUE(std::regex_search(
        lista, std::regex("\\) /bin/true\n.*\\) /bin/true x\n.*\\) /bin/true\n.* nohay &\n")))
        << lista;
}

TEST(Pipes, AFailedPipeIsSilentAndLeavesNothing) {
    Opciones o;
    o.antesDeExec = [] {
        const struct rlimit cuatro = {4, 4};
        setrlimit(RLIMIT_NOFILE, &cuatro);
    };
    Sesion s(o);
    EXPECT_EQ(s.Linea("pipe /bin/true % /bin/true"), "");
    EXPECT_EQ(s.Linea("backpipe /bin/true % /bin/true"), "");
    EXPECT_EQ(s.Linea("listjobs"), "");
    EXPECT_EQ(s.Linea("/bin/echo sigue"), "sigue\n"); // its loader needs the one descriptor left
}

} // namespace
