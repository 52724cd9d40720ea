// An instance with the algorithm replaced by a double that keeps every parameter block handed
// to it, and helpers to fill the process-wide tuning maps with records that say who they are.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "effect/orlune.h"
#include "tests/support/LogCapture.h"

// One set-parameter call as the algorithm saw it.
struct SetParaCall {
    AudioOrluneMobilePara para;
    AudioOrluneMobileParaExt ext;
};

// Marker words that no overlay touches: they carry the real id a record was registered under.
constexpr int kMainMarkerWord = 400;
constexpr int kExtMarkerWord = 100;

class ParamsFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Maps `virtualId` to the real pair (realId, realId + 1) and adds both records, marked.
    static void AddMode(int virtualId, int realId);
    // Maps `virtualId` to a pair whose records are absent.
    static void AddDanglingMode(int virtualId, int realId);

    // Real id of the main and extended record of the last call (-1 when nothing was called).
    static int LastMainId();
    static int LastExtId();
    static const SetParaCall& LastCall();
    static size_t CallCount();
    static void SetNextResult(int32_t result);
    static int InitCalls();

    std::unique_ptr<Orlune> o;
    LogCapture log;
};
