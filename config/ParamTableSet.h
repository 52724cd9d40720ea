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
#include <vector>

#include "config/ParamRecords.h"
#include "config/VirtualIds.h"

constexpr int kHpTypeWords = 288;  // headphone-type words: 256 from id 30181, 32 from id 30182

struct ParamTableSet;

// What one virtual id resolves to in one set, looked up in that set's maps once.
struct DirectIdEntry {
    enum State : int32_t { kNoVirtualId = 0, kNoRealRecord = 1, kFound = 2 };
    const AudioOrluneMobilePara* para;
    const AudioOrluneMobileParaExt* ext;
    RealParamIdStru ids;  // valid unless kNoVirtualId
    int32_t state;
};

// Direct tables of the virtual ids the mode logic composes on every block (config/VirtualIds.h):
// one slot per loudspeaker id of the three fold states and two orientations, and per headphone
// id of the nine modes, so that a block finds its records by indexing instead of walking the
// maps. Built when a set is published, after which the set does not change; a copy of a set
// starts without them (its records are other objects).
class DirectIds {
public:
    DirectIds() = default;
    DirectIds(const DirectIds&) {}
    DirectIds& operator=(const DirectIds&) {
        mOwner = nullptr;
        mEntries.clear();
        return *this;
    }

    // Resolves every virtual id of `tables` that has a slot. Allocates; control threads only.
    void Build(const ParamTableSet& tables);
    bool BuiltFor(const ParamTableSet& tables) const { return mOwner == &tables; }
    // The entry of `virtualId` when these tables were built for `tables` and the id has a slot;
    // null otherwise (the caller then looks in the maps).
    const DirectIdEntry* Find(const ParamTableSet& tables, int32_t virtualId) const {
        const int32_t slot = Slot(virtualId);
        if (mOwner != &tables || slot < 0) {
            return nullptr;
        }
        return &mEntries[static_cast<size_t>(slot)];
    }

    // Loudspeaker ids below kSpeakerIds, of which the first kSpeakerSlotsPerFold of each fold
    // state (both orientations) have slots; then the headphone ids from their base on.
    static constexpr int32_t kSpeakerIds = vid::kSpeakerFolds * vid::kSpeakerFoldStride;
    static constexpr int32_t kSpeakerSlotsPerFold =
            vid::kSpeakerOrientations * vid::kSpeakerOrientationStride;
    static constexpr int32_t kSpeakerSlots = vid::kSpeakerFolds * kSpeakerSlotsPerFold;
    static constexpr int32_t kHeadphoneSlots = vid::kHeadphoneModes * vid::kHeadphoneModeStride;
    static constexpr int32_t kSlots = kSpeakerSlots + kHeadphoneSlots;

    static int32_t Slot(int32_t virtualId) {
        if (virtualId >= 0 && virtualId < kSpeakerIds) {
            const int32_t inFold = virtualId % vid::kSpeakerFoldStride;
            return inFold < kSpeakerSlotsPerFold
                           ? virtualId / vid::kSpeakerFoldStride * kSpeakerSlotsPerFold + inFold
                           : -1;
        }
        if (virtualId >= vid::kHeadphoneBase && virtualId < vid::kHeadphoneBase + kHeadphoneSlots) {
            return kSpeakerSlots + (virtualId - vid::kHeadphoneBase);
        }
        return -1;
    }

private:
    const ParamTableSet* mOwner = nullptr;
    std::vector<DirectIdEntry> mEntries;
};

// One complete set of the tables that the configuration files fill and the mode logic reads.
// The member names are the tables' names in the rest of the code.
struct ParamTableSet {
    std::map<int32_t, RealParamIdStru> gVituralMapTable;           // virtual id -> real pair
    std::map<int32_t, AudioOrluneMobilePara> gRealMapTable;        // main records by odd id
    std::map<int32_t, AudioOrluneMobileParaExt> gRealMapTableExt;  // extended records, even id
    std::map<std::string, int32_t> gHpMapTable;                    // headset name -> type number
    int16_t gParameterHpType[kHpTypeWords] = {};                   // headphone-type rows
    int16_t gUiType = 0;                                           // from the CFG element
    DirectIds direct;  // built from the maps above when the set is published
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
    // Builds the set's direct tables now rather than in Publish, so that a caller can publish
    // under a lock without building them there. The set must not be changed afterwards.
    void Finish();
    // Publishes the set now (outermost update only); it must not be changed afterwards. The
    // replaced sets that nobody uses are freed at once, or with Keep left to FreeReplacedTables
    // (freeing a whole set takes long: not while an instance lock is held).
    enum class Replaced { Free, Keep };
    void Publish(Replaced replaced = Replaced::Free);

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
