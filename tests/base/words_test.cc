// SPDX-License-Identifier: MIT

#include "base/words.h"

#include <gtest/gtest.h>

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

} // namespace
