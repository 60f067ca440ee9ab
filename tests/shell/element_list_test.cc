#include "shell/element_list.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

namespace {

struct ElementList : testing::Test {
    std::unique_ptr<ListaElementos> l{new ListaElementos{}};
    ~ElementList() override { BorrarLista(l.get()); }
    std::string Todos() const {
        std::string texto;
        for (int i = 0; l->elementos[i]; i++) texto += std::string(l->elementos[i]) + " ";
        return texto;
    }
};

TEST_F(ElementList, KeepsCopiesInOrderAndClosesTheGapOfARemovedOne) {
    for (const char *e : {"a", "b", "c", "b"}) AniadirElemento(l.get(), e);
    EXPECT_EQ(ElementosEnLista(l.get()), 4);
    EXPECT_EQ(BorrarElemento(l.get(), "b"), 0);
    EXPECT_EQ(Todos(), "a c b ");
    EXPECT_EQ(l->elementos[3], nullptr);
    EXPECT_EQ(BuscarElemento(l.get(), "b"), 2);
    EXPECT_STREQ(GetSiguienteElemento(l.get(), "a"), "c");
    EXPECT_EQ(GetSiguienteElemento(l.get(), "b"), nullptr);
    EXPECT_EQ(GetElemento(l.get(), 3), nullptr);
    EXPECT_EQ(GetElemento(l.get(), -1), nullptr);
    EXPECT_STREQ(GetFirstNextElement(l.get(), 1), "a");
    EXPECT_STREQ(GetFirstNextElement(l.get(), 0), "c");
}

TEST_F(ElementList, RefusesNullAbsentAndOneTooMany) {
    errno = 0;
    EXPECT_TRUE(AniadirElemento(l.get(), nullptr) == -1 && errno == EFAULT);
    EXPECT_TRUE(BorrarElemento(l.get(), nullptr) == -1 && errno == ENOENT);
    EXPECT_TRUE(GetSiguienteElemento(l.get(), "x") == nullptr && errno == ENODEV);
    for (int i = 0; i < 4095; i++) ASSERT_EQ(AniadirElemento(l.get(), "x"), i + 1);
    EXPECT_TRUE(AniadirElemento(l.get(), "x") == -1 && errno == ENOSPC);
    EXPECT_EQ(l->elementos[4095], nullptr);
    BorrarLista(l.get());
    EXPECT_EQ(GetPrimerElemento(l.get()), nullptr);
    EXPECT_EQ(l->elementos[4094], nullptr);
}

} // namespace
