#include "tests/driver/session.h"

#include <cerrno>
#include <cstring>

namespace {

using namespace escenario;

TEST(Historic, StoresEveryLineAsTypedBeforeItRuns) {
    Sesion s; // entry 0 is the line that sets the prompt
    s.Linea("   pid");
    s.Linea("\t ");
    s.Linea("nosuch-command-here  x");
    const std::string todo = s.Linea("historic");
    EXPECT_NE(todo.find("1->   pid\n2->nosuch-command-here  x\n3->historic\n"), std::string::npos) << todo;
    EXPECT_EQ(s.Linea("historic -2"), "3->historic\n4->historic -2\n");
    EXPECT_EQ(s.Linea("previous -x"), "");
    EXPECT_EQ(s.Linea("historic 2x"), "");
    EXPECT_EQ(s.Linea("historic -c"), "");
    EXPECT_EQ(s.Linea("command"), "0->command\n");
    EXPECT_EQ(s.Linea("historic -10"), "0->command\n1->historic -10\n");
}

TEST(Historic, RepeatsEntriesWithoutStoringThemAgain) {
    Sesion s;
    s.Linea("historic -c");
    const std::string pid = s.Linea("  pid");
    EXPECT_EQ(s.Linea("historic 0"), "Ejecutando hist (0):   pid\n" + pid);
    EXPECT_EQ(s.Linea("command abc"), "Ejecutando hist (0):   pid\n" + pid);
    EXPECT_EQ(s.Linea("historic 99"), "No hay elemento 99 en el historico\n");
    EXPECT_EQ(s.Linea("historic 5000"), "No hay elemento 5000 en el historico\n");
    EXPECT_EQ(s.Linea("command -1"), "No hay elemento -1 en el historico\n");
    EXPECT_EQ(s.Linea("command -x"), "Ejecutando hist (0):   pid\n" + pid);
    std::string anidada;
    for (int i = 0; i < 11; i++) anidada += "Ejecutando hist (7): historic 7\n";
    EXPECT_EQ(s.Linea("historic 7"), anidada + "Demasiada recursion en hist\n");
    EXPECT_EQ(s.Linea("command 0"), "Ejecutando hist (0):   pid\n" + pid); // the nesting starts anew
}

TEST(Historic, FullItKeepsItsEntriesAndLinesStillRun) {
    std::string guion;
    for (int i = 0; i < 4095; i++) guion += "abbrev on\n";
    const Resultado r = Ejecutar(guion + "authors -l\nhistoric -1\n");
    const std::string aviso = std::string("Comando no almacenado: ") + strerror(ENOSPC) + "\n";
    EXPECT_NE(r.salida.find(aviso + "login del autor1\nlogin del autor2\n"), std::string::npos);
    EXPECT_NE(r.salida.find(aviso + "4094->abbrev on\n"), std::string::npos);
}

} // namespace
