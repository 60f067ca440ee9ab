// SPDX-License-Identifier: MIT

#include "viewer/proc_status.h"

#include <csignal>

#include "signals/signal_names.h"
#include "viewer/proc_text.h"

namespace mirador {

std::optional<Status> ParseStatus(std::string_view text) {
    Status status;
    struct Row {
        std::string_view name;
        uint64_t *mask;
        bool found = false;
    };
    SignalMasks &signals = status.signals;
    Row rows[] = {{"SigPnd:", &signals.pending_thread},
                  {"ShdPnd:", &signals.pending_process},
                  {"SigBlk:", &signals.blocked},
                  {"SigIgn:", &signals.ignored},
                  {"SigCgt:", &signals.caught}};
    while (!text.empty()) {
        std::string_view line = TakeLine(&text);
        for (Row &row : rows) {
            if (!TakePrefix(&line, row.name)) continue;
            const auto mask = TakeNumber(&line, 16);
            row.found = mask.has_value();
            *row.mask = mask.value_or(0);
        }
        if (TakePrefix(&line, "Uid:")) {
            TakeNumber(&line); // the real one
            status.uid = static_cast<unsigned>(TakeNumber(&line).value_or(0));
        } else if (TakePrefix(&line, "Threads:")) {
            status.threads = static_cast<unsigned>(TakeNumber(&line).value_or(1));
        }
    }
    for (const Row &row : rows)
        if (!row.found) return std::nullopt;
    return status;
}

std::string StatusFingerprint(std::string_view text) {
    std::string kept;
    kept.reserve(text.size());
    while (!text.empty()) {
        const std::string_view line = TakeLine(&text);
        if (!line.starts_with("SigQ:")) kept.append(line).append("\n");
    }
    return kept;
}

std::optional<Stat> ParseStat(std::string_view text) {
    Stat stat;
    const size_t open = text.find('('), close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;
    std::string_view front = text.substr(0, open), rest = text.substr(close + 1);
    const auto pid = TakeNumber(&front);
    const std::string_view state = TakeField(&rest);
    // Fields 4 to 22 of proc(5): parent, group, session, terminal, ..., nice is the 19th, start the 22nd.
    int64_t fields[23] = {};
    for (int i = 4; i <= 22; i++) {
        const std::string_view field = TakeField(&rest);
        std::string_view digits = field;
        const auto number = TakeSigned(&digits);
        if (!number && field.empty()) return std::nullopt;
        fields[i] = number.value_or(0); // (counters beyond 63 bits are none of those used)
    }
    if (!pid || state.size() != 1) return std::nullopt;
    stat.pid = static_cast<pid_t>(*pid);
    stat.command = text.substr(open + 1, close - open - 1);
    stat.state = state[0];
    stat.parent = static_cast<pid_t>(fields[4]);
    stat.group = static_cast<pid_t>(fields[5]);
    stat.session = static_cast<pid_t>(fields[6]);
    stat.nice = static_cast<int>(fields[19]);
    stat.start = static_cast<uint64_t>(fields[22]);
    return stat;
}

const char *StateName(char state) {
    switch (state) {
    case 'R': return "ejecución";
    case 'S': return "dormido";
    case 'D': return "espera";
    case 'T': return "parado";
    case 't': return "trazado";
    case 'Z': return "zombi";
    case 'X': return "muerto";
    case 'I': return "ocioso";
    default: return "¿?";
    }
}

std::vector<pid_t> ParseChildren(std::string_view text) {
    std::vector<pid_t> children;
    while (const auto pid = TakeNumber(&text)) children.push_back(static_cast<pid_t>(*pid));
    return children;
}

std::string ParseCommandLine(std::string_view text) {
    while (!text.empty() && text.back() == '\0') text.remove_suffix(1);
    std::string line(text);
    for (char &c : line)
        if (c == '\0') c = ' ';
    return line;
}

std::string SignalName(int signal) {
    if (signal <= kMaxSenal) {
        const char *name = NombreSenal(signal);
        if (ValorSenal(name) == signal) return name;
    }
    // The names of the four that the shell's table lacks depend on the processor.
#ifdef SIGSTKFLT
    if (signal == SIGSTKFLT) return "STKFLT";
#endif
#ifdef SIGPWR
    if (signal == SIGPWR) return "PWR";
#endif
    if (signal < SIGRTMIN) return std::to_string(signal);
    return signal == SIGRTMIN ? "RTMIN" : "RTMIN+" + std::to_string(signal - SIGRTMIN);
}

std::string MaskNames(uint64_t mask) {
    std::string names;
    for (int signal = 1; signal <= kMaxSignal; signal++) {
        if (!HasSignal(mask, signal)) continue;
        if (!names.empty()) names += ' ';
        names += SignalName(signal);
    }
    return names;
}

} // namespace mirador
