// orlune-config [--properties FILE] [--json] [--region] [--report FILE.html] DEVICE_ROOT
//
// Loads a device's effect configuration through the library's own readers, in the order of the
// effect's first set-up, and reports which files were chosen and why, how every virtual
// parameter id resolves, and every problem the readers met or the loaded tables show. Exit
// status 1 when an error was found, 0 otherwise, 2 on bad usage.
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include <string>

#include "effect/orlune.h"
#include "tools/config/ConfigReport.h"
#include "tools/config/Checks.h"
#include "tools/config/LogCollector.h"
#include "tools/config/ReportOutput.h"

namespace {

int Usage() {
    fprintf(stderr,
            "usage: orlune-config [--properties FILE] [--json] [--region] [--report FILE.html]\n"
            "                     DEVICE_ROOT\n"
            "  --properties FILE  system properties (key=value lines); without it every\n"
            "                     property has its default\n"
            "  --json             machine-readable report\n"
            "  --region           read region files, as after parameter 1\n"
            "  --report FILE.html also write a self-contained HTML page: the tuning space as\n"
            "                     grids, threshold step plots, files, errors and warnings\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    ConfigReport report;
    bool json = false;
    std::string html;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--json") {
            json = true;
        } else if (arg == "--region") {
            report.regionEnabled = true;
        } else if (arg == "--report" && i + 1 < argc) {
            html = argv[++i];
        } else if (arg == "--properties" && i + 1 < argc) {
            report.propertiesFile = argv[++i];
        } else if (!arg.empty() && arg[0] != '-' && report.deviceRoot.empty()) {
            report.deviceRoot = arg;
        } else {
            return Usage();
        }
    }
    struct stat st;
    if (report.deviceRoot.empty() || stat(report.deviceRoot.c_str(), &st) != 0 ||
        !S_ISDIR(st.st_mode)) {
        if (!report.deviceRoot.empty()) {
            fprintf(stderr, "orlune-config: %s is not a directory\n", report.deviceRoot.c_str());
        }
        return Usage();
    }
    if (!report.propertiesFile.empty() && stat(report.propertiesFile.c_str(), &st) != 0) {
        fprintf(stderr, "orlune-config: cannot read %s\n", report.propertiesFile.c_str());
        return 2;
    }
    char absolute[PATH_MAX];
    if (realpath(report.deviceRoot.c_str(), absolute) != nullptr) {
        report.deviceRoot = absolute;
    }
    setenv("ORLUNE_DEVICE_ROOT", report.deviceRoot.c_str(), 1);
    if (report.propertiesFile.empty()) {
        unsetenv("ORLUNE_PROPERTIES");
    } else {
        setenv("ORLUNE_PROPERTIES", report.propertiesFile.c_str(), 1);
    }

    LogCollector log;
    StartCountingValues();
    log.Load(report.regionEnabled);

    InspectFiles(log, &report);
    InspectTables(&report);
    InspectElements(log, &report);
    InspectVirtualIds(&report);
    InspectThresholds(&report);
    InspectUiType(&report);

    if (json) {
        PrintReportJson(report, stdout);
    } else {
        PrintReportText(report, stdout);
    }
    std::string error;
    if (!html.empty() && !WriteReportHtml(report, html, &error)) {
        fprintf(stderr, "orlune-config: %s\n", error.c_str());
        return 2;
    }
    return report.Count(Severity::Error) > 0 ? 1 : 0;
}
