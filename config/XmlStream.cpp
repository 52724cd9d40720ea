#include "config/XmlStream.h"

#include <stdint.h>

#include "base/Log.h"
#include "effect/orlune.h"

namespace {

constexpr size_t kChunkBytes = 1024;

}  // namespace

bool ParseConfigXml(FILE* fp, XML_StartElementHandler start, const char* errorMessage) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    if (parser == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s", errorMessage);
        return false;
    }
    int32_t depth = 0;  // the handlers' user data; only EndElement touches it
    XML_SetUserData(parser, &depth);
    XML_SetElementHandler(parser, start, Orlune::EndElement);

    bool ok = true;
    char chunk[kChunkBytes];
    for (;;) {
        const size_t got = fread(chunk, 1, sizeof(chunk), fp);
        const bool final = got < sizeof(chunk);
        if (XML_Parse(parser, chunk, static_cast<int>(got), final ? 1 : 0) == XML_STATUS_ERROR) {
            ORLUNE_LOGE(kTagMobile, "%s", errorMessage);
            ok = false;
            break;
        }
        if (final) {
            break;
        }
    }
    XML_ParserFree(parser);
    return ok;
}
