// Small helpers that turn plot data into inline SVG text. Everything is drawn in the page's
// own coordinates; nothing refers to a font, image or style outside the page.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include "tools/report/Columns.h"

// Text for an HTML, SVG or XML text node or a quoted attribute value.
std::string Escape(const std::string& text);
// At most `limit` characters of `text`, with "..." where it was cut: keeps titles and table
// cells of the pages bounded whatever a log line holds.
std::string Clip(const std::string& text, size_t limit);
// A coordinate with at most one decimal.
std::string Num(double value);

// A rectangle of the drawing and the value range that spans its height (top = hi).
struct PlotArea {
    double x = 0;
    double y = 0;
    double w = 0;
    double h = 0;
    double lo = -1;
    double hi = 1;
    double Y(double value) const;
    // X of column c's left edge when `columns` columns fill the width.
    double ColumnX(int c, int columns) const { return x + w * c / columns; }
};

// The band between every column's minimum and maximum, one closed path per run of columns
// that hold data. Empty when no column does.
std::string BandPath(const MinMaxColumns& columns, const PlotArea& area);
// A line through every column's maximum (or minimum), broken where columns hold no data.
std::string LinePath(const MinMaxColumns& columns, const PlotArea& area, bool maximum);
// Points `values` spread over the area's width, as a polyline's points attribute.
std::string PolylinePoints(const std::vector<float>& values, const PlotArea& area);

// Vertical grid lines and labels for a time axis of `seconds` under the area.
std::string TimeTicks(const PlotArea& area, double seconds, double height);
// Horizontal grid lines with labels at the given values, labelled on the left.
std::string ValueTicks(const PlotArea& area, const std::vector<double>& values, const char* unit);

std::string SvgOpen(double width, double height, const std::string& cls);
std::string SvgText(double x, double y, const std::string& text, const char* cls);
std::string SvgRect(double x, double y, double w, double h, const char* cls,
                    const std::string& title = "");
