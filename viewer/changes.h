// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

#include "viewer/snapshot.h"

// What is different between two moments. Panels draw rows that carry what happened to them, those that went
// included.

namespace mirador {

enum class Panel : unsigned char { kDescriptors, kMemory, kSignals, kProcesses };
constexpr int kPanels = 4;

enum class Mark : unsigned char { kNone, kNew, kGone, kChanged };

/// The parts of a row that can change, as bits.
enum Field : unsigned {
    kTarget = 1,
    kOffset = 2,
    kFlags = 4,
    kFile = 8, // of a descriptor
    kSize = 16,
    kRights = 32,
    kAttached = 64,
    kMeasures = 128, // of a zone
    kBlocked = 256,
    kIgnored = 512,
    kCaught = 1024,
    kThread = 2048,
    kProcess = 4096, // of a signal
    kState = 1 << 13,
    kNice = 1 << 14,
    kGroups = 1 << 15,
    kLine = 1 << 16,
    kPipes = 1 << 17,    // of a process
    kActivity = 1 << 18, ///< a process that sleeps now and ran before, or the other way round
};
/// What goes to and fro without anybody having asked: drawn, but no reason to look there.
constexpr unsigned kMinor = kMeasures | kActivity;

template<class Record> struct Row {
    Record now;
    Mark mark = Mark::kNone;
    unsigned fields = 0; ///< Field bits, for kChanged
    /// The mark that draws attention to the row.
    Mark shown() const { return mark == Mark::kChanged && !(fields & ~kMinor) ? Mark::kNone : mark; }
};

/// A signal that is blocked, ignored, caught or pending, or was.
struct SignalRow {
    int number = 0;
    bool blocked = false, ignored = false, caught = false, thread = false, process = false;
};

struct View {
    Snapshot now;
    std::vector<Row<OpenDescriptor>> descriptors;
    std::vector<Row<Zone>> zones;
    std::vector<Row<SignalRow>> signals;
    std::vector<Row<Process>> processes;
    bool changed = false;                  ///< anything that can be seen
    bool major[kPanels] = {};              ///< per panel: something other than kMinor
    Panel attention = Panel::kDescriptors; ///< where to look, when something major changed
};

/// `now`, with what is different from `before`.
View Compare(const Snapshot &before, const Snapshot &now);

} // namespace mirador
