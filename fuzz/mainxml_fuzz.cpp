// Fuzzes the main XML reader with the input as /odm/etc/kiv/kiv_config.xml. The tables are
// emptied before every run.
#include "effect/orlune.h"
#include "fuzz/FuzzDeviceRoot.h"
#include "tools/config/LoadOrder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!fuzz_root::WriteConfigFile("kiv_config.xml", data, size)) {
        return 0;
    }
    ResetConfigurationTables();
    Orlune::KivReadConfigFromXML(false);
    return 0;
}
