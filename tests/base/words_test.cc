// SPDX-License-Identifier: MIT

#include "base/words.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

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

TEST(TrocearCadena, EndsAtTheMostWordsThatThereMayBe) {
    std::string linea;
    for (int i = 0; i < kMaxPalabras + 2; i++) linea += "a\t";
    std::vector<char *> palabras(kMaxPalabras + 4, linea.data());
    EXPECT_EQ(TrocearCadena(linea.data(), palabras.data()), kMaxPalabras - 1);
    EXPECT_EQ(palabras[kMaxPalabras - 1], nullptr);
    EXPECT_EQ(palabras[kMaxPalabras], linea.data());
}

} // namespace
