#include "tools/play/HostAudio.h"

#include <string.h>

audio_format_t ToAudioFormat(HostFormat format) {
    switch (format) {
        case HostFormat::S16:
            return AUDIO_FORMAT_PCM_16_BIT;
        case HostFormat::S32:
            return AUDIO_FORMAT_PCM_32_BIT;
        case HostFormat::F32:
            return AUDIO_FORMAT_PCM_FLOAT;
        case HostFormat::S24:
            return AUDIO_FORMAT_PCM_24_BIT_PACKED;
    }
    return AUDIO_FORMAT_INVALID;
}

int BytesPerSample(HostFormat format) {
    return format == HostFormat::S16 ? 2 : (format == HostFormat::S24 ? 3 : 4);
}

namespace {

// 24-bit packed samples are the top three bytes of a 32-bit sample, little-endian.
void Pack24(int32_t x, uint8_t* out) {
    const uint32_t u = static_cast<uint32_t>(x) >> 8;
    out[0] = static_cast<uint8_t>(u);
    out[1] = static_cast<uint8_t>(u >> 8);
    out[2] = static_cast<uint8_t>(u >> 16);
}

int32_t Unpack24(const uint8_t* in) {
    return static_cast<int32_t>((static_cast<uint32_t>(in[0]) << 8) |
                                (static_cast<uint32_t>(in[1]) << 16) |
                                (static_cast<uint32_t>(in[2]) << 24));
}

}  // namespace

WavReader::~WavReader() {
    if (mFile != nullptr) {
        sf_close(mFile);
    }
}

bool WavReader::Open(const std::string& path, std::string* error) {
    mFile = sf_open(path.c_str(), SFM_READ, &mInfo);
    if (mFile == nullptr) {
        *error = "cannot read " + path + ": " + sf_strerror(nullptr);
        return false;
    }
    // Float files read as integers are scaled to full range, not truncated.
    sf_command(mFile, SFC_SET_SCALE_FLOAT_INT_READ, nullptr, SF_TRUE);
    return true;
}

int WavReader::Read(HostFormat format, int layout, int frames, uint8_t* block) {
    const int fileChannels = mInfo.channels;
    const size_t n = static_cast<size_t>(frames) * fileChannels;
    sf_count_t got = 0;
    const int bytes = BytesPerSample(format);
    memset(block, 0, static_cast<size_t>(frames) * layout * bytes);
    switch (format) {
        case HostFormat::S16:
            mShorts.resize(n);
            got = sf_readf_short(mFile, mShorts.data(), frames);
            break;
        case HostFormat::F32:
            mFloats.resize(n);
            got = sf_readf_float(mFile, mFloats.data(), frames);
            break;
        case HostFormat::S32:
        case HostFormat::S24:
            mInts.resize(n);
            got = sf_readf_int(mFile, mInts.data(), frames);
            break;
    }
    for (sf_count_t f = 0; f < got; ++f) {
        for (int c = 0; c < layout; ++c) {
            const size_t src = static_cast<size_t>(f) * fileChannels + c % fileChannels;
            uint8_t* dst = block + (static_cast<size_t>(f) * layout + c) * bytes;
            switch (format) {
                case HostFormat::S16:
                    memcpy(dst, &mShorts[src], 2);
                    break;
                case HostFormat::F32:
                    memcpy(dst, &mFloats[src], 4);
                    break;
                case HostFormat::S32:
                    memcpy(dst, &mInts[src], 4);
                    break;
                case HostFormat::S24:
                    Pack24(mInts[src], dst);
                    break;
            }
        }
    }
    return static_cast<int>(got);
}

WavWriter::~WavWriter() {
    Close();
}

bool WavWriter::Open(const std::string& path, HostFormat format, int channels, int rate,
                     std::string* error) {
    SF_INFO info = {};
    info.channels = channels;
    info.samplerate = rate;
    int sub = SF_FORMAT_PCM_16;
    if (format == HostFormat::S32) {
        sub = SF_FORMAT_PCM_32;
    } else if (format == HostFormat::F32) {
        sub = SF_FORMAT_FLOAT;
    } else if (format == HostFormat::S24) {
        sub = SF_FORMAT_PCM_24;
    }
    info.format = SF_FORMAT_WAV | sub;
    mFile = sf_open(path.c_str(), SFM_WRITE, &info);
    if (mFile == nullptr) {
        *error = "cannot write " + path + ": " + sf_strerror(nullptr);
        return false;
    }
    mFormat = format;
    mChannels = channels;
    return true;
}

bool WavWriter::Write(const uint8_t* block, int frames, int channels) {
    const size_t n = static_cast<size_t>(frames) * mChannels;
    const int bytes = BytesPerSample(mFormat);
    switch (mFormat) {
        case HostFormat::S16:
            mShorts.assign(n, 0);
            break;
        case HostFormat::F32:
            mFloats.assign(n, 0.0f);
            break;
        case HostFormat::S32:
        case HostFormat::S24:
            mInts.assign(n, 0);
            break;
    }
    const int copy = channels < mChannels ? channels : mChannels;
    for (int f = 0; f < frames; ++f) {
        for (int c = 0; c < copy; ++c) {
            const uint8_t* src = block + (static_cast<size_t>(f) * channels + c) * bytes;
            const size_t dst = static_cast<size_t>(f) * mChannels + c;
            switch (mFormat) {
                case HostFormat::S16:
                    memcpy(&mShorts[dst], src, 2);
                    break;
                case HostFormat::F32:
                    memcpy(&mFloats[dst], src, 4);
                    break;
                case HostFormat::S32:
                    memcpy(&mInts[dst], src, 4);
                    break;
                case HostFormat::S24:
                    mInts[dst] = Unpack24(src);
                    break;
            }
        }
    }
    sf_count_t put = 0;
    switch (mFormat) {
        case HostFormat::S16:
            put = sf_writef_short(mFile, mShorts.data(), frames);
            break;
        case HostFormat::F32:
            put = sf_writef_float(mFile, mFloats.data(), frames);
            break;
        case HostFormat::S32:
        case HostFormat::S24:
            put = sf_writef_int(mFile, mInts.data(), frames);
            break;
    }
    return put == frames;
}

void WavWriter::Close() {
    if (mFile != nullptr) {
        sf_close(mFile);
        mFile = nullptr;
    }
}
