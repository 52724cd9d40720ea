// orlune-sampleconfig SOURCE OUTDIR: builds the sample device tree from its readable source.
#include <stdio.h>

#include <string>

#include "tools/sampleconfig/SampleSource.h"
#include "tools/sampleconfig/SampleTuning.h"
#include "tools/sampleconfig/SampleWriter.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: %s SOURCE OUTDIR\n", argv[0]);
        return 2;
    }
    SampleSource source;
    SampleTuning tuning;
    std::string error;
    if (!ParseSampleSource(argv[1], &source, &error) ||
        !BuildSampleTuning(source, &tuning, &error) ||
        !WriteSampleDevice(source, tuning, argv[2], &error)) {
        fprintf(stderr, "orlune-sampleconfig: %s\n", error.c_str());
        return 1;
    }
    return 0;
}
