// Fuzzes the version reader with the input as /odm/etc/kiv/version.txt.
#include "effect/orlune.h"
#include "fuzz/FuzzDeviceRoot.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (fuzz_root::WriteConfigFile("version.txt", data, size)) {
        Orlune::GetVersionInfo("/odm/etc/kiv/");
    }
    return 0;
}
