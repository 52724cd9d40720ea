#include "tools/play/PlayReport.h"

#include <stdio.h>

#include "tools/play/PlayFigures.h"
#include "tools/report/HtmlPage.h"
#include "tools/report/Svg.h"

namespace {

constexpr size_t kListedEvents = 40;
constexpr size_t kListedErrors = 100;
constexpr size_t kListedParams = 200;
constexpr size_t kCellChars = 400;    // a table cell; log lines are cut there
constexpr size_t kEventChars = 4096;  // a usage event, all its keys

std::string Fixed(const char* format, double value) {
    char text[64];
    snprintf(text, sizeof(text), format, value);
    return text;
}

void Header(const PlayReportInput& in, HtmlPage* page) {
    const PlayOptions& o = *in.options;
    const PlayResult& r = *in.result;
    const EffectLogFacts& f = *in.facts;
    const RunTrace& t = *in.trace;
    const double seconds = static_cast<double>(r.inputFrames) / r.rate;
    int errors = 0;
    for (const auto& e : f.applyErrors) {
        errors += e.second;
    }
    std::vector<std::pair<std::string, std::string>> facts = {
            {"input", o.input + ": " + Fixed("%.3f s", seconds) + ", " + std::to_string(r.rate) +
                              " Hz, " + std::to_string(r.fileChannels) + " channel(s)"},
            {"output", o.output + ": " + std::to_string(r.outChannels) + " channel(s)"},
            {"host blocks", std::to_string(r.blocks) + " of " + std::to_string(o.block) +
                                    " frames, " + HostFormatName(o.format) + ", " +
                                    std::to_string(o.channels) + "-channel layout"},
            {"latency", std::to_string(r.nominalLatency) + " frames (" +
                                Fixed("%.1f ms", 1000.0 * r.nominalLatency / r.rate) + ")" +
                                (o.compensate ? ", removed from the output" : "") +
                                (r.measuredLatency >= 0
                                         ? "; first sound " + std::to_string(r.measuredLatency) +
                                                   " frames later in the output"
                                         : "")},
            {"algorithm", f.bound ? "bound: " + f.versions[1] + " (" + f.versions[0] +
                                            ", released " + f.versions[2] + ")"
                                  : "not bound: every block passed through untouched"},
            {"algorithm runs", std::to_string(r.framesFed / 480) + ", errors " +
                                       std::to_string(errors) + ", initialisations " +
                                       std::to_string(f.initialisations)},
            {"real-time factor", Fixed("%.4f", seconds > 0 ? r.processSeconds / seconds : 0.0) +
                                         " (" + Fixed("%.1f ms", 1000.0 * r.processSeconds) +
                                         " in the effect)"},
            {"events", std::to_string(f.events.size()) + " usage event(s), " +
                               std::to_string(t.errorCount) + " error line(s) while playing, " +
                               std::to_string(t.loudCount) + " loud-output warning(s)"},
            {"click remover", std::to_string(t.edges.size()) + " edge(s) found"},
            {"effect library", in.effectLib},
            {"algorithm library", in.algoLib.empty() ? "none preloaded" : in.algoLib},
            {"detector library", in.detectLib.empty() ? "none preloaded" : in.detectLib},
            {"device root", o.deviceRoot.empty() ? "(real root)" : o.deviceRoot},
            {"properties", o.properties.empty() ? "(none)" : o.properties},
            {"UI type",
             t.uiTypeKnown ? std::to_string(t.uiType) : "0 assumed (the set-up logged none)"},
    };
    page->Facts(facts);
}

void EdgeSection(const RunTrace& t, HtmlPage* page) {
    page->Section("edges", "Click remover edges");
    size_t faded = 0;
    for (const EdgeMark& e : t.edges) {
        faded += e.faded ? 1 : 0;
    }
    page->Paragraph(std::to_string(t.edges.size()) + " edge(s) found, " + std::to_string(faded) +
                    " faded. Each view shows " + std::to_string(RunTrace::kZoomLength) +
                    " frames of the channel: the input (blue) and the output at the same "
                    "instant, the effect's latency taken out (orange); the grey line is the edge." +
                    (t.edges.size() > RunTrace::kZoomEdges
                             ? " Views are drawn for the first " +
                                       std::to_string(RunTrace::kZoomEdges) + " edges."
                             : ""));
    std::string zooms = "<div class=\"zooms\">";
    for (size_t i = 0; i < t.edges.size() && i < RunTrace::kZoomEdges; ++i) {
        const EdgeMark& e = t.edges[i];
        zooms +=
                "<div class=\"zoom\" id=\"edge-" + std::to_string(i + 1) + "\">" +
                Escape("edge " + std::to_string(i + 1) + ": " + SecondsText(e.frame, t.rate) +
                       ", ch " + std::to_string(e.channel) + (e.rising ? ", rising" : ", falling") +
                       (e.faded ? ", faded" : ", not faded")) +
                EdgeZoom(t, i) + "</div>";
    }
    page->Add(zooms + "</div>\n");
}

void MarkTable(const RunTrace& t, const std::vector<Mark>& marks, size_t total, size_t limit,
               size_t chars, const char* what, HtmlPage* page) {
    if (total == 0) {
        page->Paragraph(std::string("No ") + what + ".");
        return;
    }
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < marks.size() && i < limit; ++i) {
        rows.push_back({SecondsText(marks[i].frame, t.rate), Clip(marks[i].text, chars)});
    }
    page->Table({"at", what}, rows, "list");
    if (total > rows.size()) {
        page->Paragraph(std::to_string(total - rows.size()) + " more not listed.");
    }
}

}  // namespace

std::string PlayReportPage(const PlayReportInput& in) {
    const RunTrace& t = *in.trace;
    const PlayResult& r = *in.result;
    HtmlPage page("orlune-play report", in.options->input + " -> " + in.options->output);
    Header(in, &page);

    page.Section("signal", "Signal");
    page.Paragraph(
            "Input (blue) and output (orange) on one time axis, each pixel column the "
            "smallest and largest sample in it; below, the peak and RMS level of every "
            "host block. Purple markers are the click remover's edges.");
    page.Add(SignalFigure(t));

    page.Section("timeline", "Timeline");
    page.Paragraph(
            "What the effect ran when: device, the tuning coordinates and records it "
            "logged, the click remover's switch, the swap cross-fade and the start-up "
            "guard (followed from the parameters set), every parameter set, usage events "
            "and errors. Hover for details; grey pieces gather changes too close to "
            "draw apart.");
    page.Add(TimelineFigure(t));

    EdgeSection(t, &page);

    page.Section("detector", "Loud-output detector");
    if (!t.detectorLoaded) {
        page.Paragraph("The detection library was not loaded: no metrics.");
    } else if (!t.detectorObservable) {
        page.Paragraph(
                "The detection library was loaded but does not report its measurements "
                "to the harness; only its warnings are shown.");
        MarkTable(t, t.loud, t.loudCount, kListedErrors, kCellChars, "loud-output warnings", &page);
    } else if (t.detectorFrames == 0) {
        page.Paragraph(
                "The detector was loaded but never fed: it measures only on the "
                "loudspeaker after a stream start (parameter 51=3).");
    } else {
        page.Paragraph(std::to_string(t.detectorFrames) +
                       " algorithm frames measured by the detector: peak (line) and RMS (band) "
                       "of what the algorithm got (blue) and gave (orange), and its loud-output "
                       "warnings.");
        page.Add(DetectorFigure(t));
    }

    page.Section("events", "Usage events and errors");
    MarkTable(t, t.events, t.events.size(), kListedEvents, kEventChars, "usage events", &page);
    MarkTable(t, t.errors, t.errorCount, kListedErrors, kCellChars, "errors logged while playing",
              &page);

    page.Section("parameters", "Parameters set");
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < r.applied.size() && i < kListedParams; ++i) {
        rows.push_back({Clip(r.applied[i], kCellChars)});
    }
    page.Table({"parameter"}, rows, "list");

    page.Section("problems", "Warnings and errors logged");
    if (in.facts->problems.empty()) {
        page.Paragraph("None.");
    } else {
        std::vector<std::vector<std::string>> lines;
        for (const std::string& p : in.facts->problems) {
            lines.push_back({Clip(p, kCellChars)});
        }
        page.Table({"first " + std::to_string(lines.size()) + " lines"}, lines, "list mono");
    }
    return page.Text();
}

bool WritePlayReport(const std::string& path, const PlayReportInput& in, std::string* error) {
    return WriteTextFile(path, PlayReportPage(in), error);
}
