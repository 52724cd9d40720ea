// The tuning records that the configuration fills (their layout is the algorithm's, in
// abi/AlgoRecords.h) and the real record ids that a virtual parameter id resolves to.
#pragma once

#include <stdint.h>

#include "abi/AlgoRecords.h"

// The pair of real record ids that a virtual parameter id resolves to.
struct RealParamIdStru {
    int32_t ID;     // main record, key of gRealMapTable (odd in practice)
    int32_t EXTID;  // extended record, key of gRealMapTableExt (even in practice)
};

// The main XML may write one record's words on into the pointer area behind them.
constexpr int kExtParaXmlWords = 384;
// ReadSUR takes half the table as its length argument and reads twice that.
constexpr int kSurReadLength = kSurWords / 2;
static_assert(sizeof(AudioOrluneMobileParaExt) == kExtParaXmlWords * 2, "XML covers the record");
