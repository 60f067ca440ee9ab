// SPDX-License-Identifier: MIT

#include "viewer/proc_maps.h"

#include <algorithm>

#include "viewer/proc_text.h"

namespace mirador {

namespace {

/// The kernel writes a newline of a name as \012, and everything else as it is.
std::string PathOf(std::string_view text) {
    std::string path(SkipBlanks(text));
    for (size_t at = 0; (at = path.find("\\012", at)) != std::string::npos; at++) path.replace(at, 4, "\n");
    return path;
}

/// "55d0-55d1 r-xp 00002000 fe:00 248056    /usr/bin/x". Returns false when it is another kind of line.
bool ParseZone(std::string_view line, Zone *zone) {
    const auto start = TakeNumber(&line, 16);
    if (!start || !TakePrefix(&line, "-")) return false;
    const auto end = TakeNumber(&line, 16);
    const std::string_view permissions = TakeField(&line);
    if (!end || *end < *start || permissions.size() < 4) return false;
    zone->start = *start;
    zone->end = *end;
    zone->read = permissions[0] == 'r';
    zone->write = permissions[1] == 'w';
    zone->execute = permissions[2] == 'x';
    zone->shared = permissions[3] == 's';
    zone->offset = TakeNumber(&line, 16).value_or(0);
    zone->major = static_cast<uint32_t>(TakeNumber(&line, 16).value_or(0));
    if (!TakePrefix(&line, ":")) return false;
    zone->minor = static_cast<uint32_t>(TakeNumber(&line, 16).value_or(0));
    zone->inode = TakeNumber(&line).value_or(0);
    zone->path = PathOf(line);
    return true;
}

/// "Rss:    8 kB" and the like, of the zone above.
void ParseMeasure(std::string_view line, Zone *zone) {
    uint64_t *bytes = nullptr;
    if (TakePrefix(&line, "Rss:"))
        bytes = &zone->resident;
    else if (TakePrefix(&line, "Shared_Dirty:") || TakePrefix(&line, "Private_Dirty:"))
        bytes = &zone->dirty;
    if (!bytes) return;
    *bytes += TakeNumber(&line).value_or(0) * 1024;
    zone->measured = true;
}

std::string_view BaseName(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool LooksLikeLibrary(const Zone &zone) {
    const std::string_view name = BaseName(zone.path);
    return name.find(".so.") != std::string_view::npos || name.ends_with(".so") || zone.execute;
}

ZoneKind KindOf(const Zone &zone, std::string_view program) {
    if (zone.path == "[heap]") return ZoneKind::kHeap;
    if (zone.path.starts_with("[stack")) return ZoneKind::kStack;
    if (zone.path.starts_with("[v") || zone.path == "[uprobes]") return ZoneKind::kKernel;
    if (zone.path.empty() || zone.path[0] == '[') return ZoneKind::kAnonymous;
    if (zone.path == program) {
        if (zone.execute) return ZoneKind::kCode;
        return zone.write ? ZoneKind::kData : ZoneKind::kConstants;
    }
    // A segment has no file: its device is the kernel's own, and it counts as deleted.
    if (zone.path.starts_with("/SYSV") && IsDeleted(zone.path) && zone.major == 0) return ZoneKind::kSegment;
    return LooksLikeLibrary(zone) ? ZoneKind::kLibrary : ZoneKind::kMapping;
}

} // namespace

std::vector<Zone> ParseMaps(std::string_view text) {
    std::vector<Zone> zones;
    while (!text.empty()) {
        const std::string_view line = TakeLine(&text);
        // The names of the measures begin with a capital, the addresses with a hexadecimal digit.
        if (!line.empty() && line[0] >= 'A' && line[0] <= 'Z') {
            if (!zones.empty()) ParseMeasure(line, &zones.back());
            continue;
        }
        Zone zone;
        if (ParseZone(line, &zone)) zones.push_back(std::move(zone));
    }
    return zones;
}

void ClassifyZones(std::vector<Zone> *zones, std::string_view program) {
    const Zone *before = nullptr;
    for (Zone &zone : *zones) {
        zone.kind = KindOf(zone, program);
        zone.owner = zone.path;
        // Variables without a value lie right behind the written ones of their file, and have no file.
        if (zone.path.empty() && zone.write && before && before->end == zone.start && before->write &&
            (before->kind == ZoneKind::kData || before->kind == ZoneKind::kLibrary)) {
            zone.kind = before->kind;
            zone.owner = before->owner;
        }
        before = &zone;
    }
    // Files that bring instructions are libraries with all their zones, those without a telling name too.
    for (Zone &zone : *zones) {
        if (zone.kind != ZoneKind::kMapping) continue;
        const auto same = [&zone](const Zone &z) {
            return z.kind == ZoneKind::kLibrary && z.path == zone.path;
        };
        if (std::any_of(zones->begin(), zones->end(), same)) zone.kind = ZoneKind::kLibrary;
    }
}

const char *KindName(ZoneKind kind) {
    switch (kind) {
    case ZoneKind::kCode: return "código";
    case ZoneKind::kConstants: return "constantes";
    case ZoneKind::kData: return "datos";
    case ZoneKind::kHeap: return "montón";
    case ZoneKind::kMapping: return "mapeo";
    case ZoneKind::kLibrary: return "biblioteca";
    case ZoneKind::kSegment: return "segmento";
    case ZoneKind::kAnonymous: return "anónima";
    case ZoneKind::kStack: return "pila";
    case ZoneKind::kKernel: return "núcleo";
    }
    return "";
}

std::string Permissions(const Zone &zone) {
    return {zone.read ? 'r' : '-', zone.write ? 'w' : '-', zone.execute ? 'x' : '-', zone.shared ? 's' : 'p'};
}

std::vector<Segment> ParseSegments(std::string_view text) {
    std::vector<Segment> segments;
    TakeLine(&text); // the names of the columns
    while (!text.empty()) {
        std::string_view line = TakeLine(&text);
        const auto key = TakeSigned(&line);
        const auto id = TakeNumber(&line);
        for (int i = 0; i < 4; i++) TakeField(&line); // permissions, size, creator, last user
        const auto attached = TakeNumber(&line);
        if (key && id && attached) segments.push_back({static_cast<int32_t>(*key), *id, *attached});
    }
    return segments;
}

void NoteSegments(std::vector<Zone> *zones, const std::vector<Segment> &segments) {
    for (Zone &zone : *zones) {
        if (zone.kind != ZoneKind::kSegment) continue;
        for (const Segment &segment : segments) {
            if (segment.id != zone.inode) continue;
            zone.listed = true;
            zone.key = segment.key;
            zone.attached = segment.attached;
        }
    }
}

} // namespace mirador
