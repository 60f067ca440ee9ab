// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "viewer/file_system_search.h"
#include "viewer/proc_fdinfo.h"
#include "viewer/proc_maps.h"
#include "viewer/proc_status.h"

// What the kernel says of a shell at one moment.

namespace mirador {

enum class FileKind : unsigned char {
    kUnknown,
    kRegular,
    kDirectory,
    kTerminal,
    kCharacter,
    kBlock,
    kPipe,
    kSocket,
    kOther
};

/// A descriptor, the open file behind it, and the file behind that.
struct OpenDescriptor {
    int number = -1;
    std::string target; ///< as the link in /proc/PID/fd says it
    FdInfo info;
    FileKind kind = FileKind::kUnknown;
    uint64_t device = 0, inode = 0, links = 0;
    int64_t size = 0; ///< bytes, of a regular file
    int file = -1;    ///< the lowest descriptor on the same open file; -1: not known
    /// Whether an offset means something: a pipe, a socket and a terminal have none.
    bool seekable() const {
        return kind != FileKind::kPipe && kind != FileKind::kSocket && kind != FileKind::kTerminal;
    }
};

/// An end of a pipe that a process holds.
struct PipeEnd {
    uint64_t inode = 0;
    int descriptor = -1;
    bool writes = false;
    bool operator==(const PipeEnd &) const = default;
};

struct Process {
    Stat stat;
    int depth = 0;    ///< 0: the shell with which the viewer began
    std::string line; ///< its words; for a zombie, which has none, the short name
    std::vector<PipeEnd> pipes;
};

struct Snapshot {
    pid_t pid = 0;
    bool alive = false;  ///< false: everything else is as it was before
    std::string program; ///< path of the executable; empty: may not be read
    unsigned uid = 0;    ///< its user
    std::vector<OpenDescriptor> descriptors;
    std::vector<Zone> zones;
    SignalMasks signals;
    std::vector<Process> processes; ///< a tree, each followed by its children
    bool more_processes = false;    ///< there are more than are read
    std::vector<FileSystem> file_systems;
    // Why something could not be read, in the system's words; empty when it could.
    std::string descriptors_refused, sharing_refused, zones_refused, file_systems_refused;
};

/// What to look at.
struct Request {
    pid_t root = 0;      ///< where the tree of processes starts
    pid_t pid = 0;       ///< whose descriptors, zones and signals
    bool measure = true; ///< read smaps in place of maps, which costs the kernel more
    bool search = false; ///< look for memory file systems too
};

Snapshot TakeSnapshot(const Request &request);

/// Looks for changes without reading everything. A process that has not run has changed nothing of its own;
/// what others can do to it (a signal, a child that ends, an offset that a child moves) shows in what is
/// compared.
class ChangeDetector {
  public:
    /// Whether something has happened since the last call. processes: those of the last snapshot.
    bool SomethingHappened(const Request &request, const std::vector<Process> &processes);

  private:
    std::string last_, now_, text_;
};

} // namespace mirador
