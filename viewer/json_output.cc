// SPDX-License-Identifier: MIT

#include "viewer/json_output.h"

#include <cstdio>

#include "viewer/panels/panels.h"
#include "viewer/utf8.h"

namespace mirador {

namespace {

/// Writes objects and lists; knows where a comma is due.
class Writer {
  public:
    void Open(char bracket) {
        Comma();
        text_ += bracket;
        first_ = true;
    }
    void Close(char bracket) {
        text_ += bracket;
        first_ = false;
    }
    void Name(const char *name) {
        Comma();
        text_ += JsonString(name) + ": ";
        first_ = true;
    }
    void Value(const std::string &json) {
        Comma();
        text_ += json;
    }
    void String(const char *name, std::string_view value) { Name(name), Value(JsonString(value)); }
    void Number(const char *name, int64_t value) { Name(name), Value(std::to_string(value)); }
    void Unsigned(const char *name, uint64_t value) { Name(name), Value(std::to_string(value)); }
    void Bool(const char *name, bool value) { Name(name), Value(value ? "true" : "false"); }
    void Null(const char *name) { Name(name), Value("null"); }
    void NewLine() { newline_ = true; }
    std::string &text() { return text_; }

  private:
    void Comma() {
        if (!first_) text_ += newline_ ? "," : ", ";
        if (newline_) text_ += "\n  ";
        newline_ = false;
        first_ = false;
    }
    std::string text_;
    bool first_ = true, newline_ = false;
};

std::string Address(uint64_t address) {
    char text[32];
    snprintf(text, sizeof text, "\"0x%llx\"", static_cast<unsigned long long>(address));
    return text;
}

std::string Octal(uint32_t flags) {
    char text[32];
    snprintf(text, sizeof text, "\"0%o\"", flags);
    return text;
}

const char *FileKindName(FileKind kind) {
    constexpr const char *kNames[] = {"desconocido", "fichero", "directorio", "terminal", "caracteres",
                                      "bloques",     "tuberia", "socket",     "otro"};
    return kNames[static_cast<int>(kind)];
}

/// The Spanish words of the program without accents: constants for whoever reads the data.
std::string Constant(const char *word) { return WithoutAccents(word); }

void Words(const char *name, const std::string &words, Writer *out) {
    out->Name(name);
    out->Open('[');
    for (size_t at = 0; at < words.size();) {
        const size_t end = std::min(words.find(' ', at), words.size());
        out->Value(JsonString(std::string_view(words).substr(at, end - at)));
        at = end + 1;
    }
    out->Close(']');
}

void Refused(const char *name, const std::string &reason, Writer *out) {
    if (!reason.empty()) out->String(name, reason);
}

void Descriptors(const Snapshot &now, Writer *out) {
    out->NewLine();
    out->Name("descriptores");
    out->Open('[');
    for (const OpenDescriptor &d : now.descriptors) {
        out->NewLine();
        out->Open('{');
        out->Number("numero", d.number);
        out->String("destino", d.target);
        out->String("tipo", FileKindName(d.kind));
        if (d.seekable())
            out->Number("desplazamiento", d.info.offset);
        else
            out->Null("desplazamiento");
        Words("modo", FlagWords(d.info.flags), out);
        out->Name("modo_octal");
        out->Value(Octal(d.info.flags));
        if (d.file == -1)
            out->Null("fichero_abierto");
        else
            out->Number("fichero_abierto", d.file);
        out->Unsigned("dispositivo", d.device);
        out->Unsigned("inodo", d.inode);
        out->Number("tamano", d.size);
        out->Unsigned("enlaces", d.links);
        out->Close('}');
    }
    out->Close(']');
    Refused("descriptores_no_leidos", now.descriptors_refused, out);
    Refused("reparto_no_leido", now.sharing_refused, out);
}

void Zones(const Snapshot &now, Writer *out) {
    out->NewLine();
    out->Name("zonas");
    out->Open('[');
    for (const Zone &zone : now.zones) {
        out->NewLine();
        out->Open('{');
        out->Name("desde"), out->Value(Address(zone.start));
        out->Name("hasta"), out->Value(Address(zone.end));
        out->Unsigned("tamano", zone.size());
        out->String("permisos", Permissions(zone));
        out->String("tipo", Constant(KindName(zone.kind)));
        out->String("fichero", zone.path);
        out->Unsigned("desplazamiento", zone.offset);
        out->Unsigned("inodo", zone.kind == ZoneKind::kSegment ? 0 : zone.inode);
        if (zone.measured) {
            out->Unsigned("residente", zone.resident);
            out->Unsigned("sucio", zone.dirty);
        } else {
            out->Null("residente");
            out->Null("sucio");
        }
        if (zone.kind == ZoneKind::kSegment) {
            out->Unsigned("id", zone.inode);
            if (zone.listed) {
                out->Number("clave", zone.key);
                out->Unsigned("uniones", zone.attached);
            }
        }
        out->Close('}');
    }
    out->Close(']');
    Refused("zonas_no_leidas", now.zones_refused, out);
}

void FileSystems(const Snapshot &now, Writer *out) {
    out->NewLine();
    out->Name("sistemas_ficheros");
    out->Open('[');
    for (const FileSystem &fs : now.file_systems) {
        out->NewLine();
        out->Open('{');
        out->Name("direccion"), out->Value(Address(fs.address));
        out->Unsigned("tamano", fs.total);
        out->Unsigned("capacidad", fs.capacity);
        out->Unsigned("num_ficheros", fs.count);
        out->Unsigned("libres", fs.free);
        out->Bool("cabe_en_su_zona", fs.within);
        out->Name("ficheros");
        out->Open('[');
        for (const StoredFile &file : fs.files) {
            out->Open('{');
            out->String("nombre", file.name);
            out->Unsigned("tamano", file.size);
            out->Unsigned("desplazamiento", file.offset);
            out->Close('}');
        }
        out->Close(']');
        out->Close('}');
    }
    out->Close(']');
    Refused("sistemas_ficheros_no_leidos", now.file_systems_refused, out);
}

void Signals(const SignalMasks &masks, Writer *out) {
    out->NewLine();
    out->Name("senales");
    out->Open('{');
    Words("bloqueadas", MaskNames(masks.blocked), out);
    Words("ignoradas", MaskNames(masks.ignored), out);
    Words("capturadas", MaskNames(masks.caught), out);
    Words("pendientes_hilo", MaskNames(masks.pending_thread), out);
    Words("pendientes_proceso", MaskNames(masks.pending_process), out);
    out->Close('}');
}

void Processes(const Snapshot &now, Writer *out) {
    out->NewLine();
    out->Name("procesos");
    out->Open('[');
    for (const Process &process : now.processes) {
        out->NewLine();
        out->Open('{');
        out->Number("pid", process.stat.pid);
        out->Number("padre", process.stat.parent);
        out->Number("nivel", process.depth);
        out->String("estado", Constant(StateName(process.stat.state)));
        out->Number("nice", process.stat.nice);
        out->Number("grupo", process.stat.group);
        out->Number("sesion", process.stat.session);
        out->String("orden", process.line);
        out->Name("tuberias");
        out->Open('[');
        for (const PipeEnd &end : process.pipes) {
            out->Open('{');
            out->Unsigned("inodo", end.inode);
            out->Number("descriptor", end.descriptor);
            out->String("extremo", end.writes ? "escritura" : "lectura");
            out->Close('}');
        }
        out->Close(']');
        out->Close('}');
    }
    out->Close(']');
    if (now.more_processes) out->Bool("procesos_incompletos", true);
}

} // namespace

std::string JsonString(std::string_view text) {
    std::string json = "\"";
    const auto unit = [&json](unsigned value) {
        char escape[8];
        snprintf(escape, sizeof escape, "\\u%04x", value & 0xFFFF);
        json += escape;
    };
    while (!text.empty()) {
        const unsigned char byte = static_cast<unsigned char>(text.front());
        const int code = TakeCharacter(&text);
        if (code == -1) {
            unit(0xDC00u + byte);
        } else if (code >= 0x10000) {
            unit(0xD800u + (static_cast<unsigned>(code - 0x10000) >> 10));
            unit(0xDC00u + (static_cast<unsigned>(code - 0x10000) & 0x3FF));
        } else if (code < ' ' || code >= 0x7F) {
            unit(static_cast<unsigned>(code));
        } else {
            if (code == '"' || code == '\\') json += '\\';
            json += static_cast<char>(code);
        }
    }
    return json + "\"";
}

std::string JsonOutput(const View &view, unsigned panels) {
    const Snapshot &now = view.now;
    const auto wanted = [panels](Panel panel) { return (panels & 1u << static_cast<int>(panel)) != 0; };
    Writer out;
    out.Open('{');
    out.Number("version", 1);
    out.Number("pid", now.pid);
    out.String("programa", now.program);
    out.Unsigned("uid", now.uid);
    if (wanted(Panel::kDescriptors)) Descriptors(now, &out);
    if (wanted(Panel::kMemory)) {
        Zones(now, &out);
        FileSystems(now, &out);
    }
    if (wanted(Panel::kSignals)) Signals(now.signals, &out);
    if (wanted(Panel::kProcesses)) Processes(now, &out);
    out.Close('}');
    return out.text() + "\n";
}

} // namespace mirador
