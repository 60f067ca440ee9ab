// SPDX-License-Identifier: MIT

#include <sys/stat.h>
#include <sys/utsname.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Info, DatesAreOfNowAndOfTheProgram) {
    Sesion s;
    const time_t antes = time(nullptr);
    static constexpr std::pair<const char *, const char *> filas[] = {{"date", "%H:%M:%S\n%d/%m/%Y\n"},
                                                                      {"fecha -d", "%d/%m/%Y\n"},
                                                                      {"date -t", "%H:%M:%S\n"},
                                                                      {"day", "%d/%m/%Y\n"},
                                                                      {"dia", "%d/%m/%Y\n"},
                                                                      {"hora", "%H:%M:%S\n"}};
    for (const auto &[linea, forma] : filas) {
        const std::string dada = s.Linea(linea);
        EXPECT_TRUE(DeAhora("|" + dada, antes, (std::string("|") + forma).c_str())) << linea << dada;
        EXPECT_EQ(dada.size(), Fecha(antes, forma).size()) << linea;
    }
    struct utsname u;
    uname(&u);
    struct stat programa;
    ASSERT_EQ(stat(SHELL_PROGRAM, &programa), 0);
    s.Seguir({{"infosys", std::string(u.nodename) + " (" + u.machine + "), OS: " + u.sysname + "-" +
                              u.release + "-" + u.version + "\n"},
              {"numserie", "numserie del shell 4.L.12 " +
                               Fecha(programa.st_mtime, "Fecha ejecutable: %d/%m/%Y, %H:%M:%S\n")}});
}

TEST(Info, StartUpLinesAndTheWarning) {
    const std::string aviso = LeerFichero(EXPECTED_DIR "/shell/expected/systemd_warning.txt"),
                      prompt = Ejecutar("", {.argumentos = {"-p"}}).salida, inicio = "Iniciando shell..\n";
    EXPECT_TRUE(Casa(prompt, inicio + "version del shell 4.L.12 Fecha ejecutable: *%) ")) << prompt;
    EXPECT_EQ(Veces(prompt, "\n"), 2) << prompt;
    const std::string todo =
        Ejecutar("", {.argumentos = {"otra", "cosa"}, .preload = WITH_SYSTEMD_SHIM}).salida;
    EXPECT_EQ(todo, aviso + inicio + "Ejecutar " + SHELL_PROGRAM + " -p para importar el path\n\n" +
                        prompt.substr(inicio.size()));
}

} // namespace
