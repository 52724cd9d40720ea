// What the stand-in detector keeps in the data block of a report record (the block belongs to
// the detection library). Tests read it to see which operation reached the detector.
#pragma once

#include <stdint.h>

namespace lad_standin {

struct RecordData {
    uint32_t procTimeUpdates;  // UpdateProcTime calls that named this record
    uint32_t streaming;        // 1 after StartStream, 0 after StopStream
    uint32_t inputBlocks;      // blocks measured by SetInputBuffer into this record
    uint32_t outputBlocks;     // blocks measured by SetOutputBuffer into this record
};

}  // namespace lad_standin
