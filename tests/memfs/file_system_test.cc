// SPDX-License-Identifier: MIT

#include "memfs/file_system.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <random>

#include "memfs/disk_transfer.h"
#include "memfs/file_copy.h"
#include "memory/block_list.h"
#include "tests/driver/session.h"

namespace {

using escenario::DirectorioTemporal;
using escenario::EscribirFichero;
using escenario::LeerFichero;
using std::string;

/// A recorded block with marked bytes on both sides: every write outside it shows.
struct Bloque {
    static constexpr size_t kMarca = 256;
    explicit Bloque(size_t n) : tam(n), bytes(n + 2 * kMarca, '\x5a') { InsertarNodoMalloc(&L, sf(), n); }
    Bloque(const Bloque &) = delete;
    ~Bloque() { EliminarNodoDireccion(&L, sf()); }
    SF *sf() { return reinterpret_cast<SF *>(bytes.data() + kMarca); }
    Idfich Id(const char *nombre) { return {reinterpret_cast<uint64_t>(sf()), nombre}; }
    uint32_t Entero(size_t desde) const {
        uint32_t n;
        memcpy(&n, bytes.data() + kMarca + desde, sizeof n);
        return n;
    }
    bool MarcasIntactas() const {
        const string marca(kMarca, '\x5a');
        return bytes.substr(0, kMarca) == marca && bytes.substr(kMarca + tam) == marca;
    }
    size_t tam;
    string bytes;
};

/// What an SF must hold, and what its operations must answer.
struct Modelo {
    struct Fichero {
        string nombre, bytes;
    };
    uint32_t capacidad;
    size_t libres;
    std::vector<Fichero> ficheros;

    int Buscar(const string &nombre) const {
        for (size_t i = 0; i < ficheros.size(); i++)
            if (ficheros[i].nombre.compare(0, nombre.size(), nombre) == 0) return static_cast<int>(i);
        return -1;
    }
    int Aniadir(const string &nombre, const string &bytes) {
        if (nombre.size() > 255) return ENAMETOOLONG;
        if (bytes.size() >= libres || ficheros.size() == capacidad) return ENOSPC;
        if (Buscar(nombre) != -1) return EEXIST;
        ficheros.push_back({nombre, bytes});
        libres -= bytes.size();
        return 0;
    }
    void Borrar(const string &nombre) {
        const int i = Buscar(nombre);
        libres += ficheros[i].bytes.size();
        ficheros.erase(ficheros.begin() + i);
    }
};

/// Reads the block byte by byte, by the offsets of the layout, and compares.
void Comparar(const Bloque &b, const Modelo &m) {
    ASSERT_TRUE(b.MarcasIntactas());
    EXPECT_EQ(b.Entero(0), 1115793u);
    EXPECT_EQ(b.Entero(4), m.capacidad);
    ASSERT_EQ(b.Entero(8), m.ficheros.size());
    EXPECT_EQ(b.Entero(12), b.tam);
    EXPECT_EQ(b.Entero(16), m.libres);
    EXPECT_EQ(b.Entero(20), 0x5a5a5a5au); // never written
    const char *inicio = b.bytes.data() + Bloque::kMarca;
    size_t fin = 0, entrada = 32;
    for (const auto &f : m.ficheros) {
        EXPECT_STREQ(inicio + entrada, f.nombre.c_str());
        ASSERT_EQ(b.Entero(entrada + 256), f.bytes.size());
        ASSERT_EQ(b.Entero(entrada + 260), fin);
        EXPECT_EQ(memcmp(inicio + 32 + 272 * m.capacidad + fin, f.bytes.data(), f.bytes.size()), 0);
        fin += f.bytes.size();
        entrada += 272;
    }
}

TEST(MemFS, ThousandsOfRandomOperationsAgreeWithAModel) {
    DirectorioTemporal dir;
    const string de = dir / "origen", a = dir / "destino";
    std::mt19937 azar(20231116);
    auto hasta = [&](unsigned n) { return static_cast<int>(azar() % n); };
    auto nombreAlAzar = [&] {
        string nombre(hasta(40) == 0 ? 254 + hasta(3) : hasta(12), 'a');
        for (size_t i = 0; i < nombre.size(); i += 3) nombre[i] = static_cast<char>('a' + hasta(2));
        return nombre;
    };
    Bloque bloques[2] = {Bloque(16384), Bloque(40960)};
    Modelo modelos[2] = {{6, 14720, {}}, {12, 37664, {}}};
    for (int i : {0, 1}) ASSERT_EQ(FormatearSF(bloques[i].sf(), modelos[i].capacidad, bloques[i].tam), 0);

    enum { kDeDisco, kDeDiscoTambien, kEntreSF, kMover, kADisco, kBorrar, kOperaciones };
    for (int paso = 0; paso < 6000; paso++) {
        SCOPED_TRACE(paso);
        const int op = hasta(kOperaciones), x = hasta(2), y = hasta(2);
        const string n1 = nombreAlAzar(), n2 = nombreAlAzar();
        const Idfich origen = bloques[x].Id(n1.c_str()), destino = bloques[y].Id(n2.c_str());
        const string antes = bloques[0].bytes + bloques[1].bytes;
        const int i = modelos[x].Buscar(n1);
        string bytes = i == -1 ? "" : modelos[x].ficheros[i].bytes;
        if (op < kEntreSF) { // at times exactly what is free
            const int tam = hasta(8) ? hasta(5000) : static_cast<int>(modelos[y].libres) - hasta(2);
            bytes.resize(tam > 0 ? tam : 0);
            for (char &c : bytes) c = static_cast<char>(azar());
            EscribirFichero(de, bytes);
        }
        const long dado = op < kEntreSF    ? CopiarFicheroSF({kSFDisco, de.c_str()}, destino)
                          : op == kEntreSF ? CopiarFicheroSF(origen, destino)
                          : op == kMover   ? MoverFicheroSF(origen, destino)
                          : op == kADisco  ? CopiarFicheroSF(origen, {kSFDisco, a.c_str()})
                                           : BorrarFichero(origen);
        const int obtenido = errno;
        int motivo = op >= kEntreSF && i == -1 ? ENOENT : 0;
        if (motivo == 0 && op <= kMover) motivo = modelos[y].Aniadir(n2, bytes);
        if (motivo == 0 && (op == kMover || op == kBorrar)) modelos[x].Borrar(n1);
        if (motivo == 0) {
            ASSERT_EQ(dado, op == kMover || op == kBorrar ? 0 : static_cast<long>(bytes.size()));
            ASSERT_TRUE(op != kADisco || LeerFichero(a) == bytes);
        } else {
            ASSERT_EQ(dado == -1 ? obtenido : 0, motivo);
            ASSERT_TRUE(bloques[0].bytes + bloques[1].bytes == antes);
        }
        unlink(a.c_str());
        for (int b : {0, 1}) ASSERT_NO_FATAL_FAILURE(Comparar(bloques[b], modelos[b]));
    }
}

TEST(MemFS, ASpoiledSFIsValidByItsHeaderAndTakesNoOperationOutsideItsBlock) {
    DirectorioTemporal dir;
    const string de = dir / "origen", a = dir / "copia";
    constexpr size_t kUno = 32, kDos = kUno + 272, kTres = kDos + 272, kTam = 256, kDespl = 260;
    // The 32-bit field spoiled; whether the SF is still valid; errno of copying "dos" out, of adding a file
    // and of deleting "uno" (0: it is done).
    static constexpr struct {
        const char *que;
        size_t desde;
        uint32_t valor;
        int valido, copiar, aniadir, borrar;
        size_t bloque = 16384; // bytes recorded
    } filas[] = {{"magic", 0, 0x110692, 0, 0, 0, ENXIO},
                 {"more files than entries", 8, 7, 0, 0, ENOSPC, ENXIO},
                 {"more free than there is", 16, 14721, 0, 0, 0, ENXIO},
                 {"all of it free, with files", 16, 14720, 1, 0, 0, EIO},
                 {"larger than its block", 12, 1 << 30, 1, 0, 0, 0},
                 {"directory beyond the end", 4, 61, 1, EIO, EIO, EIO},
                 {"capacity that wraps 32 bits", 4, 15790321, 1, EIO, EIO, EIO},
                 {"size of a file copied", kDos + kTam, 0xffffffff, 1, EIO, 0, EIO},
                 {"the size that just fits", kDos + kTam, 14620, 1, 0, 0, EIO},
                 {"a byte more", kDos + kTam, 14621, 1, EIO, 0, EIO},
                 {"size of a file deleted", kUno + kTam, 14721, 1, 0, 0, EIO},
                 {"size of a file moved", kTres + kTam, 14720 - 299, 1, 0, EIO, EIO},
                 {"offset that leaves no room", kTres + kDespl, 14420, 1, 0, EIO, 0},
                 {"the last size that can be moved", kTres + kTam, 14420, 1, 0, EIO, 0},
                 {"files that overlap and fill it when moved", kDos + kTam, 14420, 1, 0, 0, 0},
                 {"a gap between files that leaves just the room", kTres + kDespl, 14120, 1, 0, 0, 0},
                 {"block without the last entry", 20, 0, 1, EIO, EIO, EIO, kTres + 271},
                 {"in no block", 20, 0, 1, EIO, EIO, EIO, kSinTamano},
                 {"block without the last file", 20, 0, 1, 0, EIO, EIO, 1664 + 300}};
    for (const auto &fila : filas) {
        SCOPED_TRACE(fila.que);
        Bloque b(16384);
        ASSERT_EQ(FormatearSF(b.sf(), 6, b.tam), 0);
        int tam = 0;
        for (const char *nombre : {"uno", "dos", "tres"}) {
            EscribirFichero(de, string(tam += 100, nombre[0]));
            ASSERT_EQ(CopyDiskMem(de.c_str(), b.Id(nombre)), tam);
        }
        memcpy(b.bytes.data() + Bloque::kMarca + fila.desde, &fila.valor, sizeof fila.valor);
        EXPECT_EQ(EsValidoSF(b.sf()), fila.valido);
        L.nodos[BuscarNodoDireccion(&L, b.sf())]->tamano = fila.bloque;
        auto comprobar = [&b, antes = b.bytes](long hecho, int motivo) {
            EXPECT_EQ(hecho == -1 ? errno : 0, motivo);
            EXPECT_TRUE(b.MarcasIntactas());
            EXPECT_TRUE(motivo == 0 || b.bytes == antes);
            b.bytes = antes;
        };
        comprobar(CopyMemDisk(b.Id("dos"), a.c_str()), fila.copiar);
        comprobar(CopyDiskMem(de.c_str(), b.Id("nuevo")), fila.aniadir);
        comprobar(BorrarFicheroSF(b.Id("uno")), fila.borrar);
        unlink(a.c_str());
    }
}

TEST(MemFS, AMoveAccountsForTheBytesPlacedAndLeavesNoCopyWhenTheSourceStays) {
    // Kernel files do not tell their size: these give fewer bytes, and more; nobody deletes them.
    const char *corto = "/sys/kernel/mm/transparent_hugepage/enabled", *largo = "/proc/self/status";
    if (access(corto, R_OK) == -1 || access(largo, R_OK) == -1) GTEST_SKIP() << "no such files here";
    Bloque b(16384);
    ASSERT_EQ(FormatearSF(b.sf(), 6, b.tam), 0);
    const string bytes = LeerFichero(corto);
    EXPECT_EQ(CopyDiskMem(corto, b.Id("corto")), static_cast<long>(bytes.size()));
    EXPECT_EQ(CopyDiskMem(largo, b.Id("largo")), 0);
    EXPECT_EQ(MoverFicheroSF({kSFDisco, corto}, b.Id("x")) == -1 ? errno : 0, EBUSY); // as if it had grown
    EXPECT_EQ(MoverFicheroSF({kSFDisco, largo}, b.Id("x")) == -1 ? errno : 0, EPERM);
    Comparar(b, {6, 14720 - bytes.size(), {{"corto", bytes}, {"largo", ""}}});
}

TEST(DiskTransfer, IsOfTheWholeFileOrFails) {
    DirectorioTemporal dir;
    constexpr size_t kPagina = 65536, kGrande = (1UL << 30) + 5; // more than one call moves
    EscribirFichero(dir / "f", string(kPagina, 'x'));
    void *lugar = mmap(nullptr, kGrande, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_EQ(mprotect(lugar, kPagina, PROT_READ | PROT_WRITE), 0);
    char *final = static_cast<char *>(lugar) + kPagina - 1; // one byte can be read there, and no more
    EXPECT_EQ(LeerFicheroDisco((dir / "f").c_str(), final, kPagina) == -1 ? errno : 0, EFAULT);
    EXPECT_EQ(EscribirFicheroDisco("/dev/null", lugar, kGrande, 1), static_cast<long>(kGrande));
}

TEST(FormatearSF, RefusesWhatItCannotHold) {
    Bloque b(32); // which it must not write to
    EXPECT_EQ(FormatearSF(b.sf(), 6, TamanoSF(6)) == -1 ? errno : 0, ENOSPC);
    EXPECT_EQ(FormatearSF(b.sf(), 6, 1ULL << 32) == -1 ? errno : 0, EFBIG);
    EXPECT_EQ(b.bytes, Bloque(32).bytes);
}

} // namespace
