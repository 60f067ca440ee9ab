// SPDX-License-Identifier: MIT

#include "base/bounded_text.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(BoundedText, FormsDigitsSignsAndColumns) {
    char lugar[80];
    TextoAcotado texto(lugar, sizeof lugar);
    for (long long valor : {0LL, 907LL, LLONG_MIN}) {
        texto.PonerNumero(valor);
        texto.Poner("|");
    }
    texto.PonerNumero(5, 2, '0');
    texto.PonerNumero(-1, 4);
    texto.PonerNumero(12345, 4);
    texto.PonerDireccion(reinterpret_cast<void *>(0x10fa));
    EXPECT_STREQ(lugar, "0|907|-9223372036854775808|05  -1123450x10fa");
}

TEST(BoundedText, IsCutWhereItsRoomEndsAndTellsIt) {
    char lugar[] = "abcdefgh";
    TextoAcotado texto(lugar, 6, 3); // behind "abc"
    texto.Poner("xy");
    EXPECT_TRUE(texto.Cabe());
    texto.Poner("z");
    texto.Poner("w");
    EXPECT_FALSE(texto.Cabe());
    EXPECT_STREQ(lugar, "abcxy");
    EXPECT_STREQ(lugar + 6, "gh");
    EXPECT_EQ(texto.n(), 5u);
    EXPECT_EQ(texto.largo(), 7u);
}

} // namespace
