// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirador {

/// The signal masks of a process: signal n is bit n - 1.
struct SignalMasks {
    uint64_t blocked = 0, ignored = 0, caught = 0;
    uint64_t pending_thread = 0, pending_process = 0;
    bool operator==(const SignalMasks &) const = default;
};

/// What /proc/PID/status tells that the viewer uses.
struct Status {
    unsigned uid = 0; ///< effective
    unsigned threads = 1;
    SignalMasks signals;
};

/// Nothing when the masks are not there.
std::optional<Status> ParseStatus(std::string_view text);

/// The lines of /proc/PID/status that change only when something happened to this process: all but SigQ,
/// which counts for the whole of a user.
std::string StatusFingerprint(std::string_view text);

/// What /proc/PID/stat tells that the viewer uses.
struct Stat {
    pid_t pid = 0, parent = 0, group = 0, session = 0;
    char state = '?'; ///< the kernel's letter
    int nice = 0;
    uint64_t start = 0;  ///< ticks after the machine's start
    std::string command; ///< the short name, without its parentheses
};

/// Nothing when the line is not whole. The name may hold blanks, newlines and parentheses.
std::optional<Stat> ParseStat(std::string_view text);

/// The state in one Spanish word.
const char *StateName(char state);

/// The numbers of /proc/PID/task/TID/children.
std::vector<pid_t> ParseChildren(std::string_view text);

/// The words of /proc/PID/cmdline, joined by blanks.
std::string ParseCommandLine(std::string_view text);

/// "USR1", "RTMIN+2"; the number alone for the two that the library keeps.
std::string SignalName(int signal);

constexpr int kMaxSignal = 64;
constexpr bool HasSignal(uint64_t mask, int signal) { return (mask >> (signal - 1)) & 1; }

/// The names of a mask, joined by blanks.
std::string MaskNames(uint64_t mask);

} // namespace mirador
