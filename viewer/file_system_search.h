// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "viewer/proc_maps.h"

namespace mirador {

/// A file of a memory file system.
struct StoredFile {
    std::string name;
    uint32_t size = 0, offset = 0; ///< bytes; the offset from the start of the data area
};

/// A memory file system, found by the mark and the counts of its header: the bytes say so, nobody vouches for
/// it.
struct FileSystem {
    uint64_t address = 0;
    uint32_t capacity = 0, count = 0, total = 0, free = 0;
    bool within = false;           ///< it ends before its zone does
    std::vector<StoredFile> files; ///< those whose entries could be read
};

/// Bytes of its header and its directory.
uint64_t TableSize(const FileSystem &fs);

/// Looks at every 16 bytes of the heap and of the zones that can be written or are shared; `pid` must be of
/// this user. Private pages that are not in memory are passed over: reading would bring them there. Returns
/// 0, or -1: the errno of opening the process's memory.
int FindFileSystems(pid_t pid, const std::vector<Zone> &zones, std::vector<FileSystem> *found);

/// The places in `bytes`, multiples of 16, at which the header of a file system starts. For the search and
/// its test.
std::vector<size_t> HeadersIn(const unsigned char *bytes, size_t size);

} // namespace mirador
