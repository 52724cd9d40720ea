#include "config/ValueCountObserver.h"

namespace {

ValueCountObserver sObserver = nullptr;

}  // namespace

void SetValueCountObserver(ValueCountObserver observer) {
    sObserver = observer;
}

ValueCountObserver GetValueCountObserver() {
    return sObserver;
}
