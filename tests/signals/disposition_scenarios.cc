#include <algorithm>
#include <utility>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(SignalCommands, ShowAndChangeDispositionsAndMask) {
    static constexpr std::pair<const char *, const char *> filas[] = {
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
        {"sigprocmask -unblock HUP", ""},
        {"sigunmask", "  SENALES ENMASCARADAS: TERM \n"},
        {"sigprocmask -setmask", ""},
    };
    Sesion s;
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    const std::string todas = s.Linea("siginfo");
    EXPECT_EQ(std::count(todas.begin(), todas.end(), '\n'), 31);
    EXPECT_EQ(todas.find("      HUP: No Enmascarada SIG_DFL\n"), 0u);
}

} // namespace
