#include "config/ParamTableSet.h"

#include <chrono>
#include <thread>
#include <vector>

ParamTableSet DefaultParamTables();  // ParamTables.cpp

// The published set, the marks of its readers and the sets replaced but not yet freed.
class TableSetRegistry {
public:
    static TableSetRegistry& Get() {
        static TableSetRegistry registry;
        return registry;
    }

    void Publish(std::unique_ptr<ParamTableSet> next, bool freeReplaced) {
        if (!next->direct.BuiltFor(*next)) {
            next->direct.Build(*next);
        }
        std::lock_guard<std::mutex> guard(mLock);
        // seq_cst pairs with Pin: a reader that marked the old set either is seen by the scan
        // below or sees the new pointer when it checks again.
        mReplaced.push_back(mCurrent.exchange(next.release(), std::memory_order_seq_cst));
        if (freeReplaced) {
            FreeUnusedLocked();
        }
    }

    const ParamTableSet* Current() const { return mCurrent.load(std::memory_order_acquire); }

    const ParamTableSet* Pin(TablesInUse& mark) {
        const ParamTableSet* set = mCurrent.load(std::memory_order_seq_cst);
        for (;;) {
            mark.mSet.store(set, std::memory_order_seq_cst);
            const ParamTableSet* again = mCurrent.load(std::memory_order_seq_cst);
            if (again == set) {
                return set;
            }
            set = again;
        }
    }

    void Register(TablesInUse* mark) {
        std::lock_guard<std::mutex> guard(mLock);
        mark->mNext = mMarks;
        mMarks = mark;
    }

    void Unregister(TablesInUse* mark) {
        std::lock_guard<std::mutex> guard(mLock);
        for (TablesInUse** at = &mMarks; *at != nullptr; at = &(*at)->mNext) {
            if (*at == mark) {
                *at = mark->mNext;
                break;
            }
        }
        FreeUnusedLocked();
    }

    // True when every replaced set could be freed.
    bool FreeUnused() {
        std::lock_guard<std::mutex> guard(mLock);
        FreeUnusedLocked();
        return mReplaced.empty();
    }

    size_t Pending() {
        std::lock_guard<std::mutex> guard(mLock);
        return mReplaced.size();
    }

private:
    TableSetRegistry() {
        ParamTableSet* first = new ParamTableSet(DefaultParamTables());
        first->direct.Build(*first);
        mCurrent.store(first);
    }
    ~TableSetRegistry() {
        delete mCurrent.load();
        for (const ParamTableSet* set : mReplaced) {
            delete set;
        }
    }

    void FreeUnusedLocked() {
        size_t kept = 0;
        for (const ParamTableSet* set : mReplaced) {
            if (Marked(set)) {
                mReplaced[kept++] = set;
            } else {
                delete set;
            }
        }
        mReplaced.resize(kept);
    }

    bool Marked(const ParamTableSet* set) const {
        for (const TablesInUse* mark = mMarks; mark != nullptr; mark = mark->mNext) {
            if (mark->mSet.load(std::memory_order_seq_cst) == set) {
                return true;
            }
        }
        return false;
    }

    std::atomic<const ParamTableSet*> mCurrent;
    std::mutex mLock;  // guards mMarks and mReplaced; never taken by an audio thread
    TablesInUse* mMarks = nullptr;
    std::vector<const ParamTableSet*> mReplaced;
};

void DirectIds::Build(const ParamTableSet& tables) {
    mEntries.assign(kSlots, DirectIdEntry{nullptr, nullptr, RealParamIdStru{0, 0},
                                          DirectIdEntry::kNoVirtualId});
    for (const auto& [virtualId, ids] : tables.gVituralMapTable) {
        const int32_t slot = Slot(virtualId);
        if (slot < 0) {
            continue;
        }
        DirectIdEntry& entry = mEntries[static_cast<size_t>(slot)];
        entry.ids = ids;
        const auto m = tables.gRealMapTable.find(ids.ID);
        const auto e = tables.gRealMapTableExt.find(ids.EXTID);
        if (m == tables.gRealMapTable.end() || e == tables.gRealMapTableExt.end()) {
            entry.state = DirectIdEntry::kNoRealRecord;
            continue;
        }
        entry.para = &m->second;
        entry.ext = &e->second;
        entry.state = DirectIdEntry::kFound;
    }
    mOwner = &tables;
}

namespace {

thread_local ConfigUpdate* tOutermostUpdate = nullptr;

}  // namespace

std::recursive_mutex& ConfigLoadLock() {
    static std::recursive_mutex lock;
    return lock;
}

const ParamTableSet& PublishedTables() {
    return *TableSetRegistry::Get().Current();
}

ConfigUpdate::ConfigUpdate() : mLock(ConfigLoadLock()), mOutermost(tOutermostUpdate) {
    if (mOutermost == nullptr) {
        mNext.reset(new ParamTableSet(PublishedTables()));
        mOutermost = this;
        tOutermostUpdate = this;
    }
}

ConfigUpdate::~ConfigUpdate() {
    if (mOutermost == this) {
        Publish();
        tOutermostUpdate = nullptr;
    }
}

void ConfigUpdate::Finish() {
    ConfigUpdate& outer = *mOutermost;
    if (!outer.mPublished) {
        outer.mNext->direct.Build(*outer.mNext);
    }
}

void ConfigUpdate::Publish(Replaced replaced) {
    ConfigUpdate& outer = *mOutermost;
    if (!outer.mPublished) {
        outer.mPublished = true;
        TableSetRegistry::Get().Publish(std::move(outer.mNext), replaced == Replaced::Free);
    }
}

TablesInUse::TablesInUse() {
    TableSetRegistry::Get().Register(this);
}

TablesInUse::~TablesInUse() {
    mSet.store(nullptr, std::memory_order_release);
    TableSetRegistry::Get().Unregister(this);
}

const ParamTableSet* TablesInUse::Pin() {
    return TableSetRegistry::Get().Pin(*this);
}

void TablesInUse::Unpin() {
    // Release: every read of the set happens before a publisher sees the mark cleared.
    mSet.store(nullptr, std::memory_order_release);
}

void FreeReplacedTables(int waitMs) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(waitMs);
    while (!TableSetRegistry::Get().FreeUnused() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

size_t ReplacedTablesPending() {
    return TableSetRegistry::Get().Pending();
}
