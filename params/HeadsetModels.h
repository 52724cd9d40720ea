// Known headset models and the headset type number of each, kept as data in two lists. The
// type reaches an instance as a number (ids 13, 14, 15) or through the name map of the
// virtual-map configuration; nothing looks models up in these lists.
#pragma once

#include <stddef.h>
#include <stdint.h>

struct HeadsetModel {
    const char* name;
    int32_t type;
};

struct HeadsetModelList {
    const HeadsetModel* models;
    size_t count;
};

// The first list: wireless and wired models of the known makers.
HeadsetModelList FirstHeadsetModels();
// The second list: the USB-C earset and the DX-R5.
HeadsetModelList SecondHeadsetModels();
