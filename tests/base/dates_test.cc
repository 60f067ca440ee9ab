// SPDX-License-Identifier: MIT

#include "base/dates.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>

namespace {

void PonerZona(const char *zona) {
    setenv("TZ", zona, 1);
    LeerZonaHoraria();
}

TEST(Dates, TheZoneIsThatOfTheLastLook) {
    PonerZona("UTC0");
    EXPECT_STREQ(Fecha2(0), "1970/01/01-00:00");
    setenv("TZ", "AAA-5", 1);
    EXPECT_STREQ(Fecha2(60), "1970/01/01-00:01");
    LeerZonaHoraria();
    EXPECT_STREQ(Fecha2(60), "1970/01/01-05:01");
    EXPECT_STREQ(Fecha2(0), "1970/01/01-05:00");
}

TEST(Dates, ShowYearsWholeAndSecondsWhereThereIsNoYear) {
    PonerZona("UTC0");
    static constexpr struct {
        time_t cuando;
        const char *textos[6];
    } filas[] = {
        {1709647629,
         {"2024/03/05-14:07", "05/03/2024", "14:07:09", "2024/03/05 14:07:9", "Mar  5 14:07",
          "Tue Mar  5 14:07:09 2024"}},
        {-51266447455,
         {" 345/06/07-08:09", "07/06/0345", "08:09:05", " 345/06/07 08:09:5", "Jun  7 08:09",
          "Thu Jun  7 08:09:05 345"}},
        {67768036191676799, // the last one whose years since 1900 an int holds
         {"2147485547/12/31-23:59", "31/12/2147485547", "23:59:59", "2147485547/12/31 23:59:59",
          "Dec 31 23:59", "Wed Dec 31 23:59:59 2147485547"}},
        {LONG_MAX,
         {"9223372036854775807", "9223372036854775807", "9223372036854775807", "9223372036854775807",
          "9223372036854775807", "9223372036854775807"}},
    };
    const char *(*const formas[])(time_t) = {Fecha2, ConvertirDia, ConvertirHora,
                                             fecha,  ponFecha,     TextoFecha};
    for (const auto &fila : filas)
        for (int i = 0; i < 6; i++) EXPECT_STREQ(formas[i](fila.cuando), fila.textos[i]) << fila.cuando;
}

} // namespace
