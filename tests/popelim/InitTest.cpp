// Initialisation checks, their order and messages, and clearing the cache.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "effect/LogTags.h"
#include "tests/popelim/PopElimTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

std::vector<std::string> Messages(const LogCapture& log) {
    std::vector<std::string> out;
    for (const LogLine& line : log.Lines()) {
        EXPECT_EQ(line.tag, kTagPop);
        out.push_back(std::to_string(line.priority) + " " + line.message);
    }
    return out;
}

TEST(PopElimInitTest, RefusesBadConfigsWithTheFirstFailingCheck) {
    struct Case {
        ProcessConfig config;
        const char* message;
    };
    const char* size = "Process buffer size is insufficient";
    const char* channels = "Invalid channel count";
    const char* depth = "Invalid sampling bit depth";
    for (const Case& c :
         {Case{{2, 4, 0, 0, 3}, size}, Case{{2, 4, 3841, 0, 3}, size}, Case{{3, 2, 0, 0, 3}, size},
          Case{{3, 4, 3840, 0, 3}, channels}, Case{{0, 2, 3840, 0, 3}, channels},
          Case{{2, 2, 3840, 0, 3}, depth}, Case{{1, 8, 1, 0, 3}, depth}}) {
        ClassStream st;
        st.handle.sampleRate = 12345;
        LogCapture log;
        EXPECT_EQ(st.Init(c.config), nullptr);
        EXPECT_EQ(Messages(log), (std::vector<std::string>{std::string("6 ") + c.message,
                                                           "6 config is invalid, init failed"}));
        EXPECT_EQ(st.handle.sampleRate, 12345u);
        EXPECT_EQ(st.handle.buffer, nullptr);
        log.Clear();
        EXPECT_FALSE(st.elim.InitValidityCheck(&c.config));
        EXPECT_EQ(Messages(log), (std::vector<std::string>{std::string("6 ") + c.message}));
    }
    LogCapture log;
    ClassStream st;
    EXPECT_EQ(st.elim.CuttingEdgeFadeinoutInit(nullptr, &st.handle, st.buffer, st.cache), nullptr);
    EXPECT_EQ(Messages(log), std::vector<std::string>{"5 Pointer is null"});
}

TEST(PopElimInitTest, FillsTheHandleAndRoundsTheCacheDownToWholeFrames) {
    struct Case {
        ProcessConfig config;
        uint32_t cacheSize;
    };
    for (const Case& c : {Case{{2, 4, 3840, 0, 3}, 384}, Case{{2, 4, 1000, 7, 1}, 96},
                          Case{{1, 4, 1000, -1, 3}, 100}, Case{{2, 4, 1, 0, 3}, 0}}) {
        ClassStream st;
        LogCapture log;
        ASSERT_EQ(st.Init(c.config), &st.handle);
        const ProcessHandle& h = st.handle;
        EXPECT_EQ(h.cacheSize, c.cacheSize);
        EXPECT_EQ(h.channelCount, c.config.channelCount);
        EXPECT_EQ(h.bitDepth, 4u);
        EXPECT_EQ(h.maxBufferSize, c.config.bufferSize);
        EXPECT_EQ(h.curBufferSize, c.config.bufferSize);
        EXPECT_EQ(h.outputType, c.config.outputType);
        EXPECT_EQ(h.format, c.config.format);
        EXPECT_EQ(h.sampleRate, 48000u);
        EXPECT_EQ(h.buffer, st.buffer);
        EXPECT_EQ(h.cache, st.cache);
        char line[160];
        snprintf(line, sizeof(line),
                 "4 CuttingEdgeFadeinoutInit succeed, cache size = %u, buffer size = %u, "
                 "OutputType = %d, format = %d",
                 c.cacheSize, c.config.bufferSize, c.config.outputType, c.config.format);
        EXPECT_EQ(Messages(log), std::vector<std::string>{line});
    }
}

TEST(PopElimInitTest, ClearCachedBufferZeroesTheGivenLength) {
    ClassStream st;
    ASSERT_NE(st.Init(), nullptr);
    memset(st.cache, 0x5A, sizeof(st.cache));
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, 100), 0);
    EXPECT_EQ(st.cache[99], 0);
    EXPECT_EQ(st.cache[100], 0x5A);
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes), 0);
    EXPECT_EQ(st.cache[383], 0);
    // No cache is ever longer than 384 bytes: a longer clear is refused.
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, kPopCacheBytes + 1), -1001);

    LogCapture log;
    EXPECT_EQ(st.elim.ClearCachedBuffer(nullptr, 384), -1000);
    st.handle.cache = nullptr;
    EXPECT_EQ(st.elim.ClearCachedBuffer(&st.handle, 384), -1000);
    EXPECT_EQ(Messages(log),
              (std::vector<std::string>{"6 ClearCachedBuffer:Invalid input pointer",
                                        "6 ClearCachedBuffer:Invalid input pointer"}));
}

}  // namespace
