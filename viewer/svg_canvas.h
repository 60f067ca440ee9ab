// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace mirador {

/// Collects shapes and gives them as SVG. Units are pixels; texts have one width for all letters.
class SvgCanvas {
  public:
    static constexpr double kLetter = 7.25; ///< width of a letter of 12 pixels
    static constexpr double kRow = 20;      ///< height of a row of text

    void Text(double x, double y, std::string_view text, const char *classes = "",
              const char *anchor = "start");
    void Box(double x, double y, double width, double height, const char *classes);
    void Line(double x1, double y1, double x2, double y2, const char *classes);
    /// A curve from left to right, with a point at its end.
    void Arrow(double x1, double y1, double x2, double y2);
    /// A curve that leaves to the right and comes back, with a point at its end.
    void Loop(double x, double y1, double y2, double width);
    void Circle(double x, double y, double radius, const char *classes);

    /// The picture. title: for those who cannot see it.
    std::string Finish(double width, double height, std::string_view title) const;

    /// Room that a text takes.
    static double TextWidth(std::string_view text);

  private:
    std::string shapes_;
};

} // namespace mirador
