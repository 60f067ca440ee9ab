// SPDX-License-Identifier: MIT

#include "viewer/svg_canvas.h"

#include <cstdarg>
#include <cstdio>

#include "viewer/styled_text.h"

namespace mirador {

namespace {

constexpr char kStyle[] =
    "text{font:12px 'DejaVu Sans Mono',Menlo,Consolas,monospace;fill:#1b1f24}"
    ".t{font-weight:bold;font-size:14px}.d{fill:#57606a}.s{font-weight:bold}.w{fill:#fff}"
    ".b{fill:#f6f8fa;stroke:#57606a}.o{fill:#fff8c5;stroke:#9a6700}.i{fill:#ddf4ff;stroke:#0550ae}"
    ".a{fill:none;stroke:#1b1f24;stroke-width:1.4;marker-end:url(#p)}.l{stroke:#8c959f}.n{fill:#1b1f24}"
    ".codigo{fill:#ff8182}.constantes,.datos{fill:#eac54f}.monton{fill:#6fdd8b}.mapeo{fill:#80ccff}"
    ".biblioteca,.nucleo{fill:#d0d7de}.segmento{fill:#c297ff}.anonima{fill:#eaeef2}.pila{fill:#76e3ea}"
    ".z{stroke:#424a53;stroke-width:.8}.f{fill:#c297ff;stroke:#6639ba}.h{fill:#8250df;stroke:#6639ba}"
    ".e{fill:#fff;stroke:#6639ba;stroke-dasharray:3 2}";

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if (c == '"')
            escaped += "&quot;";
        else
            escaped += c;
    }
    return escaped;
}

/// A number as SVG wants it, with a point whatever the locale.
std::string Number(double value) {
    char text[32];
    const long tenths = static_cast<long>(value * 10 + (value < 0 ? -0.5 : 0.5));
    snprintf(text, sizeof text, "%s%ld", tenths < 0 ? "-" : "", (tenths < 0 ? -tenths : tenths) / 10);
    const long rest = (tenths < 0 ? -tenths : tenths) % 10;
    return rest == 0 ? text : std::string(text) + "." + std::to_string(rest);
}

std::string Attribute(const char *name, double value) {
    return std::string(" ") + name + "=\"" + Number(value) + "\"";
}

std::string Class(const char *classes) {
    return *classes ? std::string(" class=\"") + classes + "\"" : std::string();
}

} // namespace

double SvgCanvas::TextWidth(std::string_view text) { return Width(text) * kLetter; }

void SvgCanvas::Text(double x, double y, std::string_view text, const char *classes, const char *anchor) {
    shapes_ += "<text" + Attribute("x", x) + Attribute("y", y) + Class(classes);
    if (std::string_view(anchor) != "start") shapes_ += std::string(" text-anchor=\"") + anchor + "\"";
    shapes_ += " xml:space=\"preserve\">" + Escaped(text) + "</text>\n";
}

void SvgCanvas::Box(double x, double y, double width, double height, const char *classes) {
    shapes_ += "<rect" + Attribute("x", x) + Attribute("y", y) + Attribute("width", width) +
               Attribute("height", height) + " rx=\"2\"" + Class(classes) + "/>\n";
}

void SvgCanvas::Line(double x1, double y1, double x2, double y2, const char *classes) {
    shapes_ += "<line" + Attribute("x1", x1) + Attribute("y1", y1) + Attribute("x2", x2) +
               Attribute("y2", y2) + Class(classes) + "/>\n";
}

void SvgCanvas::Arrow(double x1, double y1, double x2, double y2) {
    const double middle = (x1 + x2) / 2;
    shapes_ += "<path class=\"a\" d=\"M" + Number(x1) + " " + Number(y1) + "C" + Number(middle) + " " +
               Number(y1) + " " + Number(middle) + " " + Number(y2) + " " + Number(x2) + " " + Number(y2) +
               "\"/>\n";
}

void SvgCanvas::Loop(double x, double y1, double y2, double width) {
    const std::string out = Number(x + width);
    shapes_ += "<path class=\"a\" d=\"M" + Number(x) + " " + Number(y1) + "C" + out + " " + Number(y1) + " " +
               out + " " + Number(y2) + " " + Number(x) + " " + Number(y2) + "\"/>\n";
}

void SvgCanvas::Circle(double x, double y, double radius, const char *classes) {
    shapes_ += "<circle" + Attribute("cx", x) + Attribute("cy", y) + Attribute("r", radius) + Class(classes) +
               "/>\n";
}

std::string SvgCanvas::Finish(double width, double height, std::string_view title) const {
    const std::string w = Number(width), h = Number(height);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + w + "\" height=\"" + h +
           "\" viewBox=\"0 0 " + w + " " + h + "\" role=\"img\">\n<title>" + Escaped(title) +
           "</title>\n<style>" + kStyle +
           "</style>\n<defs><marker id=\"p\" markerWidth=\"8\" markerHeight=\"8\" refX=\"7\" refY=\"4\" "
           "orient=\"auto\"><path d=\"M0 0L8 4L0 8z\"/></marker></defs>\n"
           "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n" +
           shapes_ + "</svg>\n";
}

} // namespace mirador
