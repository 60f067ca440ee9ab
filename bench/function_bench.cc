// SPDX-License-Identifier: MIT

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/element_list.h"
#include "memfs/file_system.h"
#include "memory/block_list.h"
#include "memory/dump.h"
#include "memory/fill.h"
#include "shell/command_names.h"
#include "shell/historic.h"

// Single functions: those that run once for each line, row, byte or file. Standard output goes nowhere; the
// times are written to the file named with --benchmark_out.

namespace {

void BM_RealCommand(benchmark::State &estado, const char *palabra) {
    for (auto _ : estado) benchmark::DoNotOptimize(RealCommand(palabra));
}
BENCHMARK_CAPTURE(BM_RealCommand, command, "pid");
BENCHMARK_CAPTURE(BM_RealCommand, alias, "showlabels");
BENCHMARK_CAPTURE(BM_RealCommand, program, "/bin/true");

void BM_HistoricAdd(benchmark::State &estado) {
    const int previas = static_cast<int>(estado.range(0));
    HistoricClear();
    for (int i = 0; i < previas; i++) HistoricAdd("pid");
    constexpr int kTanda = kMaxElementos - 4000;
    while (estado.KeepRunningBatch(kTanda)) {
        for (int i = 0; i < kTanda; i++) HistoricAdd("pid");
        estado.PauseTiming();
        HistoricClear();
        for (int i = 0; i < previas; i++) HistoricAdd("pid");
        estado.ResumeTiming();
    }
    HistoricClear();
}
BENCHMARK(BM_HistoricAdd)->Arg(500)->Arg(4000);

void BM_MostrarMemoria(benchmark::State &estado) {
    const std::vector<char> bytes(static_cast<size_t>(estado.range(0)), 'x');
    for (auto _ : estado) MostrarMemoria(bytes.data(), bytes.size());
    estado.SetBytesProcessed(estado.iterations() * estado.range(0));
}
BENCHMARK(BM_MostrarMemoria)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);

void BM_LlenarMemoria(benchmark::State &estado) {
    std::vector<char> bytes(1 << 20);
    const int paso = static_cast<int>(estado.range(0));
    for (auto _ : estado) LlenarMemoria(bytes.data(), bytes.size(), 'x', paso);
    estado.SetBytesProcessed(estado.iterations() * static_cast<int64_t>(bytes.size()) / paso);
}
BENCHMARK(BM_LlenarMemoria)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

void BM_memset(benchmark::State &estado) {
    std::vector<char> bytes(1 << 20);
    for (auto _ : estado) {
        memset(bytes.data(), 'x', bytes.size());
        benchmark::ClobberMemory();
    }
    estado.SetBytesProcessed(estado.iterations() * static_cast<int64_t>(bytes.size()));
}
BENCHMARK(BM_memset)->Unit(benchmark::kMicrosecond);

/// An SF of `num` files of `tam` bytes, built by hand: the disk is not what is measured.
void LlenarSF(SF *sf, uint32_t num, uint32_t tam, uint64_t total) {
    FormatearSF(sf, num, total);
    for (uint32_t i = 0; i < num; i++) {
        EntradaSF &entrada = Entradas(sf)[i];
        snprintf(entrada.nombre, sizeof entrada.nombre, "fich%u", i);
        entrada.tam = tam;
        entrada.desplazamiento = static_cast<uint32_t>(NuevoDesplazamiento(sf, i));
        sf->numFicheros = i + 1;
        sf->libres -= tam;
    }
}

/// Deletes all files, the first one always.
void BM_BorrarFicheroSF(benchmark::State &estado) {
    constexpr uint32_t kTam = 4096;
    const uint32_t num = static_cast<uint32_t>(estado.range(0));
    const uint64_t total = TamanoSF(num) + static_cast<uint64_t>(num) * kTam + 1;
    void *bloque = malloc(total);
    InsertarNodoMalloc(&L, bloque, total); // out of a recorded block nothing is deleted
    for (auto _ : estado) {
        estado.PauseTiming();
        LlenarSF(static_cast<SF *>(bloque), num, kTam, total);
        estado.ResumeTiming();
        for (uint32_t i = 0; i < num; i++) {
            const std::string nombre = "fich" + std::to_string(i);
            if (BorrarFicheroSF({reinterpret_cast<uint64_t>(bloque), nombre.c_str()}) == -1)
                estado.SkipWithError("BorrarFicheroSF");
        }
    }
    EliminarNodoDireccion(&L, bloque);
    free(bloque);
}
BENCHMARK(BM_BorrarFicheroSF)->Arg(250)->Arg(500)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char *argv[]) {
    benchmark::Initialize(&argc, argv);
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
    benchmark::RunSpecifiedBenchmarks();
}
