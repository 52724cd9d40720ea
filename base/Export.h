// Marks the few functions that the shipped library exports with unmangled names.
#pragma once

#define ORLUNE_EXPORT extern "C" __attribute__((visibility("default")))
