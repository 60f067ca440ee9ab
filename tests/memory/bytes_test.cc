#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "memory/address.h"
#include "memory/fill.h"

namespace {

TEST(Bytes, AreReadQuotedDecimalHexadecimalAndOctal) {
    static constexpr struct {
        const char *texto;
        int byte;
    } filas[] = {{"'A'", 65}, {"122", 122}, {"0x7a", 122},   {"010", 8}, {"300", 44}, {"-1", 255},
                 {"hola", 0}, {"''", 0},    {"'\xf1'", 241}, {"'A", 0},  {"'", 0},    {"", 0}};
    for (const auto &f : filas) EXPECT_EQ(ConvertirByte(f.texto), f.byte) << f.texto;
}

TEST(Addresses, AreReadInHexadecimalWithOrWithoutPrefix) {
    static constexpr struct {
        const char *texto;
        uintptr_t dir;
    } filas[] = {{"0x7f00a0", 0x7f00a0}, {"7F00A0", 0x7f00a0}, {"10xyz", 0x10}, {"0x0", 0}, {"xyz", 0}};
    for (const auto &f : filas) {
        errno = 0;
        EXPECT_EQ(reinterpret_cast<uintptr_t>(cadtop(f.texto)), f.dir) << f.texto;
        EXPECT_EQ(errno, f.dir ? 0 : EFAULT) << f.texto;
    }
}

TEST(LlenarMemoria, SetsEveryStepBelowTheCountAndNothingElse) {
    static constexpr struct {
        unsigned long long cont;
        int paso;
        const char *queda;
    } filas[] = {{8, 1, "zzzzzzzz--"}, {9, 4, "z---z---z-"}, {1, 50, "z---------"}, {0, 1, "----------"}};
    for (const auto &f : filas) {
        std::string memoria(10, '-');
        LlenarMemoria(memoria.data(), f.cont, 'z', f.paso);
        EXPECT_EQ(memoria, f.queda) << f.cont << " " << f.paso;
    }
    // Long enough for every size of piece, and not at the start of a page.
    std::string larga((1u << 25) + 99, '-');
    LlenarMemoria(larga.data() + 1, larga.size() - 2, 'z', 1);
    EXPECT_TRUE(larga == "-" + std::string(larga.size() - 2, 'z') + "-");
}

} // namespace
