#include "memfs/label_list.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>

namespace {

TEST(ListaLabel, Holds2047AndClosesTheGaps) {
    const auto lista = std::make_unique<ListaLabel>();
    auto dir = [](long n) { return reinterpret_cast<void *>(n); };
    for (int i = 0; i < 2047; i++)
        ASSERT_EQ(AniadirLabel(lista.get(), std::to_string(i).c_str(), dir(i + 1)), i);
    EXPECT_EQ(AniadirLabel(lista.get(), "otro", dir(9)), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(AniadirLabel(lista.get(), "2046", dir(9999)), 2046);
    EXPECT_EQ(ObtenerSiguienteDireccion(lista.get(), dir(2046)), dir(9999));
    EXPECT_EQ(BorrarLabel(lista.get(), "0"), 0);
    EXPECT_EQ(ObtenerPrimeraDireccion(lista.get()), dir(2));
    EXPECT_EQ(AniadirLabel(lista.get(), "12345678", dir(2)), 2046);
    EXPECT_STREQ(lista->entradas[2046].label, "1234567");
    EXPECT_STREQ(ObtenerLabel(lista.get(), dir(2)), "1");
    EXPECT_EQ(ObtenerSiguienteDireccion(lista.get(), nullptr), nullptr);
    EXPECT_EQ(lista->entradas[2047].dir, nullptr);
}

} // namespace
