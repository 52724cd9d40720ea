#include "tools/report/Svg.h"

#include <math.h>
#include <stdio.h>

std::string Escape(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                // Control characters would make the page invalid XML inside SVG.
                out += (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') ? ' ' : c;
        }
    }
    return out;
}

std::string Clip(const std::string& text, size_t limit) {
    return text.size() <= limit ? text : text.substr(0, limit) + "...";
}

std::string Num(double value) {
    char text[32];
    const double rounded = round(value * 10.0) / 10.0;
    if (rounded == floor(rounded)) {
        snprintf(text, sizeof(text), "%.0f", rounded);
    } else {
        snprintf(text, sizeof(text), "%.1f", rounded);
    }
    return text;
}

double PlotArea::Y(double value) const {
    const double v = value < lo ? lo : (value > hi ? hi : value);
    return y + h * (hi - v) / (hi - lo);
}

std::string BandPath(const MinMaxColumns& columns, const PlotArea& area) {
    std::string d;
    const int n = columns.Columns();
    for (int start = 0; start < n;) {
        if (!columns.Has(start)) {
            ++start;
            continue;
        }
        int end = start;
        while (end < n && columns.Has(end)) {
            ++end;
        }
        // Along the maxima left to right and back along the minima, through the column centres
        // and out to the run's outer edges; half a unit above and below, so that a column whose
        // minimum equals its maximum still shows.
        const double left = area.ColumnX(start, n);
        const double right = area.ColumnX(end, n);
        const double half = 0.5 * area.w / n;
        d += "M" + Num(left) + "," + Num(area.Y(columns.Max(start)) - 0.5);
        for (int c = start; c < end; ++c) {
            d += "L" + Num(area.ColumnX(c, n) + half) + "," + Num(area.Y(columns.Max(c)) - 0.5);
        }
        d += "L" + Num(right) + "," + Num(area.Y(columns.Max(end - 1)) - 0.5);
        d += "L" + Num(right) + "," + Num(area.Y(columns.Min(end - 1)) + 0.5);
        for (int c = end - 1; c >= start; --c) {
            d += "L" + Num(area.ColumnX(c, n) + half) + "," + Num(area.Y(columns.Min(c)) + 0.5);
        }
        d += "L" + Num(left) + "," + Num(area.Y(columns.Min(start)) + 0.5);
        d += "Z";
        start = end;
    }
    return d;
}

std::string LinePath(const MinMaxColumns& columns, const PlotArea& area, bool maximum) {
    std::string d;
    const int n = columns.Columns();
    bool open = false;
    for (int c = 0; c < n; ++c) {
        if (!columns.Has(c)) {
            open = false;
            continue;
        }
        const double v = maximum ? columns.Max(c) : columns.Min(c);
        d += (open ? "L" : "M") + Num(area.ColumnX(c, n) + 0.5 * area.w / n) + "," + Num(area.Y(v));
        open = true;
    }
    return d;
}

std::string PolylinePoints(const std::vector<float>& values, const PlotArea& area) {
    std::string points;
    const size_t n = values.size();
    for (size_t i = 0; i < n; ++i) {
        const double x = n > 1 ? area.x + area.w * static_cast<double>(i) / (n - 1) : area.x;
        points += (i == 0 ? "" : " ") + Num(x) + "," + Num(area.Y(values[i]));
    }
    return points;
}

std::string TimeTicks(const PlotArea& area, double seconds, double height) {
    // A step of 1, 2 or 5 times a power of ten that gives at most about ten ticks.
    double step = 1e-3;
    for (const double candidate :
         {1e-3, 2e-3, 5e-3, 1e-2, 2e-2,  5e-2,  0.1,   0.2,    0.5,    1.0,    2.0,   5.0,
          10.0, 20.0, 30.0, 60.0, 120.0, 300.0, 600.0, 1200.0, 1800.0, 3600.0, 7200.0}) {
        step = candidate;
        if (seconds / candidate <= 10.0) {
            break;
        }
    }
    std::string out;
    for (int i = 0; i * step <= seconds + 1e-9; ++i) {
        const double t = i * step;
        const double x = area.x + (seconds > 0 ? area.w * t / seconds : 0);
        char label[32];
        if (step >= 60.0) {
            snprintf(label, sizeof(label), "%d:%02d", static_cast<int>(t) / 60,
                     static_cast<int>(t) % 60);
        } else {
            snprintf(label, sizeof(label), step < 0.1 ? "%.3f s" : "%.1f s", t);
        }
        out += "<line class=\"grid\" x1=\"" + Num(x) + "\" y1=\"" + Num(area.y) + "\" x2=\"" +
               Num(x) + "\" y2=\"" + Num(area.y + height) + "\"/>";
        out += SvgText(x + 2, area.y + height - 2, label, "tick");
    }
    return out;
}

std::string ValueTicks(const PlotArea& area, const std::vector<double>& values, const char* unit) {
    std::string out;
    for (double v : values) {
        const double y = area.Y(v);
        out += "<line class=\"grid\" x1=\"" + Num(area.x) + "\" y1=\"" + Num(y) + "\" x2=\"" +
               Num(area.x + area.w) + "\" y2=\"" + Num(y) + "\"/>";
        out += "<text class=\"tick\" text-anchor=\"end\" x=\"" + Num(area.x - 3) + "\" y=\"" +
               Num(y + 3) + "\">" + Num(v) + unit + "</text>";
    }
    return out;
}

std::string SvgOpen(double width, double height, const std::string& cls) {
    return "<svg class=\"" + cls + "\" width=\"" + Num(width) + "\" height=\"" + Num(height) +
           "\" viewBox=\"0 0 " + Num(width) + " " + Num(height) + "\">";
}

std::string SvgText(double x, double y, const std::string& text, const char* cls) {
    return "<text class=\"" + std::string(cls) + "\" x=\"" + Num(x) + "\" y=\"" + Num(y) + "\">" +
           Escape(text) + "</text>";
}

std::string SvgRect(double x, double y, double w, double h, const char* cls,
                    const std::string& title) {
    std::string out = "<rect class=\"" + std::string(cls) + "\" x=\"" + Num(x) + "\" y=\"" +
                      Num(y) + "\" width=\"" + Num(w) + "\" height=\"" + Num(h) + "\"";
    if (title.empty()) {
        return out + "/>";
    }
    return out + "><title>" + Escape(title) + "</title></rect>";
}
