// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mirador {

/// What lives in a zone of the address space.
enum class ZoneKind : unsigned char {
    kCode,      ///< the program's own instructions
    kConstants, ///< the program's own file, neither run nor written
    kData,      ///< the program's variables, initialised and not
    kHeap,
    kMapping, ///< a file
    kLibrary, ///< a file that brings instructions, all its zones
    kSegment, ///< a System V shared segment
    kAnonymous,
    kStack,
    kKernel, ///< what the kernel puts into every process
};

/// A line of /proc/PID/maps, with what smaps adds.
struct Zone {
    uint64_t start = 0, end = 0; ///< addresses; the end is just past it
    bool read = false, write = false, execute = false, shared = false;
    uint64_t offset = 0;
    uint32_t major = 0, minor = 0; ///< of the file's device
    uint64_t inode = 0;            ///< a segment's identifier for a kSegment
    std::string path;              ///< as the kernel shows it; empty: of no file
    bool measured = false;         ///< smaps was read: the two that follow are known
    uint64_t resident = 0;         ///< bytes in memory
    uint64_t dirty = 0;            ///< bytes written to since the file was read, private and shared
    ZoneKind kind = ZoneKind::kAnonymous;
    std::string owner; ///< the file whose variables without a value these are, or `path`
    // Of a segment that the system still lists:
    bool listed = false;
    int32_t key = 0;
    uint64_t attached = 0; ///< times that it is attached, by all processes
    uint64_t size() const { return end - start; }
};

/// The zones in a text of maps or smaps, without their kinds. Lines that are neither are left out.
std::vector<Zone> ParseMaps(std::string_view text);

/// Tells the kinds. program: path of the executable, as /proc/PID/exe gives it.
void ClassifyZones(std::vector<Zone> *zones, std::string_view program);

/// The kind's name in Spanish.
const char *KindName(ZoneKind kind);

/// The four letters of maps: "rw-p".
std::string Permissions(const Zone &zone);

/// A row of /proc/sysvipc/shm.
struct Segment {
    int32_t key = 0;
    uint64_t id = 0, attached = 0;
};
std::vector<Segment> ParseSegments(std::string_view text);

/// Gives the zones of segments their key and how often they are attached.
void NoteSegments(std::vector<Zone> *zones, const std::vector<Segment> &segments);

} // namespace mirador
