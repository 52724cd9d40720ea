#include "tools/report/HtmlPage.h"

#include <stdio.h>

#include "tools/report/Svg.h"

namespace {

// One style sheet for both tools' pages: system fonts only, colours by class.
const char kStyle[] = R"(
body{font:13px/1.35 sans-serif;margin:16px 20px;color:#1d2330;background:#fff}
h1{font-size:20px;margin:0 0 2px}h2{font-size:16px;margin:22px 0 6px;border-bottom:1px solid #ccd}
h3{font-size:13px;margin:12px 0 4px}.sub{color:#556;margin:0 0 10px}
table{border-collapse:collapse;margin:4px 0}td,th{padding:2px 8px;text-align:left;vertical-align:top}
table.facts th{color:#445;font-weight:normal;white-space:nowrap}
table.list td,table.list th{border-bottom:1px solid #e3e6ee}
.note{color:#445;margin:4px 0}.mono{font-family:monospace}
.error{color:#a01818}.warning{color:#8a5a00}.info{color:#335}
svg{display:block;margin:4px 0;background:#fff}
svg text{font:10px sans-serif;fill:#334}svg text.tick{fill:#778}svg text.lane{font-weight:bold}
svg text.seg{font-size:9px;fill:#123}
.grid{stroke:#e4e7ef;stroke-width:1}.frame{fill:none;stroke:#c5cad8}
.wave-in{fill:#3b6fc4}.wave-out{fill:#d2691e}
.line-in{fill:none;stroke:#3b6fc4;stroke-width:1.2}.line-out{fill:none;stroke:#d2691e;stroke-width:1.2}
.band-in{fill:#3b6fc4;opacity:.3}.band-out{fill:#d2691e;opacity:.3}
.limit{stroke:#a01818;stroke-dasharray:4 3}
.seg-a{fill:#dfe9f8;stroke:#9fb5d8}.seg-b{fill:#e6f3df;stroke:#a5c795}.seg-c{fill:#f6ead6;stroke:#d3b27a}
.seg-bad{fill:#f7d9d9;stroke:#cf8a8a}.seg-busy{fill:#e4e4e4;stroke:#aaa}
.edge-marker line{stroke:#7a1fa2;stroke-width:1.2}.edge-marker path{fill:#7a1fa2}
.edge-marker.not-faded line{stroke:#999;stroke-dasharray:2 2}.edge-marker.not-faded path{fill:#999}
.mark line{stroke:#445;stroke-width:1}.mark path{fill:#445}.mark.error path,.mark.loud path{fill:#a01818}
.mark.event path{fill:#1f7a3a}
.zooms{display:flex;flex-wrap:wrap;gap:8px}.zoom{border:1px solid #dde;padding:2px 4px}
.legend span{display:inline-block;margin-right:12px}.sw{display:inline-block;width:12px;height:10px;margin-right:4px;vertical-align:middle}
table.grid td.cell{width:62px;height:18px;font:10px monospace;text-align:center;border:1px solid #fff;padding:1px 2px}
table.grid th{font-weight:normal;font-size:11px;white-space:nowrap}
.cell.record{background:#cfe8c8}.cell.no-tables{background:#f3e3a6}.cell.missing-vid{background:#e9e9e9;color:#777}
.cell.missing-record{background:#f3b7b7}.cell.shadowed{background:#c9d7f5}
.grids{display:flex;flex-wrap:wrap;gap:18px}
)";

}  // namespace

HtmlPage::HtmlPage(const std::string& title, const std::string& subtitle) : mTitle(title) {
    mBody += "<h1>" + Escape(title) + "</h1>\n<p class=\"sub\">" + Escape(subtitle) + "</p>\n";
}

void HtmlPage::Section(const std::string& id, const std::string& title) {
    mBody += "<h2 id=\"" + Escape(id) + "\">" + Escape(title) + "</h2>\n";
}

void HtmlPage::Paragraph(const std::string& text, const char* cls) {
    mBody += "<p class=\"" + std::string(cls) + "\">" + Escape(text) + "</p>\n";
}

void HtmlPage::Facts(const std::vector<std::pair<std::string, std::string>>& facts) {
    mBody += "<table class=\"facts\">";
    for (const auto& f : facts) {
        mBody += "<tr><th>" + Escape(f.first) + "</th><td>" + Escape(f.second) + "</td></tr>";
    }
    mBody += "</table>\n";
}

void HtmlPage::Table(const std::vector<std::string>& head,
                     const std::vector<std::vector<std::string>>& rows, const char* cls) {
    mBody += "<table class=\"" + std::string(cls) + "\"><tr>";
    for (const std::string& h : head) {
        mBody += "<th>" + Escape(h) + "</th>";
    }
    mBody += "</tr>";
    for (const auto& row : rows) {
        mBody += "<tr>";
        for (const std::string& cell : row) {
            mBody += "<td>" + Escape(cell) + "</td>";
        }
        mBody += "</tr>";
    }
    mBody += "</table>\n";
}

std::string HtmlPage::Text() const {
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>" +
           Escape(mTitle) + "</title><style>" + kStyle + "</style></head><body>\n" + mBody +
           "</body></html>\n";
}

bool WriteTextFile(const std::string& path, const std::string& text, std::string* error) {
    FILE* file = fopen(path.c_str(), "wb");
    if (file == nullptr) {
        *error = "cannot write " + path;
        return false;
    }
    const bool ok = fwrite(text.data(), 1, text.size(), file) == text.size();
    if (fclose(file) != 0 || !ok) {
        *error = "cannot write " + path;
        return false;
    }
    return true;
}

bool HtmlPage::Write(const std::string& path, std::string* error) const {
    return WriteTextFile(path, Text(), error);
}
