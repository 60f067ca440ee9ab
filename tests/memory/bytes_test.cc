// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <string>

#include "memory/fill.h"

TEST(ConvertirByte, ReadsQuotedDecimalHexadecimalAndOctal) {
    static constexpr std::pair<const char *, int> filas[] = {
        {"'A'", 65}, {"122", 122},    {"0x7a", 122}, {"010", 8}, {"300", 44}, {"-1", 255},
        {"hola", 0}, {"'\xf1'", 241}, {"'A", 0},     {"'", 0},   {"", 0}};
    for (const auto &[texto, byte] : filas) EXPECT_EQ(ConvertirByte(texto), byte) << texto;
}

TEST(LlenarMemoria, SetsEveryStepBelowTheCountAndNothingElse) {
    std::string memoria(10, '-');
    LlenarMemoria(memoria.data(), 9, 'z', 2);
    LlenarMemoria(memoria.data() + 1, 1, 'y', 50);
    LlenarMemoria(memoria.data() + 2, 0, 'x', 2);
    EXPECT_EQ(memoria, "zyz-z-z-z-");
    // Long enough for every size of piece, and not at the start of a page.
    std::string larga((1u << 25) + 99, '-');
    LlenarMemoria(larga.data() + 1, larga.size() - 2, 'z', 1);
    EXPECT_TRUE(larga == "-" + std::string(larga.size() - 2, 'z') + "-");
}
