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

TEST(Info, LimitsAreDividedEvenWhenUnlimited) {
    SALTAR_SI(kSaneado, "the sanitizers need more memory");
    Sesion s({.antesDeExec = [] {
        static constexpr struct {
            int recurso;
            rlim_t blando, duro;
        } filas[] = {{RLIMIT_AS, 20'000ull << 20, 30'000ull << 20},
                     {RLIMIT_DATA, 10'000ull << 20, 20'000ull << 20},
                     {RLIMIT_STACK, 8192 * 1024 + 1, RLIM_INFINITY},
                     {RLIMIT_RSS, 3 << 20, 5 << 20},
                     {RLIMIT_FSIZE, 6 << 20, 7 << 20},
                     {RLIMIT_NOFILE, 200, 300}};
        for (const auto &[recurso, blando, duro] : filas) {
            const struct rlimit limite = {blando, duro};
            setrlimit(static_cast<__rlimit_resource>(recurso), &limite);
        }
    }});
    s.Seguir({{"limits", "espacio direcciones: 5120000 4K pages(soft) 7680000 4K pages\n"
                         "espacio datos: 10000 Megabytes(soft) 20000 Megabytes\n"
                         "tamano de la pila: 8192 Kilobytes(soft) 18014398509481983 Kilobytes\n"
                         "conjunto residente: 3 Megabytes(soft) 5 Megabytes\n"
                         "tamano fichero: 6 Megabytes(soft) 7 Megabytes\n"
                         "ficheros abiertos: 200 ficheros(soft) 300 ficheros\n"}});
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
