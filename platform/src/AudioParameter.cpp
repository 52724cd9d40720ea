#include <media/AudioParameter.h>

#include <string.h>

#include <string>

namespace android {

AudioParameter::AudioParameter(const String8& keyValuePairs) {
    const char* text = keyValuePairs.c_str();
    const char* end = text + keyValuePairs.length();
    while (text < end) {
        const char* semi = static_cast<const char*>(memchr(text, ';', end - text));
        const char* pieceEnd = semi != nullptr ? semi : end;
        if (pieceEnd > text) {
            const char* eq = static_cast<const char*>(memchr(text, '=', pieceEnd - text));
            String8 key, value;
            if (eq != nullptr) {
                key.setTo(text, eq - text);
                value.setTo(eq + 1, pieceEnd - eq - 1);
            } else {
                key.setTo(text, pieceEnd - text);
            }
            add(key, value);
        }
        text = pieceEnd + 1;
    }
}

status_t AudioParameter::get(const String8& key, String8& value) const {
    ssize_t i = mParameters.indexOfKey(key);
    if (i < 0) {
        return BAD_VALUE;
    }
    value = mParameters.valueAt(i);
    return NO_ERROR;
}

status_t AudioParameter::add(const String8& key, const String8& value) {
    ssize_t i = mParameters.indexOfKey(key);
    if (i < 0) {
        mParameters.add(key, value);
        return NO_ERROR;
    }
    mParameters.replaceValueAt(i, value);
    return ALREADY_EXISTS;
}

status_t AudioParameter::addInt(const String8& key, int value) {
    return add(key, String8::format("%d", value));
}

status_t AudioParameter::addFloat(const String8& key, float value) {
    return add(key, String8::format("%.10f", static_cast<double>(value)));
}

status_t AudioParameter::remove(const String8& key) {
    return mParameters.removeItem(key) >= 0 ? NO_ERROR : BAD_VALUE;
}

String8 AudioParameter::toString() const {
    std::string out;
    for (size_t i = 0; i < mParameters.size(); ++i) {
        if (i > 0) {
            out += ';';
        }
        out += mParameters.keyAt(i).c_str();
        out += '=';
        out += mParameters.valueAt(i).c_str();
    }
    return String8(out.c_str());
}

}  // namespace android
