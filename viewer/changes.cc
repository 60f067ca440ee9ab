// SPDX-License-Identifier: MIT

#include "viewer/changes.h"

#include <algorithm>
#include <unordered_map>

namespace mirador {

namespace {

uint64_t Key(const OpenDescriptor &d) { return static_cast<uint64_t>(d.number); }
uint64_t Key(const Zone &zone) { return zone.start; }
uint64_t Key(const SignalRow &signal) { return static_cast<uint64_t>(signal.number); }
// A number may have been given to another process since.
uint64_t Key(const Process &p) { return (p.stat.start << 24) ^ static_cast<uint64_t>(p.stat.pid); }

unsigned If(bool different, unsigned field) { return different ? field : 0; }

unsigned Differences(const OpenDescriptor &a, const OpenDescriptor &b) {
    return If(a.target != b.target || a.inode != b.inode, kTarget) |
           If(a.info.offset != b.info.offset, kOffset) | If(a.info.flags != b.info.flags, kFlags) |
           If(a.file != b.file, kFile);
}

unsigned Differences(const Zone &a, const Zone &b) {
    const bool measures = a.measured && b.measured && (a.resident != b.resident || a.dirty != b.dirty);
    return If(a.size() != b.size(), kSize) | If(Permissions(a) != Permissions(b), kRights) |
           If(a.path != b.path || a.inode != b.inode || a.kind != b.kind, kTarget) |
           If(a.attached != b.attached || a.key != b.key, kAttached) | If(measures, kMeasures);
}

unsigned Differences(const SignalRow &a, const SignalRow &b) {
    return If(a.blocked != b.blocked, kBlocked) | If(a.ignored != b.ignored, kIgnored) |
           If(a.caught != b.caught, kCaught) | If(a.thread != b.thread, kThread) |
           If(a.process != b.process, kProcess);
}

/// Whether it waits for its turn, for a disk or for an event: what nobody but the kernel decides.
bool Alive(char state) { return state == 'R' || state == 'S' || state == 'D'; }

unsigned Differences(const Process &a, const Process &b) {
    const bool both = Alive(a.stat.state) && Alive(b.stat.state);
    return If(a.stat.state != b.stat.state, both ? kActivity : kState) |
           If(a.stat.nice != b.stat.nice, kNice) |
           If(a.stat.group != b.stat.group || a.stat.session != b.stat.session ||
                  a.stat.parent != b.stat.parent,
              kGroups) |
           If(a.line != b.line, kLine) | If(a.pipes != b.pipes, kPipes);
}

template<class Record> std::vector<uint64_t> Keys(const std::vector<Record> &records) {
    std::vector<uint64_t> keys;
    keys.reserve(records.size());
    for (const Record &record : records) keys.push_back(Key(record));
    return keys;
}

/// Where each key stands.
std::unordered_map<uint64_t, size_t> Places(const std::vector<uint64_t> &keys) {
    std::unordered_map<uint64_t, size_t> places;
    for (size_t i = 0; i < keys.size(); i++) places.emplace(keys[i], i);
    return places;
}

/// The keys of `now`. A zone that has grown downwards, as a stack does and a mapping joined to the next one,
/// keeps its end and its key.
std::vector<uint64_t> ZoneKeys(const std::vector<Zone> &before, const std::vector<Zone> &now) {
    std::vector<uint64_t> keys = Keys(now);
    const auto old_starts = Places(Keys(before)), new_starts = Places(keys);
    std::unordered_map<uint64_t, const Zone *> old_ends;
    for (const Zone &zone : before) old_ends.emplace(zone.end, &zone);
    for (size_t i = 0; i < now.size(); i++) {
        const auto old = old_ends.find(now[i].end);
        if (old_starts.contains(keys[i]) || old == old_ends.end() || new_starts.contains(old->second->start))
            continue;
        if (old->second->kind == now[i].kind && old->second->path == now[i].path)
            keys[i] = old->second->start;
    }
    return keys;
}

/// The rows of `now` in their order, with those that only `before` has where they were.
template<class Record>
std::vector<Row<Record>> Merge(const std::vector<Record> &before, const std::vector<Record> &now,
                               const std::vector<uint64_t> &now_keys) {
    const std::vector<uint64_t> before_keys = Keys(before);
    const auto old_place = Places(before_keys), new_place = Places(now_keys);
    std::vector<Row<Record>> rows;
    rows.reserve(now.size());
    size_t next = 0, drawn = 0; // of before; of now
    const auto pass = [&] {     // those that went, up to one that is still to be drawn
        for (; next < before.size(); next++) {
            const auto place = new_place.find(before_keys[next]);
            if (place == new_place.end())
                rows.push_back({before[next], Mark::kGone, 0});
            else if (place->second >= drawn)
                break;
        }
    };
    for (; drawn < now.size(); drawn++) {
        pass();
        const auto old = old_place.find(now_keys[drawn]);
        Row<Record> row = {now[drawn], Mark::kNew, 0};
        if (old != old_place.end()) {
            row.fields = Differences(before[old->second], now[drawn]);
            row.mark = row.fields ? Mark::kChanged : Mark::kNone;
        }
        rows.push_back(std::move(row));
    }
    pass();
    return rows;
}

template<class Record>
std::vector<Row<Record>> Merge(const std::vector<Record> &before, const std::vector<Record> &now) {
    return Merge(before, now, Keys(now));
}

std::vector<SignalRow> SignalRows(const SignalMasks &masks) {
    std::vector<SignalRow> rows;
    for (int n = 1; n <= kMaxSignal; n++) {
        const SignalRow row = {n,
                               HasSignal(masks.blocked, n),
                               HasSignal(masks.ignored, n),
                               HasSignal(masks.caught, n),
                               HasSignal(masks.pending_thread, n),
                               HasSignal(masks.pending_process, n)};
        if (row.blocked || row.ignored || row.caught || row.thread || row.process) rows.push_back(row);
    }
    return rows;
}

template<class Record> void Note(const std::vector<Row<Record>> &rows, Panel panel, View *view) {
    for (const Row<Record> &row : rows) {
        view->changed = view->changed || row.mark != Mark::kNone;
        bool &major = view->major[static_cast<int>(panel)];
        major = major || row.shown() != Mark::kNone;
    }
}

} // namespace

View Compare(const Snapshot &before, const Snapshot &now) {
    View view;
    view.now = now;
    view.descriptors = Merge(before.descriptors, now.descriptors);
    view.zones = Merge(before.zones, now.zones, ZoneKeys(before.zones, now.zones));
    view.signals = Merge(SignalRows(before.signals), SignalRows(now.signals));
    view.processes = Merge(before.processes, now.processes);
    Note(view.descriptors, Panel::kDescriptors, &view);
    Note(view.zones, Panel::kMemory, &view);
    Note(view.signals, Panel::kSignals, &view);
    Note(view.processes, Panel::kProcesses, &view);
    // A command that needs a zone for its own work is seldom about zones, one that opens a file often is.
    for (const Panel panel : {Panel::kMemory, Panel::kDescriptors, Panel::kSignals, Panel::kProcesses})
        if (view.major[static_cast<int>(panel)]) view.attention = panel;
    return view;
}

} // namespace mirador
