// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Listing, EveryOneGoesByTheTimeZoneOfTheMoment) {
    Sesion s({.entorno = {"TZ=UTC0"}});
    EscribirFichero(s / "f", "");
    const std::string sf = s.Dir("memmalloc 16384");
    s.Linea("memfs-format " + sf);
    for (const std::string &linea : {std::string("stat -acc f"), std::string("listdir -acc f"),
                                     "memfs-list " + sf, std::string("malloc")}) {
        const std::string antes = s.Linea(linea);
        s.Linea("changevar -p TZ AAA-12:30");
        EXPECT_NE(s.Linea(linea), antes);
        s.Linea("changevar -p TZ UTC0");
    }
}

} // namespace
