// SPDX-License-Identifier: MIT

#include "viewer/file_system_search.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "memfs/file_system.h"
#include "memfs/layout.h"

namespace mirador {

namespace {

constexpr size_t kStep = 16; // what malloc aligns to; segments start at a page
constexpr size_t kPiece = size_t{1} << 18;
constexpr uint64_t kMostOfAZone = uint64_t{1} << 30; // a longer zone is looked at up to here
constexpr uint64_t kPage = 4096;

/// Owns a descriptor.
struct File {
    explicit File(const std::string &path) : fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File() {
        if (fd != -1) close(fd);
    }
    int fd;
};

bool Searched(const Zone &zone) {
    return zone.kind == ZoneKind::kHeap || zone.shared || (zone.write && zone.kind != ZoneKind::kKernel);
}

/// The end of the run of pages, in memory or not, that starts at `from`.
uint64_t RunOfPages(int pagemap, uint64_t from, uint64_t end, bool *present) {
    constexpr uint64_t kInMemory = uint64_t{3} << 62; // present or swapped out
    uint64_t entries[512];
    *present = true;
    bool first = true;
    for (uint64_t at = from; at < end;) {
        const size_t wanted = static_cast<size_t>(std::min<uint64_t>((end - at + kPage - 1) / kPage, 512));
        const ssize_t n = pread(pagemap, entries, wanted * 8, static_cast<off_t>(at / kPage * 8));
        if (n < 8) return end; // cannot be told: taken as present
        for (size_t i = 0; i < static_cast<size_t>(n) / 8; i++, at += kPage) {
            const bool here = (entries[i] & kInMemory) != 0;
            if (first) *present = here;
            if (here != *present) return at;
            first = false;
        }
    }
    return end;
}

void ReadFiles(int memory, const Zone &zone, FileSystem *fs) {
    const uint64_t area = fs->address + TamanoSF(fs->capacity);
    for (uint32_t i = 0; i < fs->count; i++) {
        const uint64_t at = fs->address + sizeof(SF) + sizeof(EntradaSF) * uint64_t{i};
        EntradaSF entry;
        if (at + sizeof entry > zone.end || area > zone.end) return;
        if (pread(memory, &entry, sizeof entry, static_cast<off_t>(at)) != sizeof entry) return;
        fs->files.push_back({std::string(entry.nombre, strnlen(entry.nombre, sizeof entry.nombre)), entry.tam,
                             entry.desplazamiento});
    }
}

void SearchPiece(int memory, const Zone &zone, uint64_t at, const std::vector<unsigned char> &bytes,
                 size_t size, std::vector<FileSystem> *found) {
    for (const size_t place : HeadersIn(bytes.data(), size)) {
        SF header;
        memcpy(&header, bytes.data() + place, sizeof header);
        FileSystem fs;
        fs.address = at + place;
        fs.capacity = header.capacidad;
        fs.count = header.numFicheros;
        fs.total = header.tamTotal;
        fs.free = header.libres;
        fs.within = fs.address + fs.total <= zone.end;
        ReadFiles(memory, zone, &fs);
        found->push_back(std::move(fs));
    }
}

/// Pieces overlap by a header less a step, so that none is cut in two.
void SearchRange(int memory, const Zone &zone, uint64_t from, uint64_t end, std::vector<unsigned char> *bytes,
                 std::vector<FileSystem> *found) {
    for (uint64_t at = from; at < end;) {
        const size_t wanted = static_cast<size_t>(std::min<uint64_t>(end - at, kPiece));
        const ssize_t n = pread(memory, bytes->data(), wanted, static_cast<off_t>(at));
        if (n < static_cast<ssize_t>(sizeof(SF))) return; // past the end of a file, or gone
        SearchPiece(memory, zone, at, *bytes, static_cast<size_t>(n), found);
        if (static_cast<size_t>(n) < kPiece) return;
        at += kPiece - (sizeof(SF) - kStep);
    }
}

} // namespace

uint64_t TableSize(const FileSystem &fs) { return TamanoSF(fs.capacity); }

std::vector<size_t> HeadersIn(const unsigned char *bytes, size_t size) {
    std::vector<size_t> places;
    for (size_t at = 0; at + sizeof(SF) <= size; at += kStep) {
        uint32_t mark;
        memcpy(&mark, bytes + at, sizeof mark);
        if (mark != kMagicoSF) continue;
        alignas(SF) unsigned char header[sizeof(SF)];
        memcpy(header, bytes + at, sizeof header);
        if (EsValidoSF(header)) places.push_back(at);
    }
    return places;
}

int FindFileSystems(pid_t pid, const std::vector<Zone> &zones, std::vector<FileSystem> *found) {
    const std::string folder = "/proc/" + std::to_string(pid);
    const File memory(folder + "/mem");
    if (memory.fd == -1) return -1;
    const File pagemap(folder + "/pagemap");
    std::vector<unsigned char> bytes(kPiece);
    for (const Zone &zone : zones) {
        if (!Searched(zone)) continue;
        const uint64_t end = std::min(zone.end, zone.start + kMostOfAZone);
        for (uint64_t at = zone.start; at < end;) {
            bool present = true;
            const uint64_t stop = zone.shared ? end : RunOfPages(pagemap.fd, at, end, &present);
            if (present) SearchRange(memory.fd, zone, at, stop, &bytes, found);
            at = stop;
        }
    }
    return 0;
}

} // namespace mirador
