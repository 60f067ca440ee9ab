// SPDX-License-Identifier: MIT

#include "environment/variables.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "environment/wrong_changes.h"

namespace {

TEST(Variables, AreFoundAndChangedInTheirPlaceAndTheReasonIsTold) {
    putenv(const_cast<char *>("PUESTA=0"));      // the library's own array is made only once
    const std::string valor(2001, 'v');          // more than is kept at hand once it has been released
    const std::string puesto = "LARGO=" + valor; // made before the heap is measured
    const size_t antes = mallinfo2().uordblks;
    char ab[] = "AB=1", a[] = "A=2", c[] = "C=345", largo[512] = "";
    std::fill_n(largo, 511, 'n');
    char *entorno[] = {ab, a, c, nullptr};
    const auto motivo = [](int resultado) { return resultado == -1 ? errno : resultado; };
    EXPECT_EQ(motivo(BuscarVariable("A", nullptr)), ENOENT);
    EXPECT_EQ(CambiarVariable("A", valor.c_str(), entorno), 1);
    EXPECT_EQ(SustituirVariable("A", "LARGO", valor.c_str(), entorno), 1);
    EXPECT_EQ(entorno[1], puesto);
    EXPECT_EQ(malloc_usable_size(entorno[1]), puesto.size() + 1); // 8 more than a multiple of 16
    EXPECT_EQ(motivo(SustituirVariable("LARGO", largo, "z", entorno)), ENAMETOOLONG);
    EXPECT_EQ(CambiarVariablePutenv("PUESTA", valor.c_str()), 0);
    EXPECT_EQ(getenv("PUESTA"), valor);
    unsetenv("PUESTA");
    EntornoClear();
    EXPECT_EQ(mallinfo2().uordblks, antes) << "what was placed is released";

    entorno[1] = a;
    EXPECT_EQ(CambiarVariableMalOverwrite("C", "67", entorno), 2);
    EXPECT_STREQ(c, "C=67");
    EXPECT_EQ(motivo(CambiarVariableMalOverwrite("C", "678", entorno)), ENOSPC);
    EXPECT_EQ(CambiarVariableMalStatic("A", "s", entorno), 1);
    EXPECT_STREQ(entorno[1], "A=s");
    EXPECT_EQ(motivo(CambiarVariableMalStatic("B", largo, entorno)), ENOENT);
    for (auto cambiar : {CambiarVariableMalStatic, CambiarVariableMalAutomatic}) {
        entorno[1] = a;
        EXPECT_EQ(motivo(cambiar("A", largo, entorno)), ENAMETOOLONG);
        EXPECT_EQ(motivo(cambiar("A", largo, nullptr)), ENAMETOOLONG);
        EXPECT_EQ(motivo(cambiar("B", "1", entorno)), ENOENT);
        EXPECT_EQ(cambiar("PUESTA", "1", nullptr), 0);
        unsetenv("PUESTA");
    }
    EXPECT_EQ(CambiarVariableMalAutomatic("AB", "1", entorno), 0);
    EXPECT_NE(entorno[0], ab);
}

} // namespace
