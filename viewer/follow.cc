// SPDX-License-Identifier: MIT

#include "viewer/follow.h"

#include <sys/syscall.h>

#include <algorithm>

#include "viewer/proc_text.h"
#include "viewer/process_dir.h"

namespace mirador {

namespace {

/// The number of the call in which a process sleeps; -1 when it runs, or may not be asked.
long CurrentCall(pid_t pid) {
    const ProcessDir dir(pid);
    std::string text;
    if (!dir.open() || dir.Read("syscall", &text) == -1) return -1;
    std::string_view rest = text;
    const auto number = TakeNumber(&rest);
    return number ? static_cast<long>(*number) : -1;
}

bool WaitsForChild(pid_t pid) {
    const long call = CurrentCall(pid);
    return call == SYS_wait4 || call == SYS_waitid;
}

bool WaitsForInput(pid_t pid) {
    const long call = CurrentCall(pid);
#ifdef SYS_poll
    if (call == SYS_poll) return true;
#endif
    return call == SYS_read || call == SYS_ppoll;
}

std::string ProgramOf(pid_t pid) {
    const ProcessDir dir(pid);
    return dir.open() ? dir.Link("exe") : std::string();
}

/// A program's path whether or not its file has been deleted meanwhile.
std::string_view WithoutDeleted(std::string_view path) {
    constexpr std::string_view kMark = " (deleted)";
    return IsDeleted(path) ? path.substr(0, path.size() - kMark.size()) : path;
}

/// Zones that are as they were keep what smaps said of them.
void KeepMeasures(const std::vector<Zone> &before, std::vector<Zone> *now) {
    size_t i = 0;
    for (Zone &zone : *now) {
        while (i < before.size() && before[i].start < zone.start) i++;
        if (i == before.size()) return;
        if (zone.measured || before[i].start != zone.start || before[i].end != zone.end) continue;
        zone.measured = before[i].measured;
        zone.resident = before[i].resident;
        zone.dirty = before[i].dirty;
    }
}

} // namespace

Follower::Follower(pid_t pid) { request_.root = request_.pid = pid; }

/// Returns to the shell that made the one which has ended. Returns whether there is one.
bool Follower::GoBack() {
    const pid_t ended = request_.pid;
    chosen_ = false;
    while (request_.pid != request_.root) {
        const auto same = [this](const Process &p) { return p.stat.pid == request_.pid; };
        const auto place = std::find_if(last_.processes.begin(), last_.processes.end(), same);
        request_.pid = place == last_.processes.end() ? request_.root : place->stat.parent;
        const Snapshot parent = TakeSnapshot(request_);
        if (!parent.alive) continue;
        message_ = "El shell " + std::to_string(ended) + " ha terminado; se vuelve a " +
                   std::to_string(request_.pid);
        last_ = parent;
        return true;
    }
    message_ = "El proceso " + std::to_string(ended) + " ha terminado; éste fue su último estado";
    return false;
}

void Follower::FollowFork(const Snapshot &snapshot) {
    if (chosen_ || snapshot.program.empty() || snapshot.processes.size() < 2 || !WaitsForChild(request_.pid))
        return;
    for (const Process &process : snapshot.processes) {
        const pid_t child = process.stat.pid;
        if (process.stat.parent != request_.pid || !WaitsForInput(child) ||
            ProgramOf(child) != snapshot.program)
            continue;
        message_ = "fork: se sigue al hijo " + std::to_string(child) + ", que es quien lee (Tab: otro shell)";
        request_.pid = child;
        return;
    }
}

Snapshot Follower::Next(bool measure) {
    request_.measure = measure;
    const pid_t pid = request_.pid;
    Snapshot snapshot = TakeSnapshot(request_);
    if (!snapshot.alive) {
        if (!GoBack()) last_.alive = false;
        return last_;
    }
    const bool same = last_.pid == pid && last_.alive;
    if (same && !snapshot.program.empty() &&
        WithoutDeleted(snapshot.program) != WithoutDeleted(last_.program))
        message_ = "El proceso " + std::to_string(pid) + " ejecuta ahora otro programa: " + snapshot.program;
    FollowFork(snapshot);
    if (request_.pid != pid) snapshot = TakeSnapshot(request_);
    if (same && !measure) KeepMeasures(last_.zones, &snapshot.zones);
    last_ = std::move(snapshot);
    return last_;
}

void Follower::Switch() {
    std::vector<pid_t> shells;
    const std::string program = ProgramOf(request_.root);
    for (const Process &process : last_.processes) {
        const bool shell = process.depth == 0 || ProgramOf(process.stat.pid) == program;
        if (shell && process.stat.state != 'Z') shells.push_back(process.stat.pid);
    }
    const auto place = std::find(shells.begin(), shells.end(), request_.pid);
    if (shells.size() < 2 || place == shells.end()) {
        message_ = "No hay otro shell en el árbol";
        return;
    }
    request_.pid = place + 1 == shells.end() ? shells.front() : place[1];
    chosen_ = true;
    message_ = "Se mira el shell " + std::to_string(request_.pid);
}

} // namespace mirador
