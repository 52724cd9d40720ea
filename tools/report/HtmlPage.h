// One self-contained HTML page: a fixed inline style sheet, headings, fact tables and plain
// tables, and inline SVG figures added as text. The page uses no script and loads nothing.
#pragma once

#include <stddef.h>

#include <string>
#include <utility>
#include <vector>

// Writes `text` to `path`; false with `error` set when it cannot.
bool WriteTextFile(const std::string& path, const std::string& text, std::string* error);

class HtmlPage {
public:
    HtmlPage(const std::string& title, const std::string& subtitle);

    // Appends raw markup (already escaped).
    void Add(const std::string& markup) { mBody += markup; }
    void Section(const std::string& id, const std::string& title);
    void Paragraph(const std::string& text, const char* cls = "note");
    // Two columns: a name and its value, both escaped.
    void Facts(const std::vector<std::pair<std::string, std::string>>& facts);
    // A table of escaped cells; `cls` names the table's class.
    void Table(const std::vector<std::string>& head,
               const std::vector<std::vector<std::string>>& rows, const char* cls);

    std::string Text() const;
    bool Write(const std::string& path, std::string* error) const;

private:
    std::string mTitle;
    std::string mBody;
};
