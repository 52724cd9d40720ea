// The process-wide parameter tables as one immutable set, and how a new set is built and
// published while audio threads keep reading the old one.
//
// Audio threads never wait for a load: each block marks the set it starts with (TablesInUse)
// and reads only that set until the block ends. A load (the first one, the reload by key, the
// pruning of the key-0 placeholders) copies the published set, changes the copy under the
// load lock (ConfigUpdate) and publishes it with one atomic store. The replaced set is freed
// by the publishing thread, or by a later publication or instance deletion, once no mark
// names it; an audio thread never frees a set.
#pragma once

#include <stdint.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "config/ParamRecords.h"

constexpr int kHpTypeWords = 288;

// One complete set of the tables that the configuration files fill and the mode logic reads.
// The member names are the tables' names in the rest of the code.
struct ParamTableSet {
    std::map<int32_t, RealParamIdStru> gVituralMapTable;           // virtual id -> real pair
    std::map<int32_t, AudioOrluneMobilePara> gRealMapTable;        // main records by odd id
    std::map<int32_t, AudioOrluneMobileParaExt> gRealMapTableExt;  // extended records, even id
    std::map<std::string, int32_t> gHpMapTable;                    // headset name -> type number
    int16_t gParameterHpType[kHpTypeWords] = {};                   // headphone-type rows
    int16_t gUiType = 0;                                           // from the CFG element
};

// Serialises everything that builds tables or reads files for them: the loads, the staging
// records of the main XML reader, the raw volume thresholds and the binary tables while they
// are read. Only control and parameter threads take it; it may be held while files are read.
// Recursive, so that a load can call the readers, which take it again.
std::recursive_mutex& ConfigLoadLock();

// The set published now. Stable only while the caller holds ConfigLoadLock (nothing can
// publish then) or marks it with TablesInUse; tools and tests that run alone may read it too.
const ParamTableSet& PublishedTables();

// Builds the next set on the calling thread. The outermost update takes ConfigLoadLock and
// starts from a copy of the published set; updates opened while it is open (the readers call
// each other) work on the same copy. The outermost one publishes when it ends, unless Publish
// was called earlier.
class ConfigUpdate {
public:
    ConfigUpdate();
    ~ConfigUpdate();
    ConfigUpdate(const ConfigUpdate&) = delete;
    ConfigUpdate& operator=(const ConfigUpdate&) = delete;

    // The set under construction.
    ParamTableSet& Tables() { return *mOutermost->mNext; }
    // Publishes the set now (outermost update only); it must not be changed afterwards.
    void Publish();

private:
    std::unique_lock<std::recursive_mutex> mLock;
    ConfigUpdate* mOutermost;
    std::unique_ptr<ParamTableSet> mNext;  // outermost update only
    bool mPublished = false;
};

// Marks the set that one reader (an effect instance: its audio thread during a block, or a
// parameter call holding the instance lock) is using, so that it is not freed under it. Only
// one thread at a time may pin and unpin a mark.
class TablesInUse {
public:
    TablesInUse();   // registers the mark
    ~TablesInUse();  // unregisters it and frees replaced sets that nobody uses any more
    TablesInUse(const TablesInUse&) = delete;
    TablesInUse& operator=(const TablesInUse&) = delete;

    // Marks the published set and returns it; it stays valid until Unpin. Lock-free.
    const ParamTableSet* Pin();
    void Unpin();

private:
    friend class TableSetRegistry;
    std::atomic<const ParamTableSet*> mSet{nullptr};
    TablesInUse* mNext = nullptr;
};

// Frees the replaced sets that no mark names. With `waitMs` it waits up to that long for the
// blocks that still use one to end; what is left is freed by a later call.
void FreeReplacedTables(int waitMs = 0);
// Number of replaced sets not yet freed (for tests).
size_t ReplacedTablesPending();
