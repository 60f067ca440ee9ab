#include "memory/block_list.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

namespace {

TEST(BlockList, FindsTheEarliestNodeOfItsKindAndClosesTheGapOfARemovedOne) {
    const auto propia = std::make_unique<ListaBloquesMemoria>(); // on the heap for its size
    ListaBloquesMemoria *const lista = propia.get();
    char b[8]; // the blocks are mere addresses
    InsertarNodoShared(lista, b, 100, -7);
    InsertarNodoMmap(lista, b + 1, 100, 5, "f");
    InsertarNodoMalloc(lista, b + 2, 100);
    InsertarNodoMalloc(lista, b + 4, 100);
    EXPECT_EQ(InsertarNodo(lista, b + 5, 100, 9, nullptr, TIPO_MMAP), 5);
    EXPECT_EQ(BuscarNodoClave(lista, 5, TIPO_SHARED), -1);
    EXPECT_EQ(DireccionNodoShared(lista, -7), b);
    EXPECT_EQ(DireccionNodoMmap(lista, "./f"), nullptr);
    EXPECT_EQ(DireccionNodoMalloc(lista, 100), b + 2);
    EXPECT_EQ(TamanoNodoDireccion(lista, b + 3), kSinTamano); // inside a block, not its start

    EXPECT_EQ(EliminarNodoDireccion(lista, b + 2), 0);
    EXPECT_EQ(DireccionNodoMalloc(lista, 100), b + 4);
    errno = 0;
    EXPECT_TRUE(EliminarNodoDireccion(lista, b + 2) == -1 && errno == ENXIO);
    EXPECT_EQ(SiguienteElemento(lista, b + 2), nullptr);
    for (int resto : {0, 1, 4, 5}) {
        EXPECT_EQ(PrimerElemento(lista), b + resto);
        EXPECT_EQ(EliminarNodoDireccion(lista, b + resto), 0);
    }
    EXPECT_EQ(PrimerElemento(lista), nullptr);
}

} // namespace
