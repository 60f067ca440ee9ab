// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "viewer/panels/panels.h"
#include "viewer/panels/rows.h"

namespace mirador {

namespace {

constexpr int kWithMeasures = 72;               ///< columns from which on resident and dirty bytes have room
constexpr int kNarrow = 50;                     ///< below, permissions go
constexpr double kSmallest = 12, kLargest = 30; ///< ends of the scale: 4 KB and 1 GB, as powers of two

constexpr const char *kVsyscall = "[vsyscall]";

/// Columns of a bar.
int BarLength(uint64_t bytes, int width) {
    if (bytes == 0) return 0;
    const double power = std::clamp(std::log2(static_cast<double>(bytes)), kSmallest, kLargest);
    return 1 + static_cast<int>(std::lround((power - kSmallest) / (kLargest - kSmallest) * (width - 1)));
}

Style KindStyle(ZoneKind kind) {
    switch (kind) {
    case ZoneKind::kCode: return Style::kCode;
    case ZoneKind::kConstants:
    case ZoneKind::kData: return Style::kData;
    case ZoneKind::kHeap: return Style::kHeap;
    case ZoneKind::kMapping: return Style::kFile;
    case ZoneKind::kSegment: return Style::kSegment;
    case ZoneKind::kStack: return Style::kStack;
    default: return Style::kOther;
    }
}

std::string AddressText(uint64_t address) {
    char text[32];
    snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(address));
    return text;
}

std::string BaseName(const std::string &path) { return path.substr(path.rfind('/') + 1); }

/// Zones of one library, or of the kernel, that nothing happened to: one row for all when room is scarce.
bool Foldable(const Row<Zone> &row) {
    return row.shown() == Mark::kNone &&
           (row.now.kind == ZoneKind::kLibrary || row.now.kind == ZoneKind::kKernel);
}

/// The first row after `from` that is not drawn together with it.
size_t FoldEnd(const std::vector<Row<Zone>> &rows, size_t from, bool whole) {
    size_t end = from + 1;
    if (whole || !Foldable(rows[from])) return end;
    const Zone &first = rows[from].now;
    while (end < rows.size() && Foldable(rows[end]) && rows[end].now.kind == first.kind &&
           (first.kind == ZoneKind::kKernel || rows[end].now.owner == first.owner))
        end++;
    return end;
}

/// The zones from `from` up to `end` as one row. Their permissions differ: `rights` are blank, unless it is
/// one zone.
Row<Zone> Folded(const std::vector<Row<Zone>> &rows, size_t from, size_t end, uint64_t *size,
                 std::string *rights) {
    Row<Zone> row = rows[from];
    *size = row.now.size();
    *rights = end - from == 1 ? Permissions(row.now) : "    ";
    for (size_t i = from + 1; i < end; i++) {
        *size += rows[i].now.size();
        row.now.resident += rows[i].now.resident;
        row.now.dirty += rows[i].now.dirty;
    }
    return row;
}

struct Columns {
    int address = 14, bar = 0;
    bool rights = false, measures = false;
};

Columns Measure(const View &view, const Layout &layout) {
    Columns columns;
    for (const Row<Zone> &row : view.zones)
        if (layout.whole || row.now.path != kVsyscall)
            columns.address = std::max(columns.address, Width(AddressText(row.now.start)));
    columns.rights = layout.width >= kNarrow;
    columns.measures = layout.width >= kWithMeasures;
    columns.bar = std::clamp(layout.width / 8, 4, 24);
    return columns;
}

Line RowLine(const Row<Zone> &row, uint64_t size, const std::string &rights, const std::string &text,
             const Columns &columns, const Layout &layout) {
    const Zone &zone = row.now;
    const Glyphs &glyphs = *layout.glyphs;
    Line line = {MarkSpan(row)};
    line.push_back({FitRight(AddressText(zone.start), columns.address, glyphs) + " ", PartStyle(row, 0)});
    const int length = BarLength(size, columns.bar);
    const int solid = zone.measured ? std::min(BarLength(zone.resident, columns.bar), length) : length;
    std::string bar;
    for (int i = 0; i < length; i++) bar += i < solid ? glyphs.full : glyphs.light;
    line.push_back({Fit(bar, columns.bar, glyphs), KindStyle(zone.kind)});
    line.push_back({FitRight(ShortSize(size), 6, glyphs) + " ", PartStyle(row, kSize)});
    if (columns.rights) line.push_back({rights + " ", PartStyle(row, kRights)});
    if (columns.measures) {
        const std::string measures = zone.measured ? FitRight(ShortSize(zone.resident), 6, glyphs) +
                                                         FitRight(ShortSize(zone.dirty), 6, glyphs)
                                                   : FitRight("¿?", 6, glyphs) + FitRight("¿?", 6, glyphs);
        line.push_back({measures + " ", PartStyle(row, kMeasures, Style::kDim)});
    }
    const int left = layout.width - (1 + columns.address + 1 + columns.bar + 7 + (columns.rights ? 5 : 0) +
                                     (columns.measures ? 13 : 0));
    line.push_back({Fit(text, left, glyphs), PartStyle(row, kTarget | kAttached)});
    return line;
}

Line Header(const Columns &columns, const Layout &layout) {
    const Glyphs &glyphs = *layout.glyphs;
    std::string text = " " + FitRight("desde", columns.address, glyphs) + " " +
                       Fit("log2", columns.bar, glyphs) + FitRight("tamaño", 6, glyphs) + " ";
    if (columns.rights) text += "perm ";
    if (columns.measures) text += FitRight("resid.", 6, glyphs) + FitRight("sucia", 6, glyphs) + " ";
    return {{text + "zona", Style::kDim}};
}

} // namespace

std::string ZoneText(const Zone &zone, bool unicode) {
    std::string kind = KindName(zone.kind);
    switch (zone.kind) {
    case ZoneKind::kSegment:
        if (!zone.listed) return kind + " id " + std::to_string(zone.inode);
        return kind + " clave " + std::to_string(zone.key) + " id " + std::to_string(zone.inode) + " unido " +
               std::to_string(zone.attached) + (zone.attached == 1 ? " vez" : " veces");
    case ZoneKind::kMapping:
        return kind + (zone.shared ? " compartido " : " privado ") + Printable(zone.path, unicode);
    case ZoneKind::kData: return kind + (zone.path.empty() ? " sin valor inicial" : " con valor inicial");
    case ZoneKind::kLibrary:
        return Printable(BaseName(zone.owner), unicode) + (zone.path.empty() ? " (datos)" : "");
    case ZoneKind::kAnonymous:
        return kind + (zone.shared ? " compartida" : "") +
               (zone.path.empty() ? "" : " " + Printable(zone.path, unicode));
    case ZoneKind::kKernel: return kind + " " + Printable(zone.path, unicode);
    default: return kind;
    }
}

std::vector<std::string> FileSystemText(const FileSystem &fs, bool unicode) {
    std::vector<std::string> lines;
    char text[256];
    snprintf(text, sizeof text,
             "SF encontrado por su marca en %s: %u bytes, %u de %u ficheros, %u bytes libres%s",
             AddressText(fs.address).c_str(), fs.total, fs.count, fs.capacity, fs.free,
             fs.within ? "" : " (dice medir más que su zona)");
    lines.emplace_back(text);
    for (const StoredFile &file : fs.files)
        lines.push_back("  " + std::to_string(file.size) + " bytes desde " + std::to_string(file.offset) +
                        ": " + Printable(file.name, unicode));
    return lines;
}

PanelText MemoryPanel(const View &view, const Layout &layout) {
    PanelText panel;
    panel.title = "Espacio de direcciones";
    const Columns columns = Measure(view, layout);
    const bool unicode = layout.glyphs->unicode;
    panel.header = Header(columns, layout);
    for (size_t i = 0; i < view.zones.size();) {
        if (!layout.whole &&
            view.zones[i].now.path == kVsyscall) { // every process has it, far above all others
            i++;
            continue;
        }
        const size_t end = FoldEnd(view.zones, i, layout.whole);
        uint64_t size = 0;
        std::string rights;
        const Row<Zone> row = Folded(view.zones, i, end, &size, &rights);
        std::string text = ZoneText(row.now, unicode);
        if (end - i > 1) text += " (" + std::to_string(end - i) + " zonas)";
        NoteChange(row.shown(), &panel);
        panel.lines.push_back(RowLine(row, size, rights, text, columns, layout));
        for (const FileSystem &fs : view.now.file_systems) {
            if (row.mark == Mark::kGone || fs.address < row.now.start || fs.address >= row.now.end) continue;
            for (const std::string &line : FileSystemText(fs, unicode))
                panel.lines.push_back({{"    " + line, Style::kSegment}});
        }
        i = end;
    }
    if (!view.now.zones_refused.empty())
        panel.lines.push_back(Refusal("El núcleo no deja ver las zonas", view.now.zones_refused));
    if (!view.now.file_systems_refused.empty())
        panel.lines.push_back(
            Refusal("No se han buscado sistemas de ficheros en memoria", view.now.file_systems_refused));
    return panel;
}

} // namespace mirador
