// The two tuning records handed to the algorithm's set- and get-parameter entries. The closed
// library reads them by offset, so their layouts are fixed (LP64).
#pragma once

#include <stddef.h>
#include <stdint.h>

// Record lengths in 16-bit words, as the algorithm reads them.
constexpr int kMainParaWords = 419;
constexpr int kExtParaWords = 356;

// Main tuning record: opaque words, filled in file order and handed to the algorithm whole.
struct AudioOrluneMobilePara {
    int16_t words[kMainParaWords];
};
static_assert(sizeof(AudioOrluneMobilePara) == 838, "main record is 838 bytes");
static_assert(alignof(AudioOrluneMobilePara) == 2, "main record is 2-byte aligned");

// Shapes of the seven coefficient tables the extended record points into, in 16-bit words; the
// binary files "lph_config", "tws_config1/2", "sur_config", "teh_config", "ascconfig1/2" hold
// exactly these.
constexpr int kLphRowWords = 2053;  // one LPH row
constexpr int kLphRows = 20;
constexpr int kTwsSceneWords = 4105;  // one scene of a TWS table
constexpr int kTwsScenes = 16;
constexpr int kSurWords = 2560;
constexpr int kTehWords = 9600;
constexpr int kAsc1Words = 2053;
constexpr int kAsc2Words = 4105;

// Extended tuning record: opaque words plus pointers into the process-wide binary tables.
struct AudioOrluneMobileParaExt {
    int16_t words[kExtParaWords];
    const int16_t (*lphTable)[kLphRowWords];
    const int16_t* twsTable1;
    const int16_t* twsTable2;
    const int16_t* surTable;
    const int16_t* tehTable;
    const int16_t* ascTable1;
    const int16_t* ascTable2;
};
// The algorithm finds the table pointers by offset: right after the words, 8 bytes each.
static_assert(offsetof(AudioOrluneMobileParaExt, lphTable) == 712, "first table pointer at 712");
static_assert(offsetof(AudioOrluneMobileParaExt, twsTable1) == 720, "TWS pointers at 720");
static_assert(offsetof(AudioOrluneMobileParaExt, ascTable2) == 760, "last table pointer at 760");
static_assert(alignof(AudioOrluneMobileParaExt) == 8, "extended record is 8-byte aligned");
static_assert(sizeof(AudioOrluneMobileParaExt) == 768, "extended record is 768 bytes");
