// SPDX-License-Identifier: MIT

#include "memory/block_list.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

TEST(BlockList, FindsTheEarliestAndClosesTheGapOfWhatIsRemoved) {
    static ListaBloquesMemoria lista;
    char b[5][8];
    EXPECT_EQ(InsertarNodoMalloc(&lista, b[0], 8), 1);
    InsertarNodoShared(&lista, b[1], 8, -7);
    InsertarNodoMmap(&lista, b[2], 8, 7, "f");
    InsertarNodoMmap(&lista, b[3], 9, 8, "f");
    EXPECT_EQ(InsertarNodoMalloc(&lista, b[4], 9), 5);
    const void *const hallados[][2] = {
        {PrimerElemento(&lista), b[0]},         {SiguienteElemento(&lista, b[1]), b[2]},
        {SiguienteElemento(&lista, b[4]), {}},  {SiguienteElemento(&lista, b[1] + 1), {}},
        {DireccionNodoMalloc(&lista, 9), b[4]}, {DireccionNodoShared(&lista, -7), b[1]},
        {DireccionNodoMmap(&lista, "f"), b[2]}, {DireccionNodoMmap(&lista, "g"), {}}};
    for (const auto &[hallado, esperado] : hallados) EXPECT_EQ(hallado, esperado);
    EXPECT_EQ(BuscarNodoTam(&lista, 8, TIPO_SHARED | TIPO_MMAP), 1);
    EXPECT_EQ(BuscarNodoClave(&lista, 7, TIPO_SHARED), -1);
    EXPECT_EQ(DescriptorNodoMmap(&lista, "f"), 7);
    EXPECT_EQ(EliminarNodoDireccion(&lista, b[2]), 0);
    EXPECT_EQ(EliminarNodoDireccion(&lista, b[2]) == -1 ? errno : 0, ENXIO);
    EXPECT_EQ(lista.nodos[4], nullptr);
    EXPECT_EQ(SiguienteElemento(&lista, b[1]), b[3]);
    EXPECT_EQ(TipoNodoDireccion(&lista, b[3]) + DescriptorNodoDireccion(&lista, b[3]), TIPO_MMAP + 8);
    EXPECT_EQ(TamanoNodoDireccion(&lista, b[3] + 1), kSinTamano);
    VaciarLista(&lista);
    EXPECT_EQ(PrimerElemento(&lista), nullptr);
}

} // namespace
