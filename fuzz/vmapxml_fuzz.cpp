// Fuzzes the virtual-map XML reader with the input as /odm/etc/kiv/kiv_config_vmap.xml,
// followed by the table pointer set-up over the map it gave. The tables are emptied before
// every run.
#include "effect/orlune.h"
#include "fuzz/FuzzDeviceRoot.h"
#include "tools/config/LoadOrder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!fuzz_root::WriteConfigFile("kiv_config_vmap.xml", data, size)) {
        return 0;
    }
    ConfigUpdate update;
    ResetConfigurationTables();
    // Some extended records for the map to reach, so that the pointer set-up has work to do.
    for (int32_t id = 0; id <= 64; id += 2) {
        update.Tables().gRealMapTableExt[id] = AudioOrluneMobileParaExt{};
    }
    Orlune::KivReadConfigTableFromXML(false);
    Orlune::KivInitConfigPointer();
    return 0;
}
