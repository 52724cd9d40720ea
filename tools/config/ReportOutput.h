// The two forms of orlune-config's report.
#pragma once

#include <stdio.h>

#include "tools/config/ConfigReport.h"

void PrintReportText(const ConfigReport& report, FILE* out);
void PrintReportJson(const ConfigReport& report, FILE* out);

const char* SeverityName(Severity severity);
const char* IdGroupName(IdGroup group);
