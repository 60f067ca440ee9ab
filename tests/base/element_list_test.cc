// SPDX-License-Identifier: MIT

#include "base/element_list.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "base/output.h"

namespace {

TEST(ElementList, KeepsItsOrderWithoutGaps) {
    static ListaElementos listas[2] = {{{}, 1}, {}}; // what stands before the first element is no null
    ListaElementos &lista = listas[1];
    for (int i = 1; i <= 3; i++) EXPECT_EQ(AniadirElemento(&lista, std::to_string(i).c_str()), i);
    EXPECT_EQ(BorrarElemento(&lista, "2"), 0);
    EXPECT_EQ(BorrarElemento(&lista, "2") == -1 ? errno : 0, ENOENT);
    EXPECT_EQ(BuscarElemento(&lista, "3"), 1);
    EXPECT_EQ(AniadirElemento(&lista, nullptr) + BuscarElemento(&lista, nullptr) +
                  AniadirElementoYaAsignado(&lista, nullptr),
              -3);
    EXPECT_EQ(errno, EFAULT);
    EXPECT_EQ(ElementosEnLista(&lista), 2);
    EXPECT_STREQ(GetPrimerElemento(&lista), "1");
    EXPECT_STREQ(GetSiguienteElemento(&lista, "1"), "3");
    EXPECT_EQ(GetSiguienteElemento(&lista, "3"), nullptr);
    errno = 0;
    EXPECT_EQ(GetSiguienteElemento(&lista, "2"), nullptr);
    EXPECT_EQ(errno, ENODEV);
    EXPECT_EQ(GetElemento(&lista, -1), nullptr);
    EXPECT_STREQ(GetElemento(&lista, 1), "3");
    EXPECT_EQ(GetElemento(&lista, 2), nullptr);
    EXPECT_STREQ(GetFirstNextElement(&lista, 1), "1");
    EXPECT_STREQ(GetFirstNextElement(&lista, 0), "3");
    EXPECT_EQ(GetFirstNextElement(&lista, 0), nullptr);
    EXPECT_STREQ(GetFirstNextElement(&lista, 1), "1");
    testing::internal::CaptureStdout();
    ImprimirListaFirst(&lista, 1, 1);
    ImprimirListaLast(&lista, 1, 0);
    VolcarSalida();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "0->1\n3\n");
    while (AniadirElemento(&lista, "x") > 0) continue;
    EXPECT_EQ(AniadirElementoYaAsignado(&lista, lista.elementos[0]) == -1 ? errno : 0, ENOSPC);
    EXPECT_EQ(BorrarElemento(&lista, "x"), 0);
    EXPECT_EQ(ElementosEnLista(&lista), kMaxElementos - 1);
    BorrarLista(&lista);
    for (const char *elemento : lista.elementos) ASSERT_EQ(elemento, nullptr);
}

} // namespace
