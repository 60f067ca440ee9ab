#include "shell/element_list.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

namespace {

TEST(ElementList, KeepsCopiesInOrderAndRefusesOneTooMany) {
    const std::unique_ptr<ListaElementos> l{new ListaElementos{}};
    for (const char *e : {"a", "b", "c", "b"}) AniadirElemento(l.get(), e);
    EXPECT_EQ(BorrarElemento(l.get(), "b"), 0); // the first of the two, and the gap is closed
    EXPECT_STREQ(GetElemento(l.get(), 1), "c");
    EXPECT_EQ(BuscarElemento(l.get(), "b"), 2);
    EXPECT_EQ(l->elementos[3], nullptr);
    EXPECT_STREQ(GetSiguienteElemento(l.get(), "a"), "c");
    EXPECT_EQ(GetSiguienteElemento(l.get(), "b"), nullptr);
    EXPECT_EQ(GetElemento(l.get(), 3), nullptr);
    EXPECT_EQ(GetElemento(l.get(), -1), nullptr);
    EXPECT_TRUE(GetSiguienteElemento(l.get(), "x") == nullptr && errno == ENODEV);
    EXPECT_TRUE(AniadirElemento(l.get(), nullptr) == -1 && errno == EFAULT);
    EXPECT_TRUE(BorrarElemento(l.get(), "x") == -1 && errno == ENOENT);
    for (int i = 3; i < 4095; i++) ASSERT_EQ(AniadirElemento(l.get(), "x"), i + 1);
    EXPECT_TRUE(AniadirElemento(l.get(), "x") == -1 && errno == ENOSPC);
    EXPECT_EQ(l->elementos[4095], nullptr);
    BorrarLista(l.get());
    EXPECT_EQ(GetPrimerElemento(l.get()), nullptr);
    EXPECT_EQ(l->elementos[4094], nullptr);
}

} // namespace
