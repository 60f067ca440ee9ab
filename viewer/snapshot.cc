// SPDX-License-Identifier: MIT

#include "viewer/snapshot.h"

#include <fcntl.h>
#include <linux/kcmp.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>

#include "viewer/proc_text.h"
#include "viewer/process_dir.h"

namespace mirador {

namespace {

constexpr size_t kMostProcesses = 1024; ///< of the tree; as many as the shell's own list can hold
constexpr size_t kMostPipeEnds = 64;    ///< descriptors of a child that are looked at

FileKind KindOf(const struct stat &st) {
    if (S_ISREG(st.st_mode)) return FileKind::kRegular;
    if (S_ISDIR(st.st_mode)) return FileKind::kDirectory;
    if (S_ISFIFO(st.st_mode)) return FileKind::kPipe;
    if (S_ISSOCK(st.st_mode)) return FileKind::kSocket;
    if (S_ISBLK(st.st_mode)) return FileKind::kBlock;
    if (!S_ISCHR(st.st_mode)) return FileKind::kOther; // the kernel's own: event counters and the like
    const unsigned device = major(st.st_rdev);
    // Consoles and serial lines, /dev/tty, pseudo-terminals.
    const bool terminal = device == 4 || device == 5 || (device >= 136 && device <= 143);
    return terminal ? FileKind::kTerminal : FileKind::kCharacter;
}

/// Whether two descriptors of a process are one open file: 0 yes, 1 and 2 an order among those that are not,
/// -1 with errno.
int CompareFiles(pid_t pid, int one, int other) {
    return static_cast<int>(syscall(SYS_kcmp, pid, pid, KCMP_FILE, one, other));
}

/// Fills `file` of all descriptors. Only those that agree in what belongs to an open file are asked for;
/// kcmp's order allows a search by halves among them. (By hand: a file closed meanwhile makes the answers
/// inconsistent.)
void FindShared(pid_t pid, std::vector<OpenDescriptor> *descriptors, std::string *refused) {
    std::map<std::string_view, std::vector<OpenDescriptor *>> candidates;
    for (OpenDescriptor &d : *descriptors) {
        std::vector<OpenDescriptor *> &known = candidates[d.target];
        size_t low = 0, high = known.size();
        d.file = d.number;
        while (low < high) {
            const size_t middle = (low + high) / 2;
            const int order = CompareFiles(pid, d.number, known[middle]->number);
            if (order == -1) {
                if (errno != EBADF) *refused = strerror(errno);
                d.file = known[middle]->file = -1;
                break;
            }
            if (order == 0) {
                d.file = known[middle]->file;
                break;
            }
            (order == 1 ? high : low) = order == 1 ? middle : middle + 1;
        }
        if (d.file == d.number) known.insert(known.begin() + static_cast<std::ptrdiff_t>(low), &d);
    }
}

void ReadDescriptors(const ProcessDir &dir, Snapshot *snapshot) {
    std::vector<int> numbers;
    std::string text;
    if (dir.Numbers("fd", &numbers) == -1) {
        snapshot->descriptors_refused = strerror(errno);
        return;
    }
    snapshot->descriptors.reserve(numbers.size()); // FindShared keeps addresses
    for (const int number : numbers) {
        OpenDescriptor d;
        d.number = number;
        const std::string link = "fd/" + std::to_string(number);
        if (dir.Read(("fdinfo/" + std::to_string(number)).c_str(), &text) == -1) {
            // Closed meanwhile; or the numbers may be listed, and nothing else read.
            if (errno == EACCES || errno == EPERM) snapshot->descriptors_refused = strerror(errno);
            continue;
        }
        const auto info = ParseFdInfo(text);
        if (!info) continue;
        d.info = *info;
        d.target = dir.Link(link.c_str());
        struct stat st;
        if (fstatat(dir.fd(), link.c_str(), &st, 0) == 0) {
            d.kind = KindOf(st);
            d.device = st.st_dev;
            d.inode = st.st_ino;
            d.links = st.st_nlink;
            d.size = st.st_size;
        }
        snapshot->descriptors.push_back(std::move(d));
    }
    FindShared(snapshot->pid, &snapshot->descriptors, &snapshot->sharing_refused);
}

void ReadZones(const ProcessDir &dir, bool measure, Snapshot *snapshot) {
    std::string text;
    if (!(measure && dir.Read("smaps", &text) == 0) && dir.Read("maps", &text) == -1) {
        snapshot->zones_refused = strerror(errno);
        return;
    }
    snapshot->zones = ParseMaps(text);
    ClassifyZones(&snapshot->zones, snapshot->program);
    const auto segment = [](const Zone &zone) { return zone.kind == ZoneKind::kSegment; };
    if (std::any_of(snapshot->zones.begin(), snapshot->zones.end(), segment) &&
        ReadFileAt(AT_FDCWD, "/proc/sysvipc/shm", &text) == 0)
        NoteSegments(&snapshot->zones, ParseSegments(text));
}

std::vector<PipeEnd> ReadPipes(const ProcessDir &dir) {
    std::vector<PipeEnd> ends;
    std::vector<int> numbers;
    if (dir.Numbers("fd", &numbers) == -1) return ends;
    if (numbers.size() > kMostPipeEnds) numbers.resize(kMostPipeEnds);
    for (const int number : numbers) {
        const std::string link = "fd/" + std::to_string(number), target = dir.Link(link.c_str());
        std::string_view rest = target;
        struct stat st; // of the link itself, whose permissions are what the descriptor may do
        if (!TakePrefix(&rest, "pipe:[") || fstatat(dir.fd(), link.c_str(), &st, AT_SYMLINK_NOFOLLOW) == -1)
            continue;
        ends.push_back({TakeNumber(&rest).value_or(0), number, (st.st_mode & S_IWUSR) != 0});
    }
    return ends;
}

/// The children of all threads of a process. A kernel that keeps no lists of them says so with ENOENT: then
/// all processes are asked for their parent.
std::vector<pid_t> ChildrenOf(const ProcessDir &dir, pid_t pid) {
    std::vector<int> threads;
    std::vector<pid_t> children;
    std::string text;
    bool listed = true;
    if (dir.Numbers("task", &threads) == -1) return children;
    for (const int thread : threads) {
        if (dir.Read(("task/" + std::to_string(thread) + "/children").c_str(), &text) == -1) {
            listed = errno != ENOENT;
            continue;
        }
        const std::vector<pid_t> some = ParseChildren(text);
        children.insert(children.end(), some.begin(), some.end());
    }
    if (listed) return children;
    const ProcessDir self(getpid());
    std::vector<int> everybody;
    self.Numbers("..", &everybody);
    for (const int other : everybody) {
        const ProcessDir candidate(other);
        if (!candidate.open() || candidate.Read("stat", &text) == -1) continue;
        const auto stat = ParseStat(text);
        if (stat && stat->parent == pid) children.push_back(other);
    }
    return children;
}

/// Adds a process; returns its children.
std::vector<pid_t> ReadProcess(pid_t pid, int depth, Snapshot *snapshot) {
    const ProcessDir dir(pid);
    std::string text;
    if (!dir.open() || dir.Read("stat", &text) == -1) return {};
    const auto stat = ParseStat(text);
    if (!stat) return {};
    Process process;
    process.stat = *stat;
    process.depth = depth;
    if (dir.Read("cmdline", &text) == 0) process.line = ParseCommandLine(text);
    if (process.line.empty()) process.line = "[" + stat->command + "]";
    process.pipes = ReadPipes(dir);
    snapshot->processes.push_back(std::move(process));
    return ChildrenOf(dir, pid);
}

/// No folder stays open while the children are read: a chain of them may be longer than descriptors last.
void ReadProcesses(pid_t pid, int depth, Snapshot *snapshot) {
    if (snapshot->processes.size() == kMostProcesses) {
        snapshot->more_processes = true;
        return;
    }
    for (const pid_t child : ReadProcess(pid, depth, snapshot)) ReadProcesses(child, depth + 1, snapshot);
}

/// Adds what changes when the process runs, ends, or is given a child.
void AddActivity(const ProcessDir &dir, pid_t pid, std::string *sum, std::string *text) {
    for (const char *name : {"stat", "schedstat"})
        if (dir.Read(name, text) == 0) sum->append(*text);
    if (dir.Read(("task/" + std::to_string(pid) + "/children").c_str(), text) == 0) sum->append(*text);
    sum->append("\n");
}

} // namespace

Snapshot TakeSnapshot(const Request &request) {
    Snapshot snapshot;
    snapshot.pid = request.pid;
    const ProcessDir dir(request.pid);
    std::string text;
    if (!dir.open() || dir.Read("status", &text) == -1) return snapshot;
    const auto status = ParseStatus(text);
    const auto stat = dir.Read("stat", &text) == 0 ? ParseStat(text) : std::nullopt;
    if (!status || !stat || stat->state == 'Z' || stat->state == 'X') return snapshot;
    snapshot.alive = true;
    snapshot.uid = status->uid;
    snapshot.signals = status->signals;
    snapshot.program = dir.Link("exe");
    ReadDescriptors(dir, &snapshot);
    ReadZones(dir, request.measure, &snapshot);
    ReadProcesses(request.root, 0, &snapshot);
    if (request.search && FindFileSystems(request.pid, snapshot.zones, &snapshot.file_systems) == -1)
        snapshot.file_systems_refused = strerror(errno);
    return snapshot;
}

bool ChangeDetector::SomethingHappened(const Request &request, const std::vector<Process> &processes) {
    now_.clear();
    const ProcessDir dir(request.pid);
    bool running = false;
    if (dir.open() && dir.Read("status", &text_) == 0) {
        now_ = StatusFingerprint(text_);
        running = now_.find("\nState:\tR") != std::string::npos; // the kernel counts its turns late
    }
    for (const Process &process : processes) {
        const ProcessDir other(process.stat.pid);
        if (other.open()) AddActivity(other, process.stat.pid, &now_, &text_);
    }
    const bool same = now_ == last_;
    last_.swap(now_);
    return running || !same;
}

} // namespace mirador
