// The data behind the HTML reports' plots: decimation, and the tuning grids of orlune-config
// against the configuration.
#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <tuple>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/DeviceRoot.h"
#include "RunProgram.h"
#include "tools/config/Checks.h"
#include "tools/config/LoadOrder.h"
#include "tools/config/LogCollector.h"
#include "tools/config/TuningGrid.h"
#include "tools/report/Columns.h"

namespace {

TEST(ReportData, DecimationKeepsEveryColumnsExtremesWhateverTheBlocks) {
    // Positions, columns, block size, where the spike sits.
    const std::tuple<int64_t, int, int, int64_t> cases[] = {
            {1000, 1200, 7, 999},  // fewer positions than columns
            {100003, 997, 333, 50001}};
    for (const auto& [span, columns, block, spike] : cases) {
        SCOPED_TRACE(span);
        std::vector<float> signal(static_cast<size_t>(span));
        for (int64_t i = 0; i < span; ++i) {
            signal[i] = 0.01f * static_cast<float>((i * 7919) % 101 - 50) / 50.0f;
        }
        signal[spike] = 0.9f;
        signal[(spike + span / 2) % span] = -0.8f;
        MinMaxColumns blocks(columns, span), single(columns, span);
        for (int64_t i = 0; i < span; i += block) {
            blocks.AddSamples(i, signal.data() + i,
                              static_cast<int>(std::min<int64_t>(block, span - i)), 1);
        }
        for (int64_t i = 0; i < span; ++i) {
            single.Add(i, signal[i]);
        }
        for (int col = 0; col < columns; ++col) {
            // Every column holds data once the series is at least as long as the plot.
            ASSERT_EQ(span >= columns || single.Has(col), blocks.Has(col)) << col;
            EXPECT_TRUE(!blocks.Has(col) ||
                        (single.Min(col) == blocks.Min(col) && single.Max(col) == blocks.Max(col)))
                    << col;
        }
        EXPECT_EQ(0.9f, blocks.Max(blocks.ColumnOf(spike)));
    }
}

// orlune-config's grid cells on a copy of the sample device with three ids broken: each cell
// sits at its virtual id and shows its resolution.
TEST(ReportData, GridCellsMatchTheResolutions) {
    const std::string sample = std::string(ORLUNE_BINARY_DIR) + "/sample-device";
    // Virtual id -> what its cell shows: the sample's record, except where the copy is broken.
    std::map<int, std::pair<CellKind, std::string>> expected;
    std::ifstream tuning(sample + "/sample-tuning.txt");
    int vid = 0, id = 0, ext = 0;
    for (std::string line; std::getline(tuning, line);) {
        if (sscanf(line.c_str(), "%d %d %d", &vid, &id, &ext) == 3) {  // not a # line
            expected[vid] = {CellKind::Record, std::to_string(id) + "/" + std::to_string(ext)};
        }
    }
    expected[41000] = {CellKind::MissingVirtualId, "-"};
    expected[4423] = {CellKind::MissingRecord, "9999/1202"};
    expected[4001] = {CellKind::Shadowed, "1003/1200"};
    DeviceRoot root;
    root.CopyTree(sample);
    std::string vmap = ReadText(root.HostPath("/odm/etc/kiv/kiv_config_vmap.xml"));
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
    ASSERT_EQ(4u, grids.size());
    for (size_t g = 0; g < grids.size(); ++g) {
        ASSERT_EQ(g < 3 ? 18u : 36u, grids[g].rows.size());
        for (int row = 0; row < static_cast<int>(grids[g].rows.size()); ++row) {
            ASSERT_EQ(7u, grids[g].cells[row].size());
            for (int level = 0; level < 7; ++level) {
                const GridCell& c = grids[g].cells[row][level];
                // Speaker rows: orientation x scene; headphone rows: mode x kind.
                ASSERT_EQ(g < 3 ? vid::SpeakerId(static_cast<int>(g), row / vid::kSpeakerScenes,
                                                 row % vid::kSpeakerScenes, level)
                                : vid::HeadphoneId(row / vid::kHeadphoneKinds,
                                                   row % vid::kHeadphoneKinds, level),
                          c.virtualId);
                EXPECT_EQ(expected[c.virtualId], std::make_pair(c.kind, c.label)) << c.virtualId;
            }
        }
    }
    ResetConfigurationTables();
}

}  // namespace
