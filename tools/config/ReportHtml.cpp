// orlune-config --report FILE.html: the checker's findings as one self-contained page, with
// the tuning space drawn as grids and the volume thresholds as step plots.
#include <string>

#include "config/NameLists.h"
#include "tools/config/ReportOutput.h"
#include "tools/config/ThresholdSteps.h"
#include "tools/config/TuningGrid.h"
#include "tools/report/HtmlPage.h"
#include "tools/report/Svg.h"

namespace {

void Header(const ConfigReport& r, HtmlPage* page) {
    page->Facts({
            {"device root", r.deviceRoot},
            {"properties", r.propertiesFile.empty() ? "(none: every property has its default)"
                                                    : r.propertiesFile},
            {"product name", r.productKnown ? r.productName : "(none)"},
            {"region", r.region + ", region files " + (r.regionEnabled ? "enabled" : "disabled")},
            {"over-the-air",
             r.ota.offered
                     ? "version " + r.ota.version + " (" + std::to_string(r.ota.versionNumber) +
                               "), local version " + std::to_string(r.ota.localVersion) + ": " +
                               (r.ota.taken ? "taken" : "not taken")
                     : "none offered, local version " + std::to_string(r.ota.localVersion)},
            {"ui type", "xml " + std::to_string(r.uiTypeXml) + ", device tree " +
                                (r.uiTypeNodePresent ? std::to_string(r.uiTypeNode) : "(none)")},
            {"result", std::to_string(r.Count(Severity::Error)) + " error(s), " +
                               std::to_string(r.Count(Severity::Warning)) + " warning(s)"},
    });
}

void Files(const ConfigReport& r, HtmlPage* page) {
    std::vector<std::vector<std::string>> rows;
    for (const FileChoice& f : r.files) {
        std::string size;
        if (f.expectedSize >= 0 && f.size >= 0) {
            size = std::to_string(f.size) + " bytes" +
                   (f.size == f.expectedSize ? "" : " (wrong size)");
        }
        rows.push_back({f.role, f.path.empty() ? "-" : f.path, f.choice, size, f.why});
    }
    page->Table({"file", "path", "choice", "size", "why"}, rows, "list");
}

std::string GridTable(const TuningGrid& g) {
    std::string out = "<div><h3>" + Escape(g.title) + "</h3><table class=\"grid\"><tr><th></th>";
    for (int level = 0; level < kGridLevels; ++level) {
        out += "<th>" + std::string(kVolumeLevelNames[level]) + "</th>";
    }
    out += "</tr>";
    for (size_t row = 0; row < g.rows.size(); ++row) {
        out += "<tr><th>" + Escape(g.rows[row]) + "</th>";
        for (const GridCell& c : g.cells[row]) {
            out += "<td class=\"cell " + std::string(CellKindClass(c.kind)) + "\" title=\"" +
                   Escape(c.title) + "\">" + Escape(c.label) + "</td>";
        }
        out += "</tr>";
    }
    return out + "</table></div>";
}

void Grids(const ConfigReport& r, HtmlPage* page) {
    const std::vector<TuningGrid> grids = BuildTuningGrids(r);
    int counts[5] = {};
    for (const TuningGrid& g : grids) {
        for (const auto& row : g.cells) {
            for (const GridCell& c : row) {
                ++counts[static_cast<int>(c.kind)];
            }
        }
    }
    std::string legend = "<p class=\"legend\">";
    for (CellKind k : {CellKind::Record, CellKind::NoTables, CellKind::Shadowed,
                       CellKind::MissingRecord, CellKind::MissingVirtualId}) {
        legend += "<span><span class=\"sw cell " + std::string(CellKindClass(k)) + "\"></span>" +
                  Escape(CellKindMeaning(k)) + ": " + std::to_string(counts[static_cast<int>(k)]) +
                  "</span>";
    }
    page->Add(legend + "</p>\n<div class=\"grids\">");
    for (const TuningGrid& g : grids) {
        page->Add(GridTable(g));
    }
    page->Add("</div>\n");
}

// One scene row's thresholds as the level each volume index gives.
std::string StepPlot(const int16_t* t, const std::string& name) {
    const int maxIndex = StepPlotMaxIndex(t);
    const std::vector<int> levels = LevelsByIndex(t, maxIndex);
    constexpr double kW = 260, kH = 110;
    PlotArea a;
    a.x = 34;
    a.y = 18;
    a.w = kW - a.x - 8;
    a.h = kH - a.y - 18;
    a.lo = 0;
    a.hi = 6;
    std::string out = SvgOpen(kW, kH, "steps");
    out += SvgText(4, 12, name, "lane");
    out += SvgRect(a.x, a.y, a.w, a.h, "frame");
    out += ValueTicks(a, {0, 3, 6}, "");
    std::string points;
    for (int i = 0; i <= maxIndex; ++i) {
        // Index i holds from i - 0.5 to i + 0.5.
        const double x0 = a.x + a.w * i / (maxIndex + 1);
        const double x1 = a.x + a.w * (i + 1) / (maxIndex + 1);
        points += Num(x0) + "," + Num(a.Y(levels[i])) + " " + Num(x1) + "," + Num(a.Y(levels[i])) +
                  " ";
    }
    out += "<polyline class=\"line-in\" points=\"" + points + "\"/>";
    std::string thresholds;
    for (int i = 0; i < 6; ++i) {
        thresholds += (i == 0 ? "" : " ") + std::to_string(t[i]);
    }
    out += SvgText(a.x, kH - 4, "index 0.." + std::to_string(maxIndex) + "; " + thresholds, "tick");
    return out + "<title>" + Escape(name + " thresholds " + thresholds) + "</title></svg>";
}

void Thresholds(const ConfigReport& r, HtmlPage* page) {
    page->Paragraph("Volume level (0 LOW .. 6 LOUD) for each stream volume index; switch word " +
                    std::to_string(r.thresholdRaw[0]) + ".");
    std::string plots = "<div class=\"zooms\">";
    for (int row = 0; row < 6; ++row) {
        plots += StepPlot(&r.thresholdRaw[1 + 6 * row], kSceneNames[row]);
    }
    page->Add(plots + "</div>\n");
}

void Findings(const ConfigReport& r, HtmlPage* page) {
    if (r.findings.empty()) {
        page->Paragraph("None.");
        return;
    }
    std::string table = "<table class=\"list\"><tr><th>severity</th><th>finding</th></tr>";
    for (const Finding& f : r.findings) {
        table += "<tr class=\"" + std::string(SeverityName(f.severity)) + "\"><td>" +
                 SeverityName(f.severity) + "</td><td>" + Escape(f.message) + "</td></tr>";
    }
    page->Add(table + "</table>\n");
}

}  // namespace

bool WriteReportHtml(const ConfigReport& r, const std::string& path, std::string* error) {
    HtmlPage page("orlune-config report", r.deviceRoot);
    Header(r, &page);
    page.Section("files", "Files chosen");
    Files(r, &page);
    page.Section("tuning-space", "Tuning space");
    page.Paragraph(
            "Every virtual id the mode logic can ask for, by what it resolves to; each "
            "cell shows the main and extended record ids (hover for the virtual id).");
    Grids(r, &page);
    page.Section("thresholds", "Volume thresholds");
    Thresholds(r, &page);
    page.Section("findings", "Errors and warnings");
    Findings(r, &page);
    return page.Write(path, error);
}
