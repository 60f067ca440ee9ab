#include <algorithm>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(SignalCommands, ShowAndChangeDispositionsAndMask) {
    static constexpr char enmascaradas[] = "  SENALES ENMASCARADAS: ";
    const struct {
        const char *linea;
        std::string salida;
    } filas[] = {
        {"siginfo INT int", "        INT: No Enmascarada SIG_DFL\n  senal desconocida:int\n"},
        {"sigignore INT KILL nada", ""},
        {"sigignore", "  SENALES SIGNORADAS: INT \n"},
        {"sigdefault INT", ""},
        {"sigignore", "  SENALES SIGNORADAS: \n"},
        {"sigmask USR1 ALRM nada", ""},
        {"sigmask", enmascaradas + std::string("USR1 ALRM \n")},
        {"siginfo ALRM", "       ALRM: Enmascarada    SIG_DFL\n"},
        {"sigprocmask -block -setmask HUP nada", "Senal desconocida nada\n"},
        {"sigprocmask", enmascaradas + std::string("HUP \n")},
        {"sigprocmask TERM", ""},
        {"sigunmask", enmascaradas + std::string("HUP TERM \n")},
        {"sigprocmask -unblock HUP", ""},
        {"sigunmask", enmascaradas + std::string("TERM \n")},
        {"sigprocmask -setmask", ""},
        {"sigmask", enmascaradas + std::string("\n")},
    };
    Sesion s;
    for (const auto &fila : filas) EXPECT_EQ(s.Linea(fila.linea), fila.salida) << fila.linea;
    const std::string todas = s.Linea("siginfo");
    EXPECT_EQ(std::count(todas.begin(), todas.end(), '\n'), 31);
    EXPECT_EQ(todas.find("      HUP: No Enmascarada SIG_DFL\n"), 0u);
}

} // namespace
