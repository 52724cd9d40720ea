// Entry points of the stand-in detection library, looked up by name by the effect's bridge.
#include "standin/louddetect/StandinDetector.h"

#define LAD_EXPORT extern "C" __attribute__((visibility("default")))

// A new detector; the caller holds it with a strong pointer, which destroys it.
LAD_EXPORT android::LoudDetector* GetLadInstance() {
    return new lad_standin::StandinDetector();
}

#ifndef LAD_STANDIN_WITHOUT_DELETE
// Destroys a detector that was never held by a strong pointer.
LAD_EXPORT void DeleteLadInstance(android::LoudDetector* detector) {
    delete static_cast<lad_standin::StandinDetector*>(detector);
}
#endif

// Host only: lets a harness watch the detector's measurements (see SetMeasureObserver).
LAD_EXPORT void LadStandinObserve(lad_standin::MeasureObserver observer, void* context) {
    lad_standin::SetMeasureObserver(observer, context);
}
