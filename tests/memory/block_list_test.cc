#include "memory/block_list.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>

namespace {

/// A list of the test's own, on the heap for its size, emptied at the end. The blocks are mere addresses.
struct BlockList : testing::Test {
    std::unique_ptr<ListaBloquesMemoria> propia{new ListaBloquesMemoria{}};
    ListaBloquesMemoria *lista = propia.get();
    char bloques[kMaxBloques + 1];
    ~BlockList() override {
        while (lista->num > 0) EliminarNodoDireccion(lista, lista->nodos[lista->num - 1]->direccion);
    }
};

TEST_F(BlockList, RemovingTheMiddleNodeKeepsOrderAndLeavesNoGap) {
    for (int i = 0; i < 5; i++) EXPECT_EQ(InsertarNodoMalloc(lista, &bloques[i * 8], 8), i + 1);
    EXPECT_EQ(TamanoNodoDireccion(lista, &bloques[17]), kSinTamano); // inside a block, not its start
    EXPECT_EQ(EliminarNodoDireccion(lista, &bloques[16]), 0);
    static constexpr int quedan[] = {0, 8, 24, 32};
    int i = 0;
    for (void *dir = PrimerElemento(lista); dir; dir = SiguienteElemento(lista, dir))
        EXPECT_EQ(dir, &bloques[quedan[i++]]);
    EXPECT_EQ(i, 4);
    EXPECT_EQ(lista->nodos[4], nullptr);
    errno = 0;
    EXPECT_EQ(EliminarNodoDireccion(lista, &bloques[16]), -1);
    EXPECT_EQ(errno, ENXIO);
    EXPECT_EQ(SiguienteElemento(lista, &bloques[16]), nullptr);
}

TEST_F(BlockList, FindsTheEarliestNodeOfTheKindsAskedFor) {
    char *const b = bloques;
    InsertarNodoShared(lista, b, 100, -7);
    InsertarNodoMmap(lista, b + 1, 100, 5, "f");
    InsertarNodoMalloc(lista, b + 2, 100);
    InsertarNodoMalloc(lista, b + 3, 100);
    InsertarNodo(lista, b + 4, 100, 9, nullptr, TIPO_MMAP);
    EXPECT_EQ(BuscarNodoTam(lista, 100, TIPO_MALLOC | TIPO_MMAP), 1);
    EXPECT_EQ(BuscarNodoClave(lista, 5, TIPO_SHARED), -1);
    EXPECT_EQ(DireccionNodoShared(lista, -7), b);
    EXPECT_EQ(DireccionNodoMalloc(lista, 100), b + 2);
    EliminarNodoDireccion(lista, b + 2);
    EXPECT_EQ(DireccionNodoMalloc(lista, 100), b + 3);
    EXPECT_EQ(DescriptorNodoMmap(lista, "f"), 5);
    EXPECT_EQ(DireccionNodoMmap(lista, "./f"), nullptr);
    EXPECT_EQ(TipoNodoDireccion(lista, b), TIPO_SHARED);
}

TEST_F(BlockList, HoldsExactly4096Nodes) {
    for (int i = 0; i < kMaxBloques; i++) ASSERT_EQ(InsertarNodoMmap(lista, &bloques[i], 1, i, "f"), i + 1);
    errno = 0;
    EXPECT_EQ(InsertarNodoMmap(lista, &bloques[kMaxBloques], 1, 1, "f"), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(SiguienteElemento(lista, &bloques[kMaxBloques - 1]), nullptr);
    EXPECT_EQ(EliminarNodoDireccion(lista, &bloques[0]), 0);
    EXPECT_EQ(lista->nodos[kMaxBloques - 1], nullptr);
}

TEST_F(BlockList, TheDateHasTwelveCharactersWhateverTheTime) {
    for (time_t t : {time_t{0}, time_t{LONG_MAX}}) EXPECT_EQ(strlen(ponFecha(t)), 12u) << t;
}

} // namespace
