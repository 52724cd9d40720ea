// Android.bp, which nothing here can build, kept in step with this build: the library module
// lists every product source that CMake compiles into the shipped library and every device
// implementation of the platform seam, and nothing else; every file any module lists exists;
// and no module lists a host-only file (the host layer, the stand-ins, the host tools).
#include <gtest/gtest.h>

#include <string.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const char* const kLibraryModule = "liborlunemutilmobile7_1";
const char* const kHostOnly[] = {"platform/src/", "standin/", "tools/"};

// One module of a blueprint file: its name and the file names it lists.
struct Module {
    std::string name;
    std::vector<std::string> sources;      // every "srcs" list, nested ones too
    std::vector<std::string> files;        // single files: version_script
    std::vector<std::string> includeDirs;  // every "*include_dirs" list
};

std::vector<std::string> Strings(const std::string& text) {
    std::vector<std::string> out;
    static const std::regex quoted("\"([^\"]*)\"");
    for (std::sregex_iterator it(text.begin(), text.end(), quoted), end; it != end; ++it) {
        out.push_back((*it)[1]);
    }
    return out;
}

// The modules of a blueprint file in the layout bpfmt gives it: each module opens with
// `type {` and closes with `}` at the start of a line. Comments are dropped first.
std::vector<Module> ReadBlueprint(const std::string& text) {
    static const std::regex comments("//[^\n]*|/\\*[\\s\\S]*?\\*/");
    static const std::regex module("(^|\n)\\w+ \\{([\\s\\S]*?)\\n\\}");
    static const std::regex name("^\\s*name: \"([^\"]*)\"");
    static const std::regex lists("(\\w*): \\[([^\\]]*)\\]");
    static const std::regex script("version_script: (\"[^\"]*\")");
    const std::string plain = std::regex_replace(text, comments, "");
    std::vector<Module> modules;
    for (std::sregex_iterator it(plain.begin(), plain.end(), module), end; it != end; ++it) {
        const std::string body = (*it)[2];
        Module m;
        std::smatch match;
        if (std::regex_search(body, match, name)) {
            m.name = match[1];
        }
        for (std::sregex_iterator l(body.begin(), body.end(), lists); l != end; ++l) {
            const std::string key = (*l)[1];
            std::vector<std::string> values = Strings((*l)[2]);
            auto& into = key == "srcs" ? m.sources : m.includeDirs;
            if (key == "srcs" || key.find("include_dirs") != std::string::npos) {
                into.insert(into.end(), values.begin(), values.end());
            }
        }
        for (std::sregex_iterator v(body.begin(), body.end(), script); v != end; ++v) {
            m.files.push_back(Strings((*v)[1])[0]);
        }
        modules.push_back(m);
    }
    return modules;
}

bool HostOnly(const std::string& path) {
    for (const char* prefix : kHostOnly) {
        const std::string dir(prefix, strlen(prefix) - 1);
        if (path.rfind(prefix, 0) == 0 || path == dir) {
            return true;
        }
    }
    return false;
}

// What is wrong with `blueprint` against the sources the library must have, one line each.
std::vector<std::string> Problems(const std::string& blueprint,
                                  const std::set<std::string>& librarySources,
                                  const fs::path& sourceDir) {
    const std::vector<Module> modules = ReadBlueprint(blueprint);
    std::vector<std::string> problems;
    const Module* library = nullptr;
    for (const Module& m : modules) {
        library = m.name == kLibraryModule ? &m : library;
        std::vector<std::string> listed = m.sources;
        listed.insert(listed.end(), m.files.begin(), m.files.end());
        for (const std::string& f : listed) {
            if (HostOnly(f)) {
                problems.push_back(m.name + " lists a host-only file: " + f);
            } else if (!fs::is_regular_file(sourceDir / f)) {
                problems.push_back(m.name + " lists a missing file: " + f);
            }
        }
        for (const std::string& d : m.includeDirs) {
            if (HostOnly(d + "/")) {
                problems.push_back(m.name + " includes a host-only folder: " + d);
            }
        }
    }
    if (library == nullptr) {
        return {std::string("no module named ") + kLibraryModule};
    }
    const std::set<std::string> listed(library->sources.begin(), library->sources.end());
    for (const std::string& s : librarySources) {
        if (listed.count(s) == 0) {
            problems.push_back(std::string(kLibraryModule) + " misses " + s);
        }
    }
    for (const std::string& s : listed) {
        if (librarySources.count(s) == 0 && !HostOnly(s)) {
            problems.push_back(std::string(kLibraryModule) + " lists a non-product file: " + s);
        }
    }
    return problems;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The product sources of this build (one per line, relative to the source folder), plus the
// device implementations of the platform seam, which only the device build compiles.
std::set<std::string> LibrarySources() {
    std::set<std::string> sources;
    std::istringstream lines(ReadFile(ORLUNE_PRODUCT_SOURCES));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            sources.insert(line);
        }
    }
    for (const char* dir : {"platform/device", "platform/common"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(ORLUNE_SOURCE_DIR) / dir)) {
            if (entry.path().extension() == ".cpp") {
                sources.insert(std::string(dir) + "/" + entry.path().filename().string());
            }
        }
    }
    return sources;
}

TEST(AndroidBp, MatchesTheProductSourcesOfThisBuild) {
    const std::set<std::string> sources = LibrarySources();
    ASSERT_GT(sources.size(), 30u);  // the list was generated
    ASSERT_EQ(sources.count("effect/Exports.cpp"), 1u);
    ASSERT_EQ(sources.count("platform/device/device_fs.cpp"), 1u);
    const std::string bp = ReadFile(fs::path(ORLUNE_SOURCE_DIR) / "Android.bp");
    ASSERT_FALSE(bp.empty());
    EXPECT_EQ(Problems(bp, sources, ORLUNE_SOURCE_DIR), std::vector<std::string>{});
}

// The check itself, on small blueprints: each drift is reported, comments and nesting are read.
TEST(AndroidBp, ReportsEachKindOfDrift) {
    const std::set<std::string> sources = {"effect/Orlune.cpp", "effect/SwapFade.cpp"};
    const std::string lib = "cc_library_shared {\n    name: \"liborlunemutilmobile7_1\",\n";
    const std::string both = "    srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\"],\n";
    const struct {
        std::string blueprint;
        std::vector<std::string> problems;
    } cases[] = {
            {lib + both + "}\n", {}},
            {"// srcs: [\"tools/x.cpp\"]\n/* x {\n} */\n" + lib +
                     "    srcs: [\n        \"effect/SwapFade.cpp\", // \"tools/y.cpp\",\n" +
                     "        \"effect/Orlune.cpp\",\n    ],\n}\n",
             {}},
            {lib + "    srcs: [\"effect/Orlune.cpp\"],\n}\n",
             {"liborlunemutilmobile7_1 misses effect/SwapFade.cpp"}},
            {lib + "    srcs: [\"effect/Orlune.cpp\", \"effect/SwapFade.cpp\", "
                   "\"effect/Gone.cpp\"],\n}\n",
             {"liborlunemutilmobile7_1 lists a missing file: effect/Gone.cpp",
              "liborlunemutilmobile7_1 lists a non-product file: effect/Gone.cpp"}},
            {lib + both + "    target: { android: { srcs: [\"platform/src/clock.cpp\"] } },\n" +
                     "    local_include_dirs: [\"platform/src/include\"],\n" +
                     "    version_script: \"effect/none.map\",\n}\n",
             {"liborlunemutilmobile7_1 lists a host-only file: platform/src/clock.cpp",
              "liborlunemutilmobile7_1 lists a missing file: effect/none.map",
              "liborlunemutilmobile7_1 includes a host-only folder: platform/src/include"}},
            {lib + both + "}\n\ncc_test {\n    name: \"t\",\n" +
                     "    srcs: [\"standin/algorithm/StandinAlgo.cpp\"],\n}\n",
             {"t lists a host-only file: standin/algorithm/StandinAlgo.cpp"}},
            {"cc_test {\n    name: \"t\",\n    srcs: [],\n}\n",
             {"no module named liborlunemutilmobile7_1"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Problems(c.blueprint, sources, ORLUNE_SOURCE_DIR), c.problems) << c.blueprint;
    }
}

}  // namespace
