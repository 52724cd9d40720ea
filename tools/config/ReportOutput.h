// The two forms of orlune-config's report.
#pragma once

#include <stdio.h>

#include <string>

#include "tools/config/ConfigReport.h"

void PrintReportText(const ConfigReport& report, FILE* out);
void PrintReportJson(const ConfigReport& report, FILE* out);
// The self-contained HTML page; false with `error` set when it cannot be written.
bool WriteReportHtml(const ConfigReport& report, const std::string& path, std::string* error);

const char* SeverityName(Severity severity);
const char* IdGroupName(IdGroup group);
