// SPDX-License-Identifier: MIT

#include "memory/block_list.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "memory/allocation.h"

namespace {

TEST(BlockList, FindsTheEarliestAndClosesTheGapOfWhatIsRemoved) {
    static ListaBloquesMemoria listas[2] = {{{}, 1}, {}}; // what stands before the first slot is no null
    ListaBloquesMemoria &lista = listas[1];
    char b[5][8];
    EXPECT_EQ(InsertarNodoMalloc(&lista, b[0], 8), 1);
    EXPECT_EQ(InsertarNodoShared(&lista, b[1], 8, -7), 2);
    EXPECT_EQ(InsertarNodoMmap(&lista, b[2], 8, 7, "f"), 3);
    InsertarNodoMmap(&lista, b[3], 9, 8, "f");
    EXPECT_EQ(InsertarNodoMalloc(&lista, b[4], 9), 5);
    const void *const hallados[][2] = {
        {PrimerElemento(&lista), b[0]},          {SiguienteElemento(&lista, b[0]), b[1]},
        {SiguienteElemento(&lista, b[1]), b[2]}, {SiguienteElemento(&lista, b[3]), b[4]},
        {SiguienteElemento(&lista, b[4]), {}},   {SiguienteElemento(&lista, b[1] + 1), {}},
        {DireccionNodoMalloc(&lista, 9), b[4]},  {DireccionNodoShared(&lista, -7), b[1]},
        {DireccionNodoMmap(&lista, "f"), b[2]},  {DireccionNodoMmap(&lista, "g"), {}}};
    for (const auto &[hallado, esperado] : hallados) EXPECT_EQ(hallado, esperado);
    EXPECT_EQ(BuscarNodoTam(&lista, 8, TIPO_SHARED | TIPO_MMAP), 1);
    EXPECT_EQ(BuscarNodoClave(&lista, 7, TIPO_SHARED), -1);
    EXPECT_TRUE(DescriptorNodoMmap(&lista, "f") == 7 && DescriptorNodoMmap(&lista, "g") == -1);
    EXPECT_EQ(EliminarNodoDireccion(&lista, b[2]), 0);
    EXPECT_EQ(EliminarNodoDireccion(&lista, b[2]) == -1 ? errno : 0, ENXIO);
    EXPECT_EQ(lista.nodos[4], nullptr);
    EXPECT_EQ(SiguienteElemento(&lista, b[1]), b[3]);
    static constexpr int clases[][2] = {{TIPO_MALLOC, 0}, {TIPO_SHARED, -7}, {-1, -1}, {TIPO_MMAP, 8}};
    for (int i = 0; i < 4; i++)
        EXPECT_TRUE(TipoNodoDireccion(&lista, b[i]) == clases[i][0] &&
                    DescriptorNodoDireccion(&lista, b[i]) == clases[i][1])
            << i;
    EXPECT_EQ(TamanoNodoDireccion(&lista, b[3] + 1), kSinTamano);
    VaciarLista(&lista);
    EXPECT_EQ(PrimerElemento(&lista), nullptr);
}

TEST(BlockList, ABlockOfNoKindIsNotReleased) {
    static char bloque[8];
    InsertarNodoMalloc(&L, bloque, sizeof bloque);
    L.nodos[0]->tipo = 0; // as the user may overwrite it
    EXPECT_EQ(doDeallocate(bloque), -1);
    EXPECT_EQ(L.num, 1);
    VaciarLista(&L);
}

} // namespace
