// Both HTML reports rendered by a real browser: Debian's headless Chromium dumps the DOM, takes a
// screenshot and logs the network in one run. The page must show something, load nothing from
// outside and carry its key labels, edge markers and grid cells.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>

#include "RunProgram.h"

namespace {

namespace fs = std::filesystem;

const std::string kBuild = ORLUNE_BINARY_DIR;
const std::string kSample = kBuild + "/sample-device";

// Share of the screenshot's pixels that are not the page's white; -1 without a readable PNG.
double Ink(const std::string& png) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, png.c_str()) == 0) {
        return -1;
    }
    image.format = PNG_FORMAT_GRAY;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) == 0) {
        return -1;
    }
    return std::count_if(pixels.begin(), pixels.end(), [](png_byte p) { return p != 255; }) /
           static_cast<double>(pixels.size());
}

// URLs that the page itself asked for, from Chromium's network log (one event a line):
// requests with an initiator. The browser's own background requests carry "not an origin".
std::vector<std::string> PageRequests(const std::string& netLog) {
    const std::regex request(R"re("initiator":"(?!not an origin")[^"]*".*"url":"([^"]*)")re");
    std::vector<std::string> urls;
    std::istringstream lines(netLog);
    std::smatch m;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_search(line, m, request)) {
            urls.push_back(m[1]);
        }
    }
    return urls;
}

struct Rendered {
    std::string dom;
    double ink = -1;
    std::vector<std::string> requests;
};

class BrowserTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* path : {"/usr/bin/chromium", "/usr/bin/chromium-headless-shell",
                                 "/usr/lib/chromium/chromium", "/usr/bin/chromium-browser"}) {
            browser = access(path, X_OK) == 0 && browser.empty() ? path : browser;
        }
        if (browser.empty()) {
            GTEST_SKIP() << "no headless Chromium installed (scripts/install-deps.sh installs "
                            "Debian's chromium package): the rendered reports are not checked";
        }
        char pattern[] = "/tmp/orlune-report-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(pattern));
        dir = pattern;
    }
    void TearDown() override {
        if (!dir.empty()) {
            fs::remove_all(dir);
        }
    }
    // One browser run with a fresh, empty profile.
    Rendered Render(const std::string& page) {
        const std::string run = dir + "/run" + std::to_string(runs++);
        std::string command = browser;
        for (const std::string& a : std::vector<std::string>{
                     "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
                     "--no-first-run", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--user-data-dir=" + run,
                     "--window-size=1440,1800", "--screenshot=" + run + ".png",
                     "--log-net-log=" + run + ".json", "--dump-dom", "file://" + page}) {
            command += " '" + a + "'";  // no test path holds a quote
        }
        Rendered r;
        Shell(command, &r.dom);
        r.ink = Ink(run + ".png");
        const std::string log = ReadText(run + ".json");
        EXPECT_NE(std::string::npos, log.find("\"events\"")) << "no network log";
        r.requests = PageRequests(log);
        return r;
    }
    std::string browser;
    std::string dir;
    int runs = 0;
};

// The check for fetches must be able to fail: a page that loads an image from outside.
TEST_F(BrowserTest, AFetchingControlPageIsCaught) {
    std::ofstream(dir + "/control.html")
            << "<html><body><h1>control</h1><img src=\"http://127.0.0.1:9/x.png\"></body></html>";
    const Rendered r = Render(dir + "/control.html");
    EXPECT_EQ(std::vector<std::string>{"http://127.0.0.1:9/x.png"}, r.requests);
    EXPECT_NE(std::string::npos, r.dom.find("<h1>control</h1>"));
}

TEST_F(BrowserTest, ReportsRenderOfflineWithTheirKeyElements) {
    const std::string props = " --properties " + kSample + "/sample.properties";
    const struct {
        std::string page;
        std::string command;  // writes the page
        std::vector<std::string> texts;
        std::vector<std::pair<std::string, long>> counts;  // element, how many
    } pages[] = {
            // The sample's tones start and stop hard on both channels: four edges, each with a
            // marker and a zoomed view.
            {dir + "/play.html",
             kBuild + "/bin/orlune-play --device-root " + kSample + props +
                     " --set 51=3 --at 1:35=1 --at 2:12=2 --report " + dir + "/play.html " +
                     kBuild + "/sample-input.wav " + dir + "/out.wav",
             {"orlune-play report", "Signal", "Timeline", "Click remover edges",
              "Loud-output detector", "wired headset", "4021: 1017/1202", "35=1"},
             {{"class=\"edge-marker", 4}, {"class=\"zoom\"", 4}}},
            // 3 fold states x 18 rows and 36 headphone rows, 7 levels each; all resolve.
            {dir + "/config.html",
             kBuild + "/bin/orlune-config" + props + " --report " + dir + "/config.html " + kSample,
             {"orlune-config report", "Files chosen", "Tuning space", "loudspeaker, HALF_FOLDED",
              "headphones", "Volume thresholds", "Errors and warnings"},
             {{"<td class=\"cell ", 630},
              {"<td class=\"cell record\"", 630},
              {"class=\"steps\"", 6}}},
    };
    for (const auto& p : pages) {
        SCOPED_TRACE(p.page);
        ASSERT_EQ(0, Shell(p.command));
        EXPECT_EQ(std::string::npos, ReadText(p.page).find("<script"));
        const Rendered r = Render(p.page);
        EXPECT_GT(r.ink, 0.03) << "the screenshot is (nearly) blank";
        for (const std::string& url : r.requests) {
            ADD_FAILURE() << "the page requested " << url;
        }
        for (const std::string& label : p.texts) {
            EXPECT_NE(std::string::npos, r.dom.find(label)) << label;
        }
        for (const auto& [element, n] : p.counts) {
            const std::regex pattern(element);
            EXPECT_EQ(n, std::distance(std::sregex_iterator(r.dom.begin(), r.dom.end(), pattern),
                                       std::sregex_iterator()))
                    << element;
        }
    }
}

}  // namespace
