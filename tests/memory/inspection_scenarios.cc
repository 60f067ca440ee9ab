// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Inspection, ALongTextIsCopiedWhole) {
    Sesion s;
    const std::string a = s.Dir("malloc 5000"), largo(4000, 'x');
    s.Seguir({{"stringcopy " + a + " " + largo, "Copiando " + largo + " en " + a + "\n"},
              {"writefile g " + a + " 4001", "~*"}});
    EXPECT_EQ(LeerFichero(s / "g"), largo + '\0');
    // What is emptied may be what the shell prints to.
    const Resultado r = Ejecutar("authors -l\nwritefile -o /dev/fd/1 0 0\n", {.ficheros = true});
    EXPECT_FALSE(Contiene(r.salida, "autor1")) << r.salida;
}

TEST(Inspection, AFaultInTheMiddleOfADumpLosesNoEarlierRow) {
    SALTAR_SI_SANEADO();
    const auto pagina = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    // Into the missing page reaches a whole row, the rest; a row begins there, or ends by a byte.
    const size_t n1 = pagina + 50, n2 = pagina / 25 * 25 + 24, justo = pagina % 25;
    const size_t filas[][2] = {{0, n1}, {0, n2}, {justo, n1}, {justo + 1, n1}};
    for (const auto &[desde, n] : filas) {
        Sesion s;
        EscribirFichero(s / "f", std::string(2 * pagina, 'm'));
        const std::string orden = "memdump " + Mas(s.Dir("mmap f r"), desde) + " " + std::to_string(n),
                          todo = s.Linea(orden);
        ASSERT_EQ(truncate((s / "f").c_str(), static_cast<off_t>(pagina)), 0);
        s.Enviar(orden + "\n");
        std::string resto;
        EXPECT_TRUE(MuertoPor(s.EsperarFin(&resto), SIGBUS));
        // The heading, and the rows of 152 characters before that one.
        EXPECT_EQ(resto, todo.substr(0, todo.find('\n') + 1 + (pagina - desde) / 25 * 152));
    }
}

TEST(Inspection, RecursionShowsAFrameALineUntilTheStackEnds) {
    SALTAR_SI_SANEADO();
    const Resultado r = Ejecutar("recurse 100000\n", {.antesDeExec = Limitar<RLIMIT_STACK, 1 << 20>});
    EXPECT_TRUE(MuertoPor(r.estado, SIGSEGV));
    // Some 250 frames fit, each with its array; the last line that was printed is whole.
    const long quedaban = std::stol(r.salida.substr(r.salida.rfind("parametro:") + 10));
    EXPECT_TRUE(quedaban < 100000 - 200 && quedaban > 100000 - 512) << quedaban;
    EXPECT_EQ(r.salida.back(), '\n');
}

} // namespace
