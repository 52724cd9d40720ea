// An optional observer of the main XML reader, for diagnostic tools: it is told, for every "NV"
// element that carries values, how many values the element gave and how many its target holds.
// Nothing sets it on the device; the reader then only tests a null pointer.
#pragma once

#include <stdint.h>

// `capacity` is the number of 16-bit words the element can fill (0 when it has no target).
using ValueCountObserver = void (*)(int32_t id, int valuesGiven, int capacity);

void SetValueCountObserver(ValueCountObserver observer);
ValueCountObserver GetValueCountObserver();
