// SPDX-License-Identifier: MIT

#include "viewer/svg_output.h"

#include <fcntl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <utility>

#include "viewer/panels/panels.h"
#include "viewer/svg_canvas.h"

namespace mirador {

namespace {

constexpr double kMargin = 20, kWidth = 960, kRow = SvgCanvas::kRow;
constexpr double kBaseline = 14; ///< of a text, from the top of its row

/// Where the next thing is drawn.
struct Pen {
    SvgCanvas canvas;
    double y = kMargin;
    void Title(const std::string &text) {
        canvas.Text(kMargin, y + kBaseline, text, "t");
        y += kRow + 6;
    }
    void Note(const std::string &text) {
        canvas.Text(kMargin, y + kBaseline, text, "d");
        y += kRow;
    }
};

std::string Cut(const std::string &text, double room, bool front = false) {
    const int letters = static_cast<int>(room / SvgCanvas::kLetter);
    return Width(text) <= letters ? text : Fit(text, letters, kUnicodeGlyphs, front);
}

// Descriptors, open files, files

constexpr double kBoxRow = 24, kBoxHeight = 20;
constexpr double kFdX = kMargin, kFdWidth = 70;
constexpr double kFileX = 180, kFileWidth = 250;
constexpr double kNodeX = 520, kNodeWidth = kWidth - kMargin - kNodeX;

/// An open file: what its descriptors share.
struct OpenFile {
    const OpenDescriptor *first;
    size_t descriptors = 0;
    double y = 0;
};

/// The flags without O_CLOEXEC, which is the descriptor's own.
std::string FileFlags(const OpenDescriptor &d) {
    std::string words = FlagWords(d.info.flags);
    const size_t at = words.find(" O_CLOEXEC");
    if (at != std::string::npos) words.erase(at, sizeof " O_CLOEXEC" - 1);
    return words;
}

std::string NodeText(const OpenDescriptor &d) {
    std::string text = TargetText(d, true);
    if (d.kind == FileKind::kUnknown) return text;
    std::string facts = "  inodo " + std::to_string(d.inode);
    if (d.kind == FileKind::kRegular) facts += ", " + std::to_string(d.size) + " bytes";
    return Cut(text, kNodeWidth - 12 - SvgCanvas::TextWidth(facts), true) + facts;
}

void DrawDescriptors(const Snapshot &now, Pen *pen) {
    SvgCanvas &canvas = pen->canvas;
    pen->Title("Descriptores, ficheros abiertos y ficheros");
    if (!now.descriptors_refused.empty())
        return pen->Note("El núcleo no los deja ver: " + now.descriptors_refused);
    canvas.Text(kFdX, pen->y + kBaseline, "descriptor", "d");
    canvas.Text(kFileX, pen->y + kBaseline, "fichero abierto: desplazamiento y modo", "d");
    canvas.Text(kNodeX, pen->y + kBaseline, "fichero", "d");
    pen->y += kRow + 2;
    const double top = pen->y;
    // Without an answer from kcmp, each descriptor gets a box of its own with a question mark.
    std::map<int, OpenFile> files;
    std::map<std::pair<uint64_t, uint64_t>, double> nodes;
    double fd_y = top, file_y = top, node_y = top;
    for (const OpenDescriptor &d : now.descriptors) {
        OpenFile &file = files.try_emplace(d.file == -1 ? -2 - d.number : d.file, OpenFile{&d}).first->second;
        if (file.descriptors++ == 0) {
            file.y = file_y;
            file_y += kBoxRow;
        }
        canvas.Box(kFdX, fd_y, kFdWidth, kBoxHeight, "b");
        canvas.Text(kFdX + kFdWidth / 2, fd_y + kBaseline, std::to_string(d.number), "s", "middle");
        if (d.info.flags & O_CLOEXEC) canvas.Text(kFdX + kFdWidth + 4, fd_y + 10, "cloexec", "d");
        canvas.Arrow(kFdX + kFdWidth, fd_y + kBoxHeight / 2, kFileX, file.y + kBoxHeight / 2);
        fd_y += kBoxRow;
    }
    std::vector<const OpenFile *> in_order;
    in_order.reserve(files.size());
    for (const auto &[number, file] : files) in_order.push_back(&file);
    std::sort(in_order.begin(), in_order.end(),
              [](const OpenFile *a, const OpenFile *b) { return a->y < b->y; });
    for (const OpenFile *file : in_order) {
        const OpenDescriptor &d = *file->first;
        std::string text = d.seekable() ? "en " + OffsetText(d) + "  " : "";
        text += FileFlags(d);
        if (d.file == -1) text += "  ¿compartido?";
        canvas.Box(kFileX, file->y, kFileWidth, kBoxHeight, "o");
        canvas.Text(kFileX + 6, file->y + kBaseline, Cut(text, kFileWidth - 12));
        const auto [node, is_new] = nodes.try_emplace({d.device, d.inode}, node_y);
        if (is_new) {
            canvas.Box(kNodeX, node_y, kNodeWidth, kBoxHeight, "i");
            canvas.Text(kNodeX + 6, node_y + kBaseline, NodeText(d));
            node_y += kBoxRow;
        }
        canvas.Arrow(kFileX + kFileWidth, file->y + kBoxHeight / 2, kNodeX, node->second + kBoxHeight / 2);
    }
    pen->y = std::max({fd_y, file_y, node_y});
    if (!now.sharing_refused.empty())
        pen->Note("No se sabe qué descriptores comparten fichero abierto: " + now.sharing_refused);
    pen->y += kRow;
}

// The address space

constexpr double kColumnX = 170, kColumnWidth = 120, kZoneTextX = kColumnX + kColumnWidth + 10;
constexpr double kStripX = kZoneTextX + 16, kStripWidth = kWidth - kMargin - kStripX;

std::string AddressText(uint64_t address) {
    char text[32];
    snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(address));
    return text;
}

/// 4 KB is a row high; each factor of 16 adds a third of one.
double ZoneHeight(const Zone &zone) {
    const double power = std::log2(static_cast<double>(std::max<uint64_t>(zone.size(), 4096))) - 12;
    return kRow + std::min(power, 24.0) / 4 * kRow / 3;
}

/// A memory file system as a strip: header and directory, files, free space, each as wide as its share.
void DrawFileSystem(const FileSystem &fs, Pen *pen) {
    SvgCanvas &canvas = pen->canvas;
    canvas.Text(kStripX, pen->y + kBaseline, "SF en " + AddressText(fs.address) + ", encontrado por su marca",
                "s");
    pen->y += kRow;
    const std::string facts = std::to_string(fs.total) + " bytes: cabecera y " + std::to_string(fs.capacity) +
                              " entradas (" + std::to_string(TableSize(fs)) + "), " +
                              std::to_string(fs.count) + (fs.count == 1 ? " fichero, " : " ficheros, ") +
                              std::to_string(fs.free) + " libres" +
                              (fs.within ? "" : "; dice medir más que su zona");
    canvas.Text(kStripX, pen->y + kBaseline, facts, "d");
    pen->y += kRow;
    const double total = std::max<double>(fs.total, 1), height = 16;
    const double table = std::min(static_cast<double>(TableSize(fs)) / total, 1.0);
    canvas.Box(kStripX, pen->y + 2, kStripWidth, height, "e");
    canvas.Box(kStripX, pen->y + 2, kStripWidth * table, height, "h");
    for (const StoredFile &file : fs.files) {
        const double from = std::min(table + file.offset / total, 1.0);
        const double width = std::min(file.size / total, 1.0 - from);
        canvas.Box(kStripX + kStripWidth * from, pen->y + 2, std::max(kStripWidth * width, 2.0), height, "f");
    }
    pen->y += kRow + 2;
    for (size_t i = 0; i < fs.files.size(); i++) {
        const StoredFile &file = fs.files[i];
        const std::string text = std::to_string(i) + ": " + Printable(file.name, true) + ", " +
                                 std::to_string(file.size) + " bytes desde " + std::to_string(file.offset);
        canvas.Text(kStripX + 16, pen->y + kBaseline, Cut(text, kWidth - kMargin - kStripX - 16));
        pen->y += kRow;
    }
}

/// zones: how many `zone` stands for.
void DrawZone(const Snapshot &now, const Zone &zone, size_t zones, Pen *pen) {
    SvgCanvas &canvas = pen->canvas;
    const double top = pen->y, least = ZoneHeight(zone);
    std::string facts = ShortSize(zone.size());
    if (zone.measured)
        facts += ", en memoria " + ShortSize(zone.resident) + ", sucia " + ShortSize(zone.dirty);
    const double facts_width = SvgCanvas::TextWidth(facts);
    const double room = kWidth - kMargin - facts_width - 10 - kZoneTextX;
    canvas.Text(kColumnX - 8, top + kBaseline, AddressText(zone.start), "d", "end");
    const std::string text = zones == 1 ? Permissions(zone) + " " + ZoneText(zone, true)
                                        : ZoneText(zone, true) + " (" + std::to_string(zones) + " zonas)";
    canvas.Text(kZoneTextX, top + kBaseline, Cut(text, room));
    canvas.Text(kWidth - kMargin, top + kBaseline, facts, "d", "end");
    pen->y += kRow;
    for (const FileSystem &fs : now.file_systems)
        if (fs.address >= zone.start && fs.address < zone.end) DrawFileSystem(fs, pen);
    const double height = std::max(least, pen->y - top);
    canvas.Box(kColumnX, top, kColumnWidth, height, ("z " + WithoutAccents(KindName(zone.kind))).c_str());
    pen->y = top + height;
}

/// A library's zones, one after the other, as one.
Zone Joined(const std::vector<Zone> &zones, size_t from, size_t *end) {
    Zone joined = zones[from];
    for (*end = from + 1; *end < zones.size(); ++*end) {
        const Zone &next = zones[*end];
        const bool same =
            joined.kind == ZoneKind::kLibrary && next.kind == joined.kind && next.owner == joined.owner;
        if (!same) break;
        joined.end = next.end;
        joined.resident += next.resident;
        joined.dirty += next.dirty;
    }
    return joined;
}

void DrawMemory(const Snapshot &now, Pen *pen) {
    pen->Title("Espacio de direcciones");
    if (!now.zones_refused.empty()) return pen->Note("El núcleo no lo deja ver: " + now.zones_refused);
    pen->Note("De las direcciones bajas a las altas; la altura crece con el logaritmo del tamaño.");
    for (size_t i = 0; i < now.zones.size();) {
        size_t end = i;
        const Zone zone = Joined(now.zones, i, &end);
        DrawZone(now, zone, end - i, pen);
        if (end < now.zones.size() && now.zones[end].start != now.zones[end - 1].end) {
            pen->canvas.Text(kColumnX + kColumnWidth / 2, pen->y + 10, "⋮", "d", "middle");
            pen->y += 14; // nothing is there
        }
        i = end;
    }
    if (!now.file_systems_refused.empty())
        pen->Note("No se han buscado sistemas de ficheros en memoria: " + now.file_systems_refused);
    pen->y += kRow;
}

// Signals, processes

void DrawSignals(const View &view, Pen *pen) {
    SvgCanvas &canvas = pen->canvas;
    pen->Title("Señales");
    if (view.signals.empty()) {
        pen->Note("Ninguna bloqueada, ignorada, capturada ni pendiente");
        pen->y += kRow;
        return;
    }
    constexpr const char *kNames[] = {"bloqueada", "ignorada", "capturada", "pend. hilo", "pend. proceso"};
    constexpr double kFirst = 190, kStep = 120;
    for (int i = 0; i < 5; i++) canvas.Text(kFirst + i * kStep, pen->y + kBaseline, kNames[i], "d", "middle");
    pen->y += kRow;
    for (const Row<SignalRow> &row : view.signals) {
        const SignalRow &signal = row.now;
        const bool set[] = {signal.blocked, signal.ignored, signal.caught, signal.thread, signal.process};
        canvas.Text(kMargin + 20, pen->y + kBaseline, std::to_string(signal.number), "d", "end");
        canvas.Text(kMargin + 32, pen->y + kBaseline, SignalName(signal.number), "s");
        for (int i = 0; i < 5; i++) {
            const double x = kFirst + i * kStep, y = pen->y + kRow / 2;
            if (set[i])
                canvas.Circle(x, y, 6, i < 3 ? "n" : "codigo z");
            else
                canvas.Circle(x, y, 1.5, "l");
        }
        pen->y += kRow;
        canvas.Line(kMargin, pen->y, kFirst + 4 * kStep + 60, pen->y, "l");
    }
    pen->y += kRow;
}

void DrawProcesses(const View &view, Pen *pen) {
    SvgCanvas &canvas = pen->canvas;
    pen->Title("Procesos");
    constexpr double kBoxWidth = 560, kIndent = 36, kHeight = 36;
    std::vector<double> parents; // per depth: the middle of the last box
    std::vector<double> middles;
    for (const Row<Process> &row : view.processes) {
        const Process &process = row.now;
        const auto depth = static_cast<size_t>(process.depth);
        const double x = kMargin + kIndent * std::min(process.depth, 8), middle = pen->y + kHeight / 2;
        if (depth > 0 && depth <= parents.size()) {
            canvas.Line(x - kIndent / 2, parents[depth - 1] + kHeight / 2, x - kIndent / 2, middle, "l");
            canvas.Line(x - kIndent / 2, middle, x, middle, "l");
        }
        parents.resize(depth + 1, middle);
        parents[depth] = middle;
        middles.push_back(middle);
        const double width = kMargin + kBoxWidth - x;
        canvas.Box(x, pen->y, width, kHeight, process.stat.state == 'Z' ? "e" : "b");
        const std::string who = std::to_string(process.stat.pid) + "  ";
        canvas.Text(x + 8, pen->y + 15, who, "s");
        const double at = x + 8 + SvgCanvas::TextWidth(who);
        canvas.Text(at, pen->y + 15, Cut(CommandText(process, true), x + width - at - 6));
        const std::string facts = std::string(StateName(process.stat.state)) + ", nice " +
                                  std::to_string(process.stat.nice) + ", grupo " +
                                  std::to_string(process.stat.group) + ", sesión " +
                                  std::to_string(process.stat.session);
        canvas.Text(x + 8, pen->y + 30, facts, "d");
        pen->y += kHeight + 8;
    }
    double reach = 40;
    for (const PipeThread &thread : JoiningPipes(view.processes)) {
        const auto holds = [&](size_t row, bool writes) {
            const std::vector<PipeEnd> &ends = view.processes[row].now.pipes;
            return std::any_of(ends.begin(), ends.end(), [&](const PipeEnd &end) {
                return end.inode == thread.inode && end.writes == writes;
            });
        };
        for (const size_t writer : thread.rows) {
            for (const size_t reader : thread.rows) {
                if (writer == reader || !holds(writer, true) || !holds(reader, false)) continue;
                canvas.Loop(kMargin + kBoxWidth, middles[writer], middles[reader], reach);
                canvas.Text(kMargin + kBoxWidth + reach * 0.75 + 8,
                            (middles[writer] + middles[reader]) / 2 + 4,
                            "tubería " + std::to_string(thread.inode), "d");
                reach += 20;
            }
        }
    }
    pen->y += kRow;
}

} // namespace

std::string SvgOutput(const View &view, unsigned panels) {
    Pen pen;
    const auto wanted = [panels](Panel panel) { return (panels & 1u << static_cast<int>(panel)) != 0; };
    const std::string program = view.now.program.substr(view.now.program.rfind('/') + 1);
    const std::string heading = "Proceso " + std::to_string(view.now.pid) + ": " + Printable(program, true);
    pen.canvas.Text(kMargin, pen.y + kBaseline, Cut(heading, kWidth - 2 * kMargin), "d");
    pen.y += kRow + 10;
    if (wanted(Panel::kDescriptors)) DrawDescriptors(view.now, &pen);
    if (wanted(Panel::kMemory)) DrawMemory(view.now, &pen);
    if (wanted(Panel::kSignals)) DrawSignals(view, &pen);
    if (wanted(Panel::kProcesses)) DrawProcesses(view, &pen);
    return pen.canvas.Finish(kWidth, pen.y,
                             "Lo que el núcleo sabe del proceso " + std::to_string(view.now.pid));
}

} // namespace mirador
