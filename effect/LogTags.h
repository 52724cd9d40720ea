// Android log tags of the library.
#pragma once

#include <android/log.h>

constexpr const char* kTagMobile = "orlune_mobile";         // instance, configuration, parameters
constexpr const char* kTagEvent = "orlune_event";           // usage statistics
constexpr const char* kTagPop = "cutting_edge_preprocess";  // pop eliminator
// The detection bridge logs with no tag (nullptr).

#define ORLUNE_LOG(prio, ...) __android_log_print(prio, kTagMobile, __VA_ARGS__)
#define ORLUNE_LOGD(...) ORLUNE_LOG(ANDROID_LOG_DEBUG, __VA_ARGS__)
#define ORLUNE_LOGI(...) ORLUNE_LOG(ANDROID_LOG_INFO, __VA_ARGS__)
#define ORLUNE_LOGW(...) ORLUNE_LOG(ANDROID_LOG_WARN, __VA_ARGS__)
#define ORLUNE_LOGE(...) ORLUNE_LOG(ANDROID_LOG_ERROR, __VA_ARGS__)
