#include "tests/driver/session.h"

#include <sys/wait.h>

namespace {

using namespace escenario;

TEST(Input, AnswersLineByLineThroughAPipe) {
    Sesion s;
    EXPECT_EQ(s.Linea("pid"), "Pid de shell: " + std::to_string(s.pid()) + "\n");
    EXPECT_EQ(s.Linea("  \t "), "");
    std::string resto;
    EXPECT_EQ(s.Terminar(&resto), 0);
    EXPECT_EQ(resto, "");
}

TEST(Input, TheTerminalShowsTheSameBytesAsThePipe) {
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("prompt listo%%>\n"); // the echo of the line does not hold the prompt itself
    t.Esperar("listo%>");
    t.Enviar("authors -l\n");
    EXPECT_EQ(t.Esperar("listo%>"), "authors -l\nlogin del autor1\nlogin del autor2\nlisto%>");
    t.Enviar("\x04");
    EXPECT_EQ(t.EsperarFin(), 0);
}

} // namespace
