// orlune-config on the generated sample device and on copies broken in one way each.
#include <stdio.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/DeviceRoot.h"

namespace {

const std::string kTool = std::string(ORLUNE_BINARY_DIR) + "/bin/orlune-config";
const std::string kSampleDevice = std::string(ORLUNE_BINARY_DIR) + "/sample-device";

struct ToolRun {
    int status;
    std::string out;
};

ToolRun RunTool(const std::string& args) {
    ToolRun run{-1, ""};
    FILE* pipe = popen((kTool + " " + args + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr) {
        return run;
    }
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof(buf), pipe)) > 0) {
        run.out.append(buf, n);
    }
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

// A copy of the sample device with its properties.
class ToolOnCopy : public ::testing::Test {
protected:
    void SetUp() override {
        root.CopyTree(kSampleDevice);
        std::filesystem::copy_file(kSampleDevice + "/sample.properties", root.PropertiesPath(),
                                   std::filesystem::copy_options::overwrite_existing);
    }
    ToolRun Check(const std::string& options = "--json") {
        return RunTool(options + " --properties " + root.PropertiesPath() + " " + root.Path());
    }
    std::string ReadKiv(const std::string& name) {
        std::ifstream in(root.HostPath("/odm/etc/kiv/" + name));
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    // Replaces the first `from` in a file of /odm/etc/kiv/.
    void Edit(const std::string& name, const std::string& from, const std::string& to) {
        std::string text = ReadKiv(name);
        const size_t at = text.find(from);
        ASSERT_NE(std::string::npos, at) << from;
        text.replace(at, from.size(), to);
        root.WriteKiv(name, text);
    }
    // Inserts elements before the closing tag of a file of /odm/etc/kiv/.
    void Append(const std::string& name, const std::string& elements) {
        std::string text = ReadKiv(name);
        const size_t at = text.rfind("</");
        text.insert(at, elements + "\n");
        root.WriteKiv(name, text);
    }
    DeviceRoot root;
};

bool Has(const ToolRun& run, const std::string& part) {
    return run.out.find(part) != std::string::npos;
}

TEST_F(ToolOnCopy, SampleDeviceResolvesEveryIdWithoutErrors) {
    const ToolRun json = Check();
    EXPECT_EQ(0, json.status) << json.out;
    EXPECT_TRUE(Has(json, "\"pointer_set_total\": 414, \"pointer_set_resolved\": 414"));
    EXPECT_TRUE(Has(json, "\"headphone_extra_total\": 216, \"headphone_extra_resolved\": 216"));
    EXPECT_TRUE(Has(json, "\"errors\": 0,"));
    EXPECT_TRUE(Has(json,
                    "{\"virtual_id\": 4423, \"group\": \"speaker\", \"name\": "
                    "\"FULL_LANDSCAPE_GAME_THREE\", \"resolved\": true, \"id\": 1021, "
                    "\"ext_id\": 1202, \"tables\": true}"))
            << json.out;
    const ToolRun text = Check("");
    EXPECT_EQ(0, text.status);
    EXPECT_TRUE(Has(text, "headphone ids with table pointers: 36 of 36 resolve"));
    EXPECT_TRUE(Has(text, "speaker ids with table pointers: 378 of 378 resolve"));
    EXPECT_TRUE(Has(text, "0 error(s), 0 warning(s)"));
}

TEST_F(ToolOnCopy, UnresolvedIdsAreNamedWithTheirCause) {
    Edit("kiv_config_vmap.xml", "<NV NUMID=\"41000\" ID=\"3001\" EXTID=\"3600\"/>", "");
    Edit("kiv_config_vmap.xml", "<NV NUMID=\"4423\" ID=\"1021\"", "<NV NUMID=\"4423\" ID=\"9999\"");
    const ToolRun run = Check();
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run, "\"pointer_set_total\": 414, \"pointer_set_resolved\": 412"));
    EXPECT_TRUE(Has(run,
                    "virtual id 41000 (HEADPHONE_HP_3D_OFF_DEFAULT_MODE_LOW) is not in the "
                    "virtual map: at run time the previous tuning stays in force"))
            << run.out;
    EXPECT_TRUE(Has(run,
                    "virtual id 4423 (SPEAKER_FULL_LANDSCAPE_GAME_THREE) maps to ID 9999 / "
                    "EXTID 1202, but ID 9999 has no main record"));
}

TEST_F(ToolOnCopy, ExtraHeadphoneIdOnARecordWithoutTablesIsAnError) {
    Append("kiv_config.xml", "<NV ID=\"5000\" PARAM_VALUE=\"" + std::string(355, ',') + "0\"/>");
    Edit("kiv_config_vmap.xml", "<NV NUMID=\"41006\" ID=\"3013\" EXTID=\"3600\"/>",
         "<NV NUMID=\"41006\" ID=\"3013\" EXTID=\"5000\"/>");
    const ToolRun run = Check();
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run,
                    "virtual id 41006 (HEADPHONE_HP_3D_OFF_DEFAULT_MODE_LOUD) reaches EXTID "
                    "5000, which no pointer-set id reaches"))
            << run.out;
}

TEST_F(ToolOnCopy, DroppedDuplicatesShortAndLongValueLists) {
    Append("kiv_config.xml",
           "<NV ID=\"1001\" PARAM_VALUE=\"1\"/><NV ID=\"5001\" PARAM_VALUE=\"{1,2,3}\"/>");
    std::string longList;
    for (int i = 0; i < 425; ++i) {
        longList += i == 0 ? "7" : ",7";
    }
    Append("kiv_config.xml", "<NV ID=\"5005\" PARAM_VALUE=\"" + longList + "\"/>");
    Append("kiv_config_vmap.xml", "<NV NUMID=\"0\" ID=\"1\" EXTID=\"2\"/>");
    const ToolRun run = Check();
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run,
                    "main XML: 1 later element(s) with ID 1001 dropped: the first element is "
                    "kept"))
            << run.out;
    EXPECT_TRUE(Has(run,
                    "virtual-map XML: NUMID 0 -> ID 1 / EXTID 2 dropped: an earlier "
                    "element maps it to ID 1001 / EXTID 1200"));
    EXPECT_TRUE(Has(run,
                    "main XML: ID 5001 gives 3 of 419 words; words 3..418 keep the previous "
                    "odd element's values"));
    EXPECT_TRUE(Has(run,
                    "main XML: ID 5005 gives 425 values; the 6 beyond its 419 words are "
                    "dropped"));
    EXPECT_TRUE(Has(run, "\"kind\": \"duplicate_id\""));
}

TEST_F(ToolOnCopy, NegativeAndUnorderedThresholds) {
    Edit("kiv_config.xml", "{0x1,0x3,0x6,0x9,0xb,0xd,0xf,0x2,0x5,0x8",
         "{0x1,0x3,0x6,0x9,0xb,0xd,0xf,0x2,0xfffe,0x8");
    Edit("kiv_config.xml", "0x3,0x6,0x9,0xb,0xd,0xf,0x4", "0x3,0x6,0x9,0x5,0xd,0xf,0x4");
    const ToolRun run = Check("");
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run,
                    "error: volume thresholds GAME (2 -2 8 10 12 14): position 1 is negative "
                    "and becomes 0 (GAME and GAME_HIGH_TEMP)"))
            << run.out;
    EXPECT_TRUE(Has(run, "error: volume thresholds MOVIE (3 6 9 5 13 15) do not ascend"));
}

TEST_F(ToolOnCopy, MissingAndWrongSizedTables) {
    root.Remove("/odm/etc/kiv/sur_config.bin");
    root.Remove("/odm/etc/kiv/tws_config2.bin");
    std::filesystem::resize_file(root.HostPath("/odm/etc/kiv/teh_config.bin"), 19000);
    std::filesystem::resize_file(root.HostPath("/odm/etc/kiv/ascconfig1.bin"), 5000);
    const ToolRun run = Check("");
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run, "error: sur_config.bin is missing: the table stays zero")) << run.out;
    EXPECT_TRUE(Has(run, "error: tws_config1.bin is not read either"));
    EXPECT_TRUE(Has(run,
                    "error: /odm/etc/kiv/teh_config.bin is 19000 bytes, expected 19200: the "
                    "unread tail stays zero"));
    EXPECT_TRUE(Has(run,
                    "error: /odm/etc/kiv/ascconfig1.bin is 5000 bytes, expected 4106: the "
                    "extra bytes are ignored"));
}

TEST_F(ToolOnCopy, UiTypeThatDiffersFromTheDeviceTree) {
    root.SetUiTypeNode("1\n");
    const ToolRun run = Check();
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run, "\"ui_type\": {\"xml\": 0, \"device_tree\": 1}"));
    EXPECT_TRUE(Has(run, "UI type 0 of the virtual-map XML differs from the device tree's 1"));
}

TEST_F(ToolOnCopy, ProductSpecificOverTheAirAndRegionChoices) {
    root.SetProductNode(1, "KAPPA");
    std::filesystem::rename(root.HostPath("/odm/etc/kiv/kiv_config_vmap.xml"),
                            root.HostPath("/odm/etc/kiv/kiv_config_vmap_KAPPA.xml"));
    root.SetOta(ReadKiv("kiv_config.xml"), "1.0.1");
    ToolRun run = Check();
    EXPECT_EQ(0, run.status) << run.out;
    EXPECT_TRUE(Has(run,
                    "\"role\": \"main XML\", \"path\": \"/soundalgorithm/kiv_config.xml\", "
                    "\"choice\": \"over-the-air\", \"why\": \"downloaded version 1.0.1 (101) "
                    "is newer than the local version 100\""))
            << run.out;
    EXPECT_TRUE(Has(run,
                    "\"path\": \"/odm/etc/kiv/kiv_config_vmap_KAPPA.xml\", \"choice\": "
                    "\"product-specific\""));

    root.SetOta(ReadKiv("kiv_config.xml"), "1.0.0");
    root.SetProperty("ro.config.music_region", "eu");
    run = Check();
    EXPECT_TRUE(Has(run,
                    "downloaded version 1.0.0 not taken: version 100 is not newer than the "
                    "local 100"))
            << run.out;
    EXPECT_TRUE(Has(run, "\"kind\": \"region\""));

    run = Check("--json --region");
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run,
                    "no main XML was read (region eu, neither kiv/kiv_config_eu.xml nor a "
                    "product-specific form exists"))
            << run.out;
}

TEST_F(ToolOnCopy, SyntaxErrorIsPlaced) {
    Edit("kiv_config_vmap.xml", "<NV NUMID=\"8566\"", "<NV NUMID=\"8566\" <");
    const ToolRun run = Check("");
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(Has(run,
                    "error: virtual-map XML /odm/etc/kiv/kiv_config_vmap.xml: syntax error "
                    "at line 393: not well-formed (invalid token); the elements after it "
                    "are ignored"))
            << run.out;
    EXPECT_TRUE(Has(run, "speaker ids with table pointers: 377 of 378 resolve"));
}

TEST(OrluneConfigUsage, BadArgumentsExitWithTwo) {
    EXPECT_EQ(2, RunTool("").status);
    EXPECT_EQ(2, RunTool("--bogus " + kSampleDevice).status);
    EXPECT_EQ(2, RunTool("/nonexistent/device/root").status);
}

}  // namespace
