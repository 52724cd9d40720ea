// The data behind the HTML reports' plots: decimation, mark grouping, timeline pieces, the
// threshold steps, and the tuning grids of orlune-config against the configuration.
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/DeviceRoot.h"
#include "tools/config/Checks.h"
#include "tools/config/LoadOrder.h"
#include "tools/config/LogCollector.h"
#include "tools/config/ThresholdSteps.h"
#include "tools/config/TuningGrid.h"
#include "tools/report/Columns.h"
#include "tools/report/Marks.h"

namespace {

TEST(ReportData, DecimationKeepsEveryColumnsExtremesWhateverTheBlocks) {
    struct Case {
        int64_t span;
        int columns;
        int block;
        int64_t spike;
    } const cases[] = {
            {1000, 1200, 7, 999},  // fewer positions than columns
            {48000, 1200, 480, 12345},
            {172800, 1200, 4096, 0},
            {100003, 997, 333, 50001},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.span);
        std::vector<float> signal(static_cast<size_t>(c.span));
        for (int64_t i = 0; i < c.span; ++i) {
            signal[i] = 0.01f * static_cast<float>((i * 7919) % 101 - 50) / 50.0f;
        }
        signal[c.spike] = 0.9f;
        signal[(c.spike + c.span / 2) % c.span] = -0.8f;
        MinMaxColumns blocks(c.columns, c.span), single(c.columns, c.span);
        for (int64_t i = 0; i < c.span; i += c.block) {
            const int n = static_cast<int>(std::min<int64_t>(c.block, c.span - i));
            blocks.AddSamples(i, signal.data() + i, n, 1);
        }
        for (int64_t i = 0; i < c.span; ++i) {
            single.Add(i, signal[i]);
        }
        for (int col = 0; col < c.columns; ++col) {
            // Every column holds data once the series is at least as long as the plot.
            ASSERT_EQ(c.span >= c.columns || single.Has(col), blocks.Has(col)) << col;
            if (blocks.Has(col)) {
                EXPECT_EQ(single.Min(col), blocks.Min(col)) << col;
                EXPECT_EQ(single.Max(col), blocks.Max(col)) << col;
            }
        }
        EXPECT_EQ(0.9f, blocks.Max(blocks.ColumnOf(c.spike)));
    }
}

TEST(ReportData, SpansFillEveryColumnTheyCover) {
    MinMaxColumns m(100, 1000);
    m.AddSpan(0, 3, -5.0f);       // shorter than a column
    m.AddSpan(500, 800, -20.0f);  // thirty columns
    m.AddSpan(790, 800, -1.0f);
    EXPECT_EQ(-5.0f, m.Max(0));
    for (int c = 50; c < 80; ++c) {
        EXPECT_EQ(-20.0f, m.Min(c)) << c;
    }
    EXPECT_EQ(-1.0f, m.Max(79));
    EXPECT_FALSE(m.Has(49));
    EXPECT_FALSE(m.Has(80));
}

TEST(ReportData, MarksShareMarkersOnlyBeyondTheBound) {
    struct Case {
        size_t marks;
        size_t maxMarkers;
    } const cases[] = {{4, 400}, {400, 400}, {401, 400}, {100000, 400}, {5000, 7}};
    for (const Case& c : cases) {
        std::vector<int64_t> positions;
        for (size_t i = 0; i < c.marks; ++i) {
            positions.push_back(static_cast<int64_t>(i * 3600 * 48000 / c.marks));
        }
        const std::vector<MarkGroup> groups =
                GroupMarks(positions, 3600LL * 48000, 1200, c.maxMarkers);
        size_t counted = 0;
        for (const MarkGroup& g : groups) {
            EXPECT_EQ(counted, g.first);
            counted += g.count;
        }
        EXPECT_EQ(c.marks, counted);
        EXPECT_LE(groups.size(), c.maxMarkers);
        EXPECT_EQ(c.marks <= c.maxMarkers, groups.size() == c.marks) << c.marks;
    }
}

TEST(ReportData, ThresholdStepsFollowTheLevelRule) {
    const int16_t ascending[6] = {3, 6, 9, 11, 13, 15};
    const int16_t negative[6] = {2, -2, 8, 10, 12, 14};
    const int16_t unordered[6] = {3, 6, 9, 5, 13, 15};
    const struct {
        const int16_t* row;
        int index;
        int level;
    } cases[] = {{ascending, 0, 0}, {ascending, 9, 2}, {ascending, 15, 5}, {ascending, 16, 6},
                 {negative, 0, 0},  {negative, 1, 0},  {negative, 3, 2},   {unordered, 10, 4},
                 {unordered, 7, 2}, {unordered, 16, 6}};
    for (const auto& c : cases) {
        const std::vector<int> levels = LevelsByIndex(c.row, StepPlotMaxIndex(c.row));
        ASSERT_LT(static_cast<size_t>(c.index), levels.size());
        EXPECT_EQ(c.level, levels[c.index]) << c.row[0] << " index " << c.index;
    }
}

// orlune-config's grid cells on a copy of the sample device with three ids broken: each cell
// sits at its virtual id and shows its resolution.
TEST(ReportData, GridCellsMatchTheResolutions) {
    const std::string sample = std::string(ORLUNE_BINARY_DIR) + "/sample-device";
    std::map<int, std::string> expected;  // virtual id -> "ID/EXTID" of the sample device
    std::ifstream tuning(sample + "/sample-tuning.txt");
    int vid = 0, id = 0, ext = 0;
    for (std::string line; std::getline(tuning, line);) {
        if (sscanf(line.c_str(), "%d %d %d", &vid, &id, &ext) == 3) {  // not a # line
            expected[vid] = std::to_string(id) + "/" + std::to_string(ext);
        }
    }
    DeviceRoot root;
    root.CopyTree(sample);
    std::stringstream text;
    text << std::ifstream(root.HostPath("/odm/etc/kiv/kiv_config_vmap.xml")).rdbuf();
    std::string vmap = text.str();
    for (const auto& [from, to] : std::map<std::string, std::string>{
                 {"<NV NUMID=\"41000\" ID=\"3001\" EXTID=\"3600\"/>", ""},
                 {"<NV NUMID=\"4423\" ID=\"1021\"", "<NV NUMID=\"4423\" ID=\"9999\""},
                 {"</kiv_config_vmap>",
                  "<NV NUMID=\"4001\" ID=\"1\" EXTID=\"2\"/></kiv_config_vmap>"}}) {
        ASSERT_NE(std::string::npos, vmap.find(from)) << from;
        vmap.replace(vmap.find(from), from.size(), to);
    }
    root.WriteKiv("kiv_config_vmap.xml", vmap);
    // Loaded as orlune-config loads it.
    ConfigReport r;
    r.deviceRoot = root.Path();
    LogCollector log;
    StartCountingValues();
    log.Load(false);
    InspectFiles(log, &r);
    InspectElements(log, &r);
    InspectVirtualIds(&r);
    const std::vector<TuningGrid> grids = BuildTuningGrids(r);
    const std::map<int, std::pair<CellKind, std::string>> broken = {
            {41000, {CellKind::MissingVirtualId, "-"}},
            {4423, {CellKind::MissingRecord, "9999/1202"}},
            {4001, {CellKind::Shadowed, "1003/1200"}},
    };
    ASSERT_EQ(4u, grids.size());
    size_t cells = 0;
    for (size_t g = 0; g < grids.size(); ++g) {
        ASSERT_EQ(g < 3 ? 18u : 36u, grids[g].rows.size());
        for (size_t row = 0; row < grids[g].rows.size(); ++row) {
            ASSERT_EQ(7u, grids[g].cells[row].size());
            for (int level = 0; level < 7; ++level) {
                const GridCell& c = grids[g].cells[row][level];
                // Speaker rows: orientation x scene; headphone rows: mode x kind.
                const int r = static_cast<int>(row);
                const int id = g < 3 ? vid::SpeakerId(static_cast<int>(g), r / vid::kSpeakerScenes,
                                                      r % vid::kSpeakerScenes, level)
                                     : vid::HeadphoneId(r / vid::kHeadphoneKinds,
                                                        r % vid::kHeadphoneKinds, level);
                ASSERT_EQ(id, c.virtualId);
                const auto b = broken.find(id);
                if (b != broken.end()) {
                    EXPECT_EQ(b->second.first, c.kind) << id;
                    EXPECT_EQ(b->second.second, c.label) << id;
                } else {
                    EXPECT_EQ(CellKind::Record, c.kind) << id;
                    EXPECT_EQ(expected[id], c.label) << id;
                }
                ++cells;
            }
        }
    }
    EXPECT_EQ(630u, cells);
    ResetConfigurationTables();
}

}  // namespace
