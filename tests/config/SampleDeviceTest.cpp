// The generated sample device loads cleanly and every virtual id gets the tuning that its
// source describes (build/sample-device/sample-tuning.txt lists them).
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"
#include "tools/config/LoadOrder.h"

namespace {

const std::string kSampleDevice = std::string(ORLUNE_BINARY_DIR) + "/sample-device";

struct Tuning {
    int virtualId, id, extId, word400, word300;
    std::string name;
};

std::vector<Tuning> ReadTuningList() {
    std::vector<Tuning> out;
    std::ifstream in(kSampleDevice + "/sample-tuning.txt");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::istringstream fields(line);
        Tuning t;
        double gainDb, width;
        fields >> t.virtualId >> t.id >> t.extId >> gainDb >> t.word400 >> width >> t.word300 >>
                t.name;
        out.push_back(t);
    }
    return out;
}

TEST(SampleDevice, EveryVirtualIdResolvesToItsOwnTuningWithTables) {
    DeviceRoot root;
    root.CopyTree(kSampleDevice);
    LogCapture log;
    LoadConfigurationOnce(false);

    const std::vector<Tuning> tunings = ReadTuningList();
    ASSERT_EQ(630u, tunings.size());
    // Within a device, a gain word belongs to one main record only.
    std::map<std::pair<bool, int>, int> gainOwner;
    for (const Tuning& t : tunings) {
        RealParamIdStru ids{};
        const AudioOrluneMobilePara* para = nullptr;
        const AudioOrluneMobileParaExt* ext = nullptr;
        ASSERT_EQ(Orlune::Resolve::Found, Orlune::ResolveVirtualId(t.virtualId, &ids, &para, &ext))
                << t.name;
        EXPECT_EQ(t.id, ids.ID);
        EXPECT_EQ(t.extId, ids.EXTID);
        EXPECT_EQ(t.word400, para->words[400]) << t.name;
        EXPECT_EQ(t.word300, ext->words[300]) << t.name;
        EXPECT_NE(nullptr, ext->twsTable1) << t.name << " would reach the algorithm without tables";
        const auto owner = gainOwner.emplace(std::make_pair(t.virtualId >= 41000, t.word400), t.id);
        EXPECT_EQ(t.id, owner.first->second) << t.name << " shares its gain";
    }
    EXPECT_EQ(0, log.CountContaining("status error"));
    EXPECT_EQ(0, log.CountContaining("fread error"));
    EXPECT_EQ(0, log.CountContaining("KivInitConfigPointer"));
    EXPECT_TRUE(log.Has("ReadTWS: ReadTWS config complete"));
    EXPECT_EQ(0, Orlune::gUiType);
    EXPECT_EQ(11, Orlune::gHpMapTable.at("Zandor Lumen XE"));
    const int16_t music[] = {3, 6, 9, 11, 13, 15};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(music[i], Orlune::gVolumeThrRaw[1 + i]);
    }
    EXPECT_EQ(0x6000 + kAsc2Words - 1, Orlune::gAscConfig2[kAsc2Words - 1]);
}

}  // namespace
