// Host stubs of the maker's services (customisation, event reports) and the clock.
#include <android/log.h>
#include <gtest/gtest.h>
#include <platform/clock.h>
#include <stdlib.h>
#include <time.h>
#include <tovaview/TovaView.h>
#include <vardocust/download_cfg.h>

#include <memory>
#include <string>

#include "tests/platform/TempTree.h"
#include "tests/support/LogCapture.h"

namespace {

struct FreeDeleter {
    void operator()(DownloadCfgInfo* p) const { free(p); }
};
using CfgPtr = std::unique_ptr<DownloadCfgInfo, FreeDeleter>;

TEST(PlatformDownloadCfg, FileDirectoryOrNothing) {
    TempTree tree;
    ScopedEnv env("ORLUNE_DEVICE_ROOT", tree.Path().c_str());
    const char* dir = "/soundalgorithm";
    const char* file = "/soundalgorithm/kiv_config.xml";

    EXPECT_EQ(get_download_cfg_file(dir, file), nullptr);

    tree.MakeDir("soundalgorithm");
    CfgPtr onlyDir(get_download_cfg_file(dir, file));
    ASSERT_NE(onlyDir, nullptr);
    EXPECT_EQ(onlyDir->found, 0);

    tree.Write("soundalgorithm/kiv_config.xml", "<xml/>");
    CfgPtr noVersion(get_download_cfg_file(dir, file));
    ASSERT_NE(noVersion, nullptr);
    EXPECT_EQ(noVersion->found, 1);
    EXPECT_STREQ(noVersion->path, file);
    EXPECT_STREQ(noVersion->version, "");

    tree.Write("soundalgorithm/cfg_version", "2.0.1.7\nsecond line\n");
    for (const char* d : {"/soundalgorithm", "/soundalgorithm/"}) {
        CfgPtr full(get_download_cfg_file(d, file));
        ASSERT_NE(full, nullptr);
        EXPECT_EQ(full->found, 1);
        EXPECT_STREQ(full->path, file);
        EXPECT_STREQ(full->version, "2.0.1.7") << d;
    }
}

TEST(PlatformTovaView, ReportWritesOneInfoLineWithValuesInPutOrder) {
    LogCapture log;
    TovaEvent event(907001001);
    event.PutString("Z_NAME", "spk mode");
    event.PutFloat("A_RATE", 0.25f);
    event.PutFloat("NEG", -3.5f);
    event.PutString("EMPTY", "");
    EXPECT_EQ(event.Values().front().first, "Z_NAME");
    EXPECT_EQ(TovaView::Report(event), 0);
    TovaEvent bare(5);
    TovaView::Report(bare);

    auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u) << log.Dump();
    EXPECT_EQ(lines[0].tag, "tova_view");
    EXPECT_EQ(lines[0].priority, ANDROID_LOG_INFO);
    EXPECT_EQ(lines[0].message,
              "report 907001001 Z_NAME=spk mode A_RATE=0.250000 NEG=-3.500000 EMPTY=");
    EXPECT_EQ(lines[1].message, "report 5");
}

int64_t FixedClock() {
    return 123456789;
}

TEST(PlatformClock, MonotonicUnlessATestClockIsInstalled) {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    int64_t before = ts.tv_sec * 1000000000LL + ts.tv_nsec;
    int64_t now = orlune_platform::MonotonicNs();
    EXPECT_GE(now, before);
    EXPECT_LT(now - before, 5000000000LL);

    orlune_platform::SetClockForTest(FixedClock);
    EXPECT_EQ(orlune_platform::MonotonicNs(), 123456789);
    orlune_platform::SetClockForTest(nullptr);
    EXPECT_GE(orlune_platform::MonotonicNs(), now);
}

}  // namespace
