// Logging of the library: every line goes to the Android log under a tag that the call names,
// for example ORLUNE_LOGE(kTagPop, "Invalid channel count").
#pragma once

#include <android/log.h>

constexpr const char* kTagMobile = "orlune_mobile";         // instance, configuration, parameters
constexpr const char* kTagEvent = "orlune_event";           // usage statistics
constexpr const char* kTagPop = "cutting_edge_preprocess";  // pop eliminator
constexpr const char* kTagNone = nullptr;                   // the detection bridge logs untagged

#define ORLUNE_LOG(prio, tag, ...) __android_log_print(prio, tag, __VA_ARGS__)
#define ORLUNE_LOGD(tag, ...) ORLUNE_LOG(ANDROID_LOG_DEBUG, tag, __VA_ARGS__)
#define ORLUNE_LOGI(tag, ...) ORLUNE_LOG(ANDROID_LOG_INFO, tag, __VA_ARGS__)
#define ORLUNE_LOGW(tag, ...) ORLUNE_LOG(ANDROID_LOG_WARN, tag, __VA_ARGS__)
#define ORLUNE_LOGE(tag, ...) ORLUNE_LOG(ANDROID_LOG_ERROR, tag, __VA_ARGS__)
