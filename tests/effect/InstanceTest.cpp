// The first construction's process-wide pruning of the parameter maps happens once.
#include <gtest/gtest.h>

#include <memory>

#include "effect/orlune.h"

namespace {

TEST(InstanceTest, OnlyTheFirstConstructionPrunes) {
    auto first = std::make_unique<Orlune>();
    EXPECT_EQ(PublishedTables().gHpMapTable.count("DEFALUT"), 1u);  // kept by the pruning
    // Entries that appear later are the configuration's: a second instance leaves them alone.
    {
        ConfigUpdate update;
        update.Tables().gVituralMapTable[0] = RealParamIdStru{1, 2};
        update.Tables().gRealMapTable[1] = AudioOrluneMobilePara{};
        update.Tables().gRealMapTableExt[2] = AudioOrluneMobileParaExt{};
    }
    auto second = std::make_unique<Orlune>();
    EXPECT_EQ(Orlune::ResolveVirtualId(0, nullptr, nullptr, nullptr), Orlune::Resolve::Found);
}

}  // namespace
