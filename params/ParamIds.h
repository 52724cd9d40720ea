// The parameter ids the host may set, named by what they change. The numbers are the host's
// interface and must not move. Integer ids go to KivParamsSetInt, float ids to
// KivParamsSetFloat, string ids to KivParamsSetString; every number not listed is refused
// (integer) or ignored (float, string).
#pragma once

// KivParamsSetInt.
enum IntParamId : int {
    // First enable flag: the effect runs while this and kIdEffectEnable are both set.
    kIdWidenEnable = 0,
    kIdMusicRegion = 1,        // 1 switches the region configuration on (one way)
    kIdRingingState = 2,       // 1 = ringtone or alarm active, forces the ring scene
    kIdRingingStateAlt = 3,    // same as kIdRingingState
    kIdOrientation = 4,        // 0 = portrait, 1 = landscape
    kIdChannelSwap = 5,        // non-zero swaps left and right (through a cross-fade)
    kIdObsoleteIpgpMode = 6,   // only logs that this version does not support it
    kIdStartGuard = 7,         // re-arms the start-up output guard while kIdWidenEnable is 1
    kIdMultiMovie = 8,         // 1 = multichannel movie content
    kIdSmartHintA = 9,         // input of the headphone smart-mode choice
    kIdSmartHintB = 10,        // input of the headphone smart-mode choice
    kIdDeviceType = 12,        // 1 = loudspeaker, 2 = wired headset, 3 = Bluetooth A2DP
    kIdBtHeadsetType = 13,     // type row for a Bluetooth headset
    kIdWiredHeadsetType = 14,  // type row for a wired headset; 10 = no type change
    kIdHpType = 15,            // headphone type
    kIdSpkMode = 16,           // speaker mode, stored and reported only
    kIdHp3dMode = 17,          // manual headphone 3D mode
    kIdHpEqFirst = 18,         // custom equaliser bands 1 .. 11 are ids 18 .. 28
    kIdHpEqLast = 28,
    kIdHpModeUi0 = 30,     // headphone mode selector, taken only with UI type 0
    kIdHpSmartMode = 31,   // headphone smart-mode selector
    kIdEffectEnable = 32,  // second enable flag, see kIdWidenEnable
    kIdReloadConfig = 33,  // 1 reads the XML configuration again
    kIdIgnored = 34,       // accepted and ignored without a message
    kIdScene = 35,         // scene chosen by the host
    kIdHighTemp = 36,      // 1 = device hot: the game scene becomes its high-temperature form
    kIdSwapInhibit = 37,   // 1 keeps the channel-swap cross-fade off the audio
    kIdEqPreset = 38,      // equaliser preset; 6 = custom
    kIdEqLimit = 39,       // clamp of the custom equaliser values
    kIdLoudRingMode = 40,  // loud volume mode for ring, music and alarm (value 1 = on)
    kIdLoudMusicMode = 41,
    kIdLoudAlarmMode = 42,
    kIdVolumeIndexRing = 43,  // stream volume indices
    kIdVolumeIndexMusic = 44,
    kIdVolumeIndexAlarm = 45,
    kIdVolumeIndexHeadphone = 46,
    kIdVolumeIndexBluetooth = 47,
    kIdVoiceEnhance = 48,  // known to the APK handler but never routed to it: refused
    kIdStartStream = 51,   // 3 tells the loud-output detector that a stream starts
    kIdStopStream = 52,    // 3 tells the loud-output detector that a stream stops
    kIdHpModeUi1 = 53,     // headphone mode selector, taken only with UI type 1
    kIdFoldState = 55,     // 0 = folded, 1 = full, 2 = half folded
    kIdPcmDump = 100,      // switches the PCM dump
};

// KivParamsSetFloat.
enum FloatParamId : int {
    kIdVolumeDb = 11,      // host volume in dB
    kIdMasterVolume = 57,  // the three stream volumes of the loud-output detector's records
    kIdTypeVolume = 58,
    kIdClientVolume = 59,
};

// KivParamsSetString.
enum StringParamId : int {
    kIdHeadsetName = 54,  // headset name, mapped to a headphone type
    kIdPlayingApps = 56,  // list of application names; the last one is playing now
};
