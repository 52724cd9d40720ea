// orlune-config on the generated sample device and on copies broken in several independent ways.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/BuiltProgram.h"
#include "tests/support/DeviceRoot.h"
#include "RunProgram.h"

namespace {

namespace fs = std::filesystem;

const std::string kTool =
        BuiltProgramCommand(std::string(ORLUNE_BINARY_DIR) + "/bin/orlune-config");
const std::string kSample = std::string(ORLUNE_BINARY_DIR) + "/sample-device";
const char* const kMain = "kiv_config.xml";
const char* const kVmap = "kiv_config_vmap.xml";

// A copy of the sample device with its properties, to be broken.
class ToolOnCopy : public ::testing::Test {
protected:
    void SetUp() override {
        root.CopyTree(kSample);
        fs::copy_file(kSample + "/sample.properties", root.PropertiesPath(),
                      fs::copy_options::overwrite_existing);
    }
    std::string Read(const std::string& name) const {
        return ReadText(root.HostPath("/odm/etc/kiv/" + name));
    }
    // Replaces the first `from` in a file of /odm/etc/kiv/.
    void Edit(const std::string& name, const std::string& from, const std::string& to) const {
        std::string text = Read(name);
        const size_t at = text.find(from);
        ASSERT_NE(std::string::npos, at) << from;
        root.WriteKiv(name, text.replace(at, from.size(), to));
    }
    // Runs the tool on the copy: its exit status, the texts it must report, and that a --json
    // report parses as JSON.
    void Check(const std::string& options, int status, const std::vector<std::string>& parts) {
        std::string out;
        EXPECT_EQ(status, Shell("timeout -k 2 60 " + kTool + " " + options + " --properties " +
                                        root.PropertiesPath() + " " + root.Path(),
                                &out));
        for (const std::string& part : parts) {
            EXPECT_NE(std::string::npos, out.find(part)) << part << "\n" << out.substr(0, 4000);
        }
        if (options.find("--json") != std::string::npos) {
            const std::string json = root.Path() + "/report.json";
            std::ofstream(json) << out;
            EXPECT_EQ(0, Shell("jq -e type " + json + " >/dev/null")) << "not JSON";
        }
    }
    DeviceRoot root;
};

TEST_F(ToolOnCopy, SampleDeviceResolvesEveryIdWithoutErrors) {
    Check("--json", 0,
          {"\"pointer_set_total\": 414, \"pointer_set_resolved\": 414", "\"errors\": 0,",
           "{\"virtual_id\": 4423, \"group\": \"speaker\", \"name\": "
           "\"FULL_LANDSCAPE_GAME_THREE\", "
           "\"resolved\": true, \"id\": 1021, \"ext_id\": 1202, \"tables\": true}"});
    Check("", 0,
          {"speaker ids with table pointers: 378 of 378 resolve", "0 error(s), 0 warning(s)"});
}

TEST_F(ToolOnCopy, BrokenIdsRecordsAndElementsAreNamedWithTheirCause) {
    Edit(kVmap, "<NV NUMID=\"41000\" ID=\"3001\" EXTID=\"3600\"/>", "");
    Edit(kVmap, "<NV NUMID=\"4423\" ID=\"1021\"", "<NV NUMID=\"4423\" ID=\"9999\"");
    // An extra headphone id on a record that no pointer-set id reaches, so it has no tables.
    Edit(kVmap, "NUMID=\"41006\" ID=\"3013\" EXTID=\"3600\"",
         "NUMID=\"41006\" ID=\"3013\" EXTID=\"5000\"");
    Edit(kVmap, "</kiv_config_vmap>", "<NV NUMID=\"0\" ID=\"1\" EXTID=\"2\"/></kiv_config_vmap>");
    Edit(kMain, "</kiv_config>",
         "<NV ID=\"5000\" PARAM_VALUE=\"" + std::string(355, ',') +
                 "0\"/><NV ID=\"1001\" PARAM_VALUE=\"1\"/><NV ID=\"5001\" "
                 "PARAM_VALUE=\"{1,2,3}\"/><NV ID=\"5005\" PARAM_VALUE=\"" +
                 std::regex_replace(std::string(425, '7'), std::regex("7"), "7,") +
                 "\"/></kiv_config>");
    root.SetUiTypeNode("1\n");
    Check("--json", 1,
          {"\"pointer_set_resolved\": 412",
           "virtual id 41000 (HEADPHONE_HP_3D_OFF_DEFAULT_MODE_LOW) is not in the virtual map",
           "virtual id 4423 (SPEAKER_FULL_LANDSCAPE_GAME_THREE) maps to ID 9999 / EXTID 1202, but "
           "ID 9999 has no main record",
           "virtual id 41006 (HEADPHONE_HP_3D_OFF_DEFAULT_MODE_LOUD) reaches EXTID 5000, which no "
           "pointer-set id reaches",
           "main XML: 1 later element(s) with ID 1001 dropped",
           "virtual-map XML: NUMID 0 -> ID 1 / EXTID 2 dropped",
           "main XML: ID 5001 gives 3 of 419 words; words 3..418 keep the previous odd element's",
           "main XML: ID 5005 gives 425 values; the 6 beyond its 419 words are dropped",
           "UI type 0 of the virtual-map XML differs from the device tree's 1"});
}

TEST_F(ToolOnCopy, ThresholdsTablesAndSyntaxErrors) {
    Edit(kMain, "0xf,0x2,0x5,0x8", "0xf,0x2,0xfffe,0x8");
    Edit(kMain, "0x3,0x6,0x9,0xb,0xd,0xf,0x4", "0x3,0x6,0x9,0x5,0xd,0xf,0x4");
    Edit(kVmap, "<NV NUMID=\"8566\"", "<NV NUMID=\"8566\" <");
    root.Remove("/odm/etc/kiv/sur_config.bin");
    root.Remove("/odm/etc/kiv/tws_config2.bin");
    fs::resize_file(root.HostPath("/odm/etc/kiv/teh_config.bin"), 19000);
    fs::resize_file(root.HostPath("/odm/etc/kiv/ascconfig1.bin"), 5000);
    Check("", 1,
          {"error: volume thresholds GAME (2 -2 8 10 12 14): position 1 is negative and becomes 0 "
           "(GAME and GAME_HIGH_TEMP)",
           "error: volume thresholds MOVIE (3 6 9 5 13 15) do not ascend",
           "error: virtual-map XML /odm/etc/kiv/kiv_config_vmap.xml: syntax error at line 393",
           "speaker ids with table pointers: 377 of 378 resolve",
           "error: sur_config.bin is missing", "error: tws_config1.bin is not read either",
           "error: /odm/etc/kiv/teh_config.bin is 19000 bytes, expected 19200",
           "error: /odm/etc/kiv/ascconfig1.bin is 5000 bytes, expected 4106"});
}

TEST_F(ToolOnCopy, RefusedFilesAreToldFromMissingOnesWithTheLibrarysReason) {
    root.Remove("/odm/etc/kiv/" + std::string(kVmap));
    ASSERT_EQ(0, mkfifo(root.HostPath("/odm/etc/kiv/" + std::string(kVmap)).c_str(), 0644));
    root.Remove("/odm/etc/kiv/sur_config.bin");
    fs::create_directory(root.HostPath("/odm/etc/kiv/sur_config.bin"));
    root.Remove("/odm/etc/kiv/lph_config.bin");
    fs::create_symlink("/dev/null", root.HostPath("/odm/etc/kiv/lph_config.bin"));
    root.SetProperty("msc.brisel.config_channel_out", "3");
    Check("", 1,
          {"error: config file /odm/etc/kiv/kiv_config_vmap.xml refused: a FIFO, not a regular "
           "file: read as if it were missing",
           "error: /odm/etc/kiv/sur_config.bin refused: a directory, not a regular file",
           "error: /odm/etc/kiv/lph_config.bin refused: a character device, not a regular file",
           "warning: msc.brisel.config_channel_out is 3, neither 2 nor 4"});
}

TEST_F(ToolOnCopy, ProductSpecificOverTheAirAndRegionChoices) {
    root.SetProductNode(1, "KAPPA");
    fs::rename(root.HostPath("/odm/etc/kiv/kiv_config_vmap.xml"),
               root.HostPath("/odm/etc/kiv/kiv_config_vmap_KAPPA.xml"));
    root.SetOta(Read(kMain), "1.0.1");
    Check("--json", 0,
          {"\"choice\": \"over-the-air\", \"why\": \"downloaded version 1.0.1 (101) is newer",
           "kiv_config_vmap_KAPPA.xml\", \"choice\": \"product-specific\""});
    root.SetOta(Read(kMain), "1.0.0");
    root.SetProperty("ro.config.music_region", "eu");
    Check("", 0,
          {"downloaded version 1.0.0 not taken: version 100 is not newer than the local 100"});
    Check("--json --region", 1, {"no main XML was read (region eu"});
}

}  // namespace
