#include "shell/words.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(TrocearCadena, SplitsAtBlanksTabsAndNewlinesWithoutQuoting) {
    static constexpr struct {
        const char *linea;
        std::initializer_list<const char *> palabras;
    } filas[] = {{"", {}},
                 {" \t \n", {}},
                 {"   pid\n", {"pid"}},
                 {"a\t\tb  c\n", {"a", "b", "c"}},
                 {"open 'a b'", {"open", "'a", "b'"}}};
    for (const auto &fila : filas) {
        std::string linea = fila.linea;
        char *palabras[kMaxPalabras];
        ASSERT_EQ(TrocearCadena(linea.data(), palabras), static_cast<int>(fila.palabras.size()))
            << fila.linea;
        int i = 0;
        for (const char *palabra : fila.palabras) EXPECT_STREQ(palabras[i++], palabra) << fila.linea;
        EXPECT_EQ(palabras[i], nullptr) << fila.linea;
    }
}

TEST(UnirPalabras, JoinsWithSingleBlanksAndTellsTheWholeLength) {
    char a[] = "hola", b[] = "mundo";
    char *palabras[] = {a, b, nullptr};
    char texto[16];
    EXPECT_EQ(UnirPalabras(texto, sizeof texto, palabras), 10u);
    EXPECT_STREQ(texto, "hola mundo");
    EXPECT_EQ(UnirPalabras(texto, 7, palabras), 10u);
    EXPECT_STREQ(texto, "hola m");
    EXPECT_EQ(UnirPalabras(nullptr, 0, palabras + 2), 0u);
}

} // namespace
