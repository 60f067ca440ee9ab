// SPDX-License-Identifier: MIT

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "tests/driver/session.h"

namespace {

using namespace escenario;
using std::string;

/// A shell in a directory of its own.
struct Shell {
    DirectorioTemporal dir;
    Sesion s{{.directorio = dir.ruta()}};

    string operator()(const string &linea) { return s.Linea(linea); }
    string Bloque(int tam) { return Direccion(s.Linea("memmalloc " + std::to_string(tam))); }
    void Seguir(const std::vector<std::pair<string, string>> &pasos) {
        for (const auto &[linea, texto] : pasos) EXPECT_EQ(s.Linea(linea), texto) << linea;
    }
};

string Mas(const string &dir, unsigned long n) {
    char texto[32];
    snprintf(texto, sizeof texto, "%#lx", strtoul(dir.c_str(), nullptr, 16) + n);
    return texto;
}

string Fallo(const string &que, int motivo) { return "Imposible " + que + ": " + strerror(motivo) + "\n"; }

const string kNoSF = "Id sistema de ficheros no valido\n", kHayUno = "Sistema de ficheros valido en ";

TEST(MemFSCommands, FormatBlocksAndSegmentsAndFindThemBySearching) {
    Shell sh;
    const string clave = std::to_string(ClaveUnica()), dos = sh.Bloque(40960);
    const string uno = Direccion(sh("memcreateshared " + clave + " 20000"));
    sh("delkey " + clave); // the segment lasts as long as it is attached
    const string texto = sh("memfs-format " + dos);
    EXPECT_EQ(texto.find("SF de 40960 bytes con capacidad para 12 ficheros "), 0u) << texto;
    EXPECT_NE(texto.find("\n      37664 bytes desponibles. Total 0 fichero(s) \n"), string::npos) << texto;
    EXPECT_NE(sh("memfs-format " + uno).find(" 6 ficheros "), string::npos);
    sh("writefile imagen " + uno + " 20000");
    sh("memmmap imagen"); // no access
    const string mapeado = Direccion(sh("memmmap imagen r"));
    const string noBloque = "   id_mem no valido (no corresponde a un bloque de malloc o shared)\n";
    const string encontrados = kHayUno + dos + "\n" + kHayUno + uno + "\n";
    sh.Seguir({{"memfs-format " + sh.Bloque(16383),
                "   tamano bloque memoria demasiado pequeno: 16383 (min 16384)\n"},
               {"format " + Mas(uno, 16), noBloque},
               {"memfs-format " + mapeado, noBloque},
               {"memfs-list " + mapeado, kNoSF},
               {"memfs -search", encontrados + kHayUno + mapeado + "\n"}});
    EscribirFichero(sh.dir / "imagen", ""); // the two mappings have lost what was under them
    EXPECT_EQ(sh("memfs-find"), encontrados);
}

TEST(MemFSCommands, CopyMoveDeleteAndListWhatIsSoundAndNoMore) {
    Shell sh;
    const string dir = sh.Bloque(16384);
    sh("memfs-format " + dir);
    EscribirFichero(sh.dir / "f", "contenido");
    sh.Seguir({{"assign buf " + dir, ""},
               {"memfs-cp f buf:a", ""},
               {"memfs-cp buf:a copia", ""},
               {"memfs-cp buf:a copia", Fallo("copiar fichero", EEXIST)},
               {"copy f " + dir + ":abc", ""},
               {"memfs-cp f buf:ab", Fallo("copiar fichero", EEXIST)},
               {"memfs-del buf:abc", ""},
               {"memfs-cp zz:a b", Fallo("copiar fichero", ENXIO)},
               {"memfs-cp buf:zz b", Fallo("copiar fichero", ENOENT)},
               {"memfs -copy buf:a buf:", ""},
               {"memfs-mv buf:a buf:c:d", ""},
               {"memfs-mv f movido", ""},
               {"memfs -move movido copia", Fallo("mover fichero", EEXIST)},
               {"memfs-del f", Fallo("borrar fichero", ENOENT)},
               {"sfmemoria", "Uso sfmemoria [-format|-list|-search|-label|-copy|-move|-delete] ....\n"}});
    EXPECT_EQ(LeerFichero(sh.dir / "movido"), "contenido");
    const string lista = sh("memfs-list buf");
    EXPECT_NE(lista.find("(" + Mas(dir, 1664) + "):          9 bytes  "), string::npos) << lista;
    EXPECT_NE(lista.find(" SinNombre\n(" + Mas(dir, 1664 + 9) + ")"), string::npos) << lista;
    EXPECT_NE(lista.find(" c:d\n"), string::npos) << lista;

    // A move that fails changes nothing, and takes no FIFO for a file.
    ASSERT_EQ(mkfifo((sh.dir / "cola").c_str(), 0600) + symlink("copia", (sh.dir / "enlace").c_str()), 0);
    sh.Seguir({{"memfs-mv /proc/version v", Fallo("mover fichero", EPERM)},
               {"memfs-mv v buf:v", Fallo("mover fichero", ENOENT)},
               {"memfs-mv . buf:v", Fallo("mover fichero", EISDIR)},
               {"memfs-mv cola buf:v", Fallo("mover fichero", EINVAL)},
               {"memfs-mv enlace buf:v", ""},
               {"memfs-del enlace", Fallo("borrar fichero", ENOENT)},
               {"delete cola copia", ""}});

    // What another program spoiled is listed as it stands, as far as the block goes.
    sh("memfill " + Mas(dir, 32) + " 256 'x'");
    sh("memfill " + Mas(dir, 32 + 256) + " 4 255");
    const string rota = sh("memfs-list buf");
    EXPECT_NE(rota.find("(" + Mas(dir, 1664) + "): 4294967295 bytes  "), string::npos) << rota;
    EXPECT_NE(rota.find(" " + string(255, 'x') + "\n("), string::npos) << rota;
    EXPECT_EQ(sh("memfs-cp buf:x g"), Fallo("copiar fichero", EIO));
    const string menor = sh.Bloque(19), minimo = sh.Bloque(20);
    for (const string &bloque : {minimo, menor}) sh("memcopy " + dir + " " + bloque + " 19");
    sh("memfill " + Mas(minimo, 19) + " 1 0");
    sh.Seguir({{"memfs-list " + menor, kNoSF},
               {"memfs-find", kHayUno + dir + "\n" + kHayUno + minimo + "\n"},
               {"memfs-del " + minimo + ":x", Fallo("borrar fichero", EIO)}});
    const string cabecera = sh("memfs-list " + minimo);
    EXPECT_EQ(std::count(cabecera.begin(), cabecera.end(), '\n'), 2) << cabecera;
    const time_t cero = 0; // what stands for the time that the block ends before
    EXPECT_NE(cabecera.find(string(" 6 ficheros ") + ctime(&cero)), string::npos) << cabecera;
    sh("memfill " + Mas(minimo, 8) + " 4 0"); // no files, and no room for an entry
    EXPECT_EQ(sh("memfs-cp /dev/null " + minimo + ":x"), Fallo("copiar fichero", EIO));

    // It is gone with its block.
    sh("free " + dir);
    EXPECT_EQ(sh("memfs-list " + sh.Bloque(16384)), kNoSF);
}

TEST(Labels, NameAddressesByTheirFirst7CharactersAndNumber2047) {
    Shell sh;
    const string dir = sh.Bloque(16384);
    sh("memfs-format " + dir);
    const string b = "LABEL:        b, ADDR: " + dir + " Sistema de Ficheros valido\n";
    sh.Seguir({{"label -add datos1234 a000", ""},
               {"assign b " + dir, ""},
               {"assign c 0xb000", ""},
               {"memfs-label", "LABEL:  datos12, ADDR: 0xa000 \n" + b + "LABEL:        c, ADDR: 0xb000 \n"},
               {"assign -del datos12X", ""},
               {"assign -del datos12", Fallo("eliminar assign", ENOENT)},
               {"assign x zz", "direccion de memoria no valida: zz\n"},
               {"label a b c", "uso: label [-add|-del|-clear] ....\n"},
               {"assign -clear", ""},
               {"memfs-list b", kNoSF}});
    for (int i = 0; i < 2047; i++) EXPECT_EQ(sh("assign " + std::to_string(i) + " " + Mas("0x1000", i)), "");
    sh.Seguir({{"assign otro 9", Fallo("aniadir assign", ENOSPC)},
               {"assign 2046 abc", ""}, // in place of its address
               {"assign -del 0", ""}});
    const string lista = sh("assign");
    EXPECT_EQ(lista.find("LABEL:        1, ADDR: 0x1001 \nLABEL:        2, ADDR: 0x1002 \n"), 0u) << lista;
    EXPECT_EQ(lista.substr(lista.rfind("LABEL")), "LABEL:     2046, ADDR: 0xabc \n");
}

} // namespace
