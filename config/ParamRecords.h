// The tuning records that the configuration fills and the algorithm receives.
#pragma once

#include <stddef.h>
#include <stdint.h>

// The pair of real record ids that a virtual parameter id resolves to.
struct RealParamIdStru {
    int32_t ID;     // main record, key of gRealMapTable (odd in practice)
    int32_t EXTID;  // extended record, key of gRealMapTableExt (even in practice)
};

constexpr int kMainParaWords = 419;
constexpr int kExtParaWords = 356;
constexpr int kExtParaXmlWords = 384;  // the XML may write through the pointer area too

// Main tuning record: opaque words, filled in file order and handed to the algorithm whole.
struct AudioOrluneMobilePara {
    int16_t words[kMainParaWords];
};
static_assert(sizeof(AudioOrluneMobilePara) == 838, "main record is 838 bytes");
static_assert(alignof(AudioOrluneMobilePara) == 2, "main record is 2-byte aligned");

// Sizes of the binary tables in 16-bit values, as the files lay them out.
constexpr int kLphRowWords = 2053;  // lph_config: 20 rows
constexpr int kLphRows = 20;
constexpr int kTwsSceneWords = 4105;  // tws_config1 and 2: 16 scenes each
constexpr int kTwsScenes = 16;
constexpr int kSurWords = 2560;                // sur_config
constexpr int kSurReadLength = kSurWords / 2;  // ReadSUR's length argument: it reads twice that
constexpr int kTehWords = 9600;                // teh_config
constexpr int kAsc1Words = 2053;               // ascconfig1
constexpr int kAsc2Words = 4105;               // ascconfig2

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
static_assert(sizeof(AudioOrluneMobileParaExt) == kExtParaXmlWords * 2, "XML covers the record");
