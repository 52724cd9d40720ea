// The first construction's process-wide pruning of the parameter maps.
#include <gtest/gtest.h>

#include <memory>

#include "effect/orlune.h"

namespace {

bool Resolves(int id) {
    return Orlune::ResolveVirtualId(id, nullptr, nullptr, nullptr) == Orlune::Resolve::Found;
}

TEST(InstanceTest, FirstConstructionPrunesKeyZeroOnce) {
    // Before any instance, the built-in zero records answer virtual id 0.
    EXPECT_TRUE(Resolves(0));
    EXPECT_FALSE(Resolves(1));
    auto first = std::make_unique<Orlune>();
    EXPECT_TRUE(Orlune::gMapTableFlag);
    EXPECT_FALSE(Resolves(0));
    EXPECT_EQ(PublishedTables().gHpMapTable.count("DEFALUT"), 1u);

    // Entries that appear later are the configuration's: a second instance leaves them alone.
    {
        ConfigUpdate update;
        update.Tables().gVituralMapTable[0] = RealParamIdStru{1, 2};
        update.Tables().gRealMapTable[1] = AudioOrluneMobilePara{};
        update.Tables().gRealMapTableExt[2] = AudioOrluneMobileParaExt{};
    }
    auto second = std::make_unique<Orlune>();
    EXPECT_TRUE(Resolves(0));
}

}  // namespace
