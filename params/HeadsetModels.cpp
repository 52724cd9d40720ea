#include "params/HeadsetModels.h"

namespace {

constexpr HeadsetModel kFirst[] = {
        {"Zandor Lumen 310_BT", 11}, {"Zandor Lumen XE", 11},    {"VARDO BX-Q2", 13},
        {"VARDO DX-Q2P", 13},        {"VARDO BX70", 14},         {"BX71", 14},
        {"Vardo BX71", 14},          {"Vardo yMotion BX71", 14}, {"MVARDO AirLoop", 16},
};

constexpr HeadsetModel kSecond[] = {
        {"VARDO USB-C EARSET", 8},
        {"DX-R5", 9},
};

}  // namespace

HeadsetModelList FirstHeadsetModels() {
    return {kFirst, sizeof(kFirst) / sizeof(kFirst[0])};
}

HeadsetModelList SecondHeadsetModels() {
    return {kSecond, sizeof(kSecond) / sizeof(kSecond[0])};
}
