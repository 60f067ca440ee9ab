#include <cerrno>
#include <cstring>

#include "tests/driver/session.h"

namespace {

using namespace escenario;
using std::string;
using Pasos = std::vector<std::pair<string, string>>;

/// A shell in a directory of its own.
struct Shell {
    DirectorioTemporal dir;
    Sesion s{[this] {
        Opciones o;
        o.directorio = dir.ruta();
        return o;
    }()};

    string operator()(const string &linea) { return s.Linea(linea); }
    string Bloque(int tam) { return Direccion(s.Linea("memmalloc " + std::to_string(tam))); }
    void Seguir(const Pasos &pasos) {
        for (const auto &[linea, texto] : pasos) EXPECT_EQ(s.Linea(linea), texto) << linea;
    }
};

string Mas(const string &dir, unsigned long n) {
    char texto[32];
    snprintf(texto, sizeof texto, "%#lx", strtoul(dir.c_str(), nullptr, 16) + n);
    return texto;
}

string Fallo(const string &que, int motivo) { return "Imposible " + que + ": " + strerror(motivo) + "\n"; }

TEST(MemFSCommands, FormatHeapBlocksAndFindThemBySearching) {
    Shell sh;
    static constexpr struct {
        int tam, capacidad, libres;
    } filas[] = {{16384, 6, 14720}, {20000, 6, 18336}, {40960, 12, 37664}};
    string encontrados, primero;
    for (const auto &f : filas) {
        const string dir = sh.Bloque(f.tam), texto = sh("memfs-format " + dir);
        char cabecera[100], resto[100];
        snprintf(cabecera, 100, "SF de %d bytes con capacidad para %d ficheros ", f.tam, f.capacidad);
        snprintf(resto, 100, "\n      %d bytes desponibles. Total 0 fichero(s) \n", f.libres);
        EXPECT_EQ(texto.find(cabecera), 0u) << texto;
        EXPECT_NE(texto.find(resto), string::npos) << texto;
        encontrados += "Sistema de ficheros valido en " + dir + "\n";
        if (primero.empty()) primero = dir;
    }
    sh("writefile imagen " + primero + " 16384");
    sh("memmmap imagen"); // no access
    const string mapeado = Direccion(sh("memmmap imagen r"));
    const string noValido = "   id_mem no valido (no corresponde a un bloque de malloc o shared)\n";
    const string enMapeado = "Sistema de ficheros valido en " + mapeado + "\n";
    sh.Seguir({{"memfs-format " + sh.Bloque(16383),
                "   tamano bloque memoria demasiado pequeno: 16383 (min 16384)\n"},
               {"format " + Mas(primero, 16), noValido},
               {"memfs-format " + mapeado, noValido},
               {"memfs-list " + mapeado, "Id sistema de ficheros no valido\n"},
               {"memfs-list " + sh.Bloque(1), "Id sistema de ficheros no valido\n"}});
    EXPECT_EQ(sh("memfs -search"), encontrados + enMapeado);
    EscribirFichero(sh.dir / "imagen", ""); // the two mappings have lost what was under them
    EXPECT_EQ(sh("memfs-find"), encontrados);
}

TEST(MemFSCommands, CopyMoveAndDeleteBetweenDiskAndBlock) {
    Shell sh;
    const string dir = sh.Bloque(16384);
    sh("memfs-format " + dir);
    EscribirFichero(sh.dir / "f", "contenido");
    EscribirFichero(sh.dir / "lleno", string(14720 - 9, 'x'));
    sh.Seguir({{"assign buf " + dir, ""},
               {"memfs-cp f buf:a", ""},
               {"memfs-cp buf:a copia", ""},
               {"memfs-cp buf:a copia", Fallo("copiar fichero", EEXIST)},
               {"copy f " + dir + ":abc", ""},
               {"memfs-cp f buf:ab", Fallo("copiar fichero", EEXIST)},
               {"memfs-del buf:abc", ""},
               {"memfs-cp lleno buf:b", Fallo("copiar fichero", ENOSPC)},
               {"memfs-cp f buf:" + string(256, 'n'), Fallo("copiar fichero", ENAMETOOLONG)},
               {"memfs-cp zz:a b", Fallo("copiar fichero", ENXIO)},
               {"memfs-cp buf:zz b", Fallo("copiar fichero", ENOENT)},
               {"memfs -copy buf:a buf:", ""},
               {"memfs-mv buf:a buf:c:d", ""},
               {"memfs-mv f movido", ""},
               {"memfs -move movido copia", Fallo("mover fichero", EEXIST)},
               {"memfs-del f", Fallo("borrar fichero", ENOENT)},
               {"memfs -delete copia", ""},
               {"sfmemoria", "Uso sfmemoria [-format|-list|-search|-label|-copy|-move|-delete] ....\n"},
               {"writefile b " + dir + " 16384", "escritos 16384 bytes en b desde " + dir + "\n"}});
    EXPECT_EQ(LeerFichero(sh.dir / "movido"), "contenido");
    const string bytes = LeerFichero(sh.dir / "b");
    const std::pair<size_t, uint32_t> enteros[] = {
        {0, 0x110691}, {4, 6}, {8, 2}, {12, 16384}, {16, 14702}, {288, 9}, {292, 0}, {560, 9}, {564, 9}};
    for (const auto &[desde, valor] : enteros)
        EXPECT_EQ(bytes.substr(desde, 4), string(reinterpret_cast<const char *>(&valor), 4)) << desde;
    EXPECT_STREQ(bytes.c_str() + 32, "SinNombre");
    EXPECT_STREQ(bytes.c_str() + 32 + 272, "c:d");
    EXPECT_EQ(bytes.substr(32 + 272 * 6, 18), "contenidocontenido");
}

TEST(MemFSCommands, RefuseSpoiledHeadersAndStillListSpoiledEntries) {
    Shell sh;
    const string dir = sh.Bloque(16384);
    EscribirFichero(sh.dir / "f", "contenido");
    sh("memfs-format " + dir);
    sh("memfs-cp f " + dir + ":f");
    sh("memfill " + Mas(dir, 32) + " 256 'x'");
    sh("memfill " + Mas(dir, 32 + 256) + " 4 255");
    const string lista = sh("memfs-list " + dir);
    EXPECT_NE(lista.find("(" + Mas(dir, 1664) + "): 4294967295 bytes  "), string::npos) << lista;
    EXPECT_NE(lista.find(" " + string(255, 'x') + "\n"), string::npos) << lista;
    EXPECT_EQ(sh("memfs-cp " + dir + ":x g"), Fallo("copiar fichero", EIO));
    sh("memfill " + Mas(dir, 14) + " 1 1"); // the total size now exceeds the block
    sh.Seguir({{"memfs-list " + dir, "Id sistema de ficheros no valido\n"},
               {"memfs-find", ""},
               {"memfs-cp f " + dir + ":g", Fallo("copiar fichero", ENXIO)}});
}

TEST(MemFSCommands, TwoShellsShareTheSFOfASegment) {
    Shell uno, dos;
    const string clave = std::to_string(ClaveUnica());
    const string aqui = Direccion(uno("memcreateshared " + clave + " 40960"));
    const string alli = Direccion(dos("memshared " + clave));
    uno("delkey " + clave); // the segment lasts as long as it is attached
    uno("memfs-format " + aqui);
    EscribirFichero(uno.dir / "f", "compartido");
    EXPECT_EQ(uno("memfs-mv f " + aqui + ":f"), "");
    EXPECT_EQ(dos("memfs-mv " + alli + ":f g"), "");
    EXPECT_EQ(LeerFichero(dos.dir / "g"), "compartido");
    EXPECT_NE(uno("memfs-list " + aqui).find("37664 bytes desponibles. Total 0 "), string::npos);
}

TEST(Labels, NameAddressesByTheirFirst7Characters) {
    Shell sh;
    const string dir = sh.Bloque(16384);
    const string b = "LABEL:        b, ADDR: " + dir + " ", c = "LABEL:        c, ADDR: 0xa000 \n";
    sh.Seguir({{"label -add datos1234 a000", ""},
               {"assign b " + dir, ""},
               {"assign c 0xa000", ""},
               {"memfs-label", "LABEL:  datos12, ADDR: 0xa000 \n" + b + "\n" + c},
               {"assign -del datos12X", ""},
               {"assign -del datos12", Fallo("eliminar assign", ENOENT)},
               {"assign -add x 0", "direccion de memoria no valida: 0\n"},
               {"assign x zz", "direccion de memoria no valida: zz\n"},
               {"label a b c", "uso: label [-add|-del|-clear] ....\n"},
               {"label -add a", "uso: label -add nombre addr\n"},
               {"assign -del", "uso: assign -del nombre\n"}});
    sh("memfs-format b");
    sh.Seguir({{"memfs -label", b + "Sistema de Ficheros valido\n" + c},
               {"assign -clear", ""},
               {"assign", ""},
               {"memfs-list b", "Id sistema de ficheros no valido\n"}});
}

} // namespace
