// Cost of reading the main XML as it grows: the sample file's body repeated 1, 4 and 16 times,
// and a file whose one attribute is several megabytes. bytes_per_second must stay flat as the
// size grows (the reader is linear); log lines are formatted but dropped.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <android/log.h>
#include <benchmark/benchmark.h>

#include "effect/orlune.h"

namespace {

namespace fs = std::filesystem;

const std::string kSampleXml =
        std::string(ORLUNE_BINARY_DIR) + "/sample-device/odm/etc/kiv/kiv_config.xml";

void DropLine(const __android_logger_data*, const char*) {}

// A device root of its own whose main XML is `text`; removed when the benchmark ends.
class XmlDevice {
public:
    explicit XmlDevice(const std::string& text) {
        char pattern[] = "/tmp/orlune_xml_bench_XXXXXX";
        mRoot = mkdtemp(pattern);
        fs::create_directories(mRoot + "/odm/etc/kiv");
        std::ofstream(mRoot + "/odm/etc/kiv/kiv_config.xml", std::ios::binary) << text;
        setenv("ORLUNE_DEVICE_ROOT", mRoot.c_str(), 1);
        setenv("ORLUNE_PROPERTIES", (mRoot + "/none.properties").c_str(), 1);
        __android_log_set_logger(DropLine);
        __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    }
    ~XmlDevice() { fs::remove_all(mRoot); }

private:
    std::string mRoot;
};

void ReadMainXmlOf(benchmark::State& state, const std::string& text) {
    XmlDevice device(text);
    for (auto _ : state) {
        {
            ConfigUpdate update;
            update.Tables().gRealMapTable.clear();
            update.Tables().gRealMapTableExt.clear();
        }
        Orlune::KivReadConfigFromXML(false);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
    state.counters["file_bytes"] = static_cast<double>(text.size());
}

void BM_MainXmlTimesSample(benchmark::State& state) {
    std::ifstream in(kSampleXml, std::ios::binary);
    std::stringstream sample;
    sample << in.rdbuf();
    const std::string text = sample.str();
    const size_t bodyStart = text.find("<kiv_config>");
    const size_t bodyEnd = text.rfind("</kiv_config>");
    if (bodyStart == std::string::npos || bodyEnd == std::string::npos) {
        state.SkipWithError("build the sample_device target first");
        return;
    }
    const std::string open = text.substr(0, bodyStart + 12);
    const std::string body = text.substr(bodyStart + 12, bodyEnd - bodyStart - 12);
    std::string file = open;
    for (int64_t i = 0; i < state.range(0); ++i) {
        file += body;
    }
    ReadMainXmlOf(state, file + "</kiv_config>\n");
}
BENCHMARK(BM_MainXmlTimesSample)->Arg(1)->Arg(4)->Arg(16)->Unit(benchmark::kMillisecond);

// One element whose PARAM_VALUE holds `state.range(0)` megabytes of values.
void BM_MainXmlHugeAttribute(benchmark::State& state) {
    std::string value;
    const size_t bytes = static_cast<size_t>(state.range(0)) << 20;
    while (value.size() < bytes) {
        value += "0x1234,";
    }
    ReadMainXmlOf(state,
                  "<kiv_config><NV ID=\"41\" PARAM_VALUE=\"" + value + "\"/></kiv_config>\n");
}
BENCHMARK(BM_MainXmlHugeAttribute)->Arg(1)->Arg(4)->Arg(12)->Unit(benchmark::kMillisecond);

}  // namespace
