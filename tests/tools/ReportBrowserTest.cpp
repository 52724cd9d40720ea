// Both HTML reports rendered by a real browser: Debian's headless Chromium takes a screenshot
// and dumps the DOM. The page must show something, load nothing from outside (checked in the
// page and in the browser's network log) and carry its key labels, edge markers and grid cells.
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>

namespace {

namespace fs = std::filesystem;

const std::string kBuild = ORLUNE_BINARY_DIR;
const std::string kSample = kBuild + "/sample-device";

// Runs a program (arguments quoted for the shell); its standard output goes to `out`.
int RunProgram(const std::vector<std::string>& argv, std::string* out = nullptr) {
    std::string command;
    for (const std::string& a : argv) {
        command += " '" + a + "'";  // no test path holds a quote
    }
    FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
    char buf[65536];
    for (size_t n; pipe != nullptr && (n = fread(buf, 1, sizeof(buf), pipe)) > 0;) {
        if (out != nullptr) {
            out->append(buf, n);
        }
    }
    const int status = pipe != nullptr ? pclose(pipe) : -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Browser() {
    for (const char* path : {"/usr/bin/chromium", "/usr/bin/chromium-headless-shell",
                             "/usr/lib/chromium/chromium", "/usr/bin/chromium-browser"}) {
        if (access(path, X_OK) == 0) {
            return path;
        }
    }
    return "";
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

size_t Count(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++n;
    }
    return n;
}

// Share of pixels that are not the page's white, and the number of colours seen.
bool Ink(const std::string& png, double* share, size_t* colours) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, png.c_str()) == 0) {
        return false;
    }
    image.format = PNG_FORMAT_RGB;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) == 0) {
        return false;
    }
    size_t ink = 0;
    std::set<uint32_t> seen;
    for (size_t i = 0; i + 2 < pixels.size(); i += 3) {
        const uint32_t rgb = (pixels[i] << 16) | (pixels[i + 1] << 8) | pixels[i + 2];
        ink += rgb != 0xffffff ? 1 : 0;
        if (seen.size() < 1000) {
            seen.insert(rgb);
        }
    }
    *share = static_cast<double>(ink) / (pixels.size() / 3);
    *colours = seen.size();
    return true;
}

// URLs that the page itself asked for, from Chromium's network log: requests with an
// initiator. The browser's own background requests carry "not an origin".
std::vector<std::string> PageRequests(const std::string& netLog) {
    std::vector<std::string> urls;
    const std::string key = "\"initiator\":\"";
    for (size_t at = netLog.find(key); at != std::string::npos; at = netLog.find(key, at + 1)) {
        const size_t from = at + key.size();
        const std::string initiator = netLog.substr(from, netLog.find('"', from) - from);
        // The event's parameters end where its "phase" follows (they may hold braces).
        const size_t end = netLog.find("\"phase\":", from);
        const size_t url = netLog.find("\"url\":\"", from);
        if (initiator != "not an origin" && url != std::string::npos && url < end) {
            urls.push_back(netLog.substr(url + 7, netLog.find('"', url + 7) - url - 7));
        }
    }
    return urls;
}

class BrowserTest : public ::testing::Test {
protected:
    void SetUp() override {
        browser = Browser();
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
    std::string Chromium(const std::vector<std::string>& extra, const std::string& page) {
        const std::string profile = dir + "/profile-" + std::to_string(runs++);
        fs::create_directories(profile);
        std::vector<std::string> argv = {browser,
                                         "--headless",
                                         "--no-sandbox",
                                         "--disable-gpu",
                                         "--disable-quic",
                                         "--no-first-run",
                                         "--disable-background-networking",
                                         "--disable-component-update",
                                         "--disable-sync",
                                         "--user-data-dir=" + profile};
        argv.insert(argv.end(), extra.begin(), extra.end());
        argv.push_back("file://" + page);
        std::string out;
        RunProgram(argv, &out);
        return out;
    }
    // Renders `page`: screenshot, DOM and network log; checks what every page must satisfy.
    std::string Render(const std::string& page) {
        const std::string png = dir + "/shot.png";
        const std::string netLog = dir + "/net.json";
        Chromium({"--window-size=1440,1800", "--screenshot=" + png, "--log-net-log=" + netLog},
                 page);
        double share = 0;
        size_t colours = 0;
        EXPECT_TRUE(Ink(png, &share, &colours)) << png;
        EXPECT_GT(share, 0.03) << "the screenshot is (nearly) blank";
        EXPECT_GE(colours, 8u);
        const std::string log = ReadFile(netLog);
        EXPECT_NE(std::string::npos, log.find("\"events\"")) << "no network log";
        for (const std::string& url : PageRequests(log)) {
            ADD_FAILURE() << "the page requested " << url;
        }
        const std::string text = ReadFile(page);
        for (const char* outside : {"<script", "<link", "<img", "<iframe", "<object", "@import",
                                    "url(", "src=", "://", "href=\"/", "href=\"http"}) {
            EXPECT_EQ(std::string::npos, text.find(outside)) << outside;
        }
        return Chromium({"--dump-dom"}, page);
    }
    std::string browser;
    std::string dir;
    int runs = 0;
};

TEST_F(BrowserTest, PlayReportRendersWithItsEdgesAndTimeline) {
    const std::string page = dir + "/play.html";
    ASSERT_EQ(0, RunProgram({kBuild + "/bin/orlune-play", "--device-root", kSample, "--properties",
                             kSample + "/sample.properties", "--set", "51=3", "--at", "1:35=1",
                             "--at", "2:12=2", "--report", page, kBuild + "/sample-input.wav",
                             dir + "/out.wav"}));
    const std::string dom = Render(page);
    for (const char* label :
         {"orlune-play report", "Signal", "Timeline", "Click remover edges", "Loud-output detector",
          "input ch 0", "output ch 1", "loudspeaker", "wired headset",
          "tuning (virtual id: ID/EXTID)", "4001: 1003/1200", "4021: 1017/1202", "35=1"}) {
        EXPECT_NE(std::string::npos, dom.find(label)) << label;
    }
    // The sample's tones start and stop hard on both channels: four edges, each with a marker
    // and a zoomed view.
    EXPECT_EQ(4u, Count(dom, "class=\"edge-marker"));
    EXPECT_EQ(4u, Count(dom, "class=\"zoom\""));
}

TEST_F(BrowserTest, ConfigReportRendersTheWholeTuningSpace) {
    const std::string page = dir + "/config.html";
    ASSERT_EQ(0, RunProgram({kBuild + "/bin/orlune-config", "--properties",
                             kSample + "/sample.properties", "--report", page, kSample}));
    const std::string dom = Render(page);
    for (const char* label : {"orlune-config report", "Files chosen", "Tuning space",
                              "loudspeaker, FOLDED", "loudspeaker, HALF_FOLDED", "headphones",
                              "Volume thresholds", "Errors and warnings", "1003/1200"}) {
        EXPECT_NE(std::string::npos, dom.find(label)) << label;
    }
    // 3 fold states x 18 rows and 36 headphone rows, 7 levels each; all resolve on the sample.
    EXPECT_EQ(630u, Count(dom, "<td class=\"cell "));
    EXPECT_EQ(630u, Count(dom, "<td class=\"cell record\""));
    EXPECT_EQ(6u, Count(dom, "class=\"steps\""));
}

}  // namespace
