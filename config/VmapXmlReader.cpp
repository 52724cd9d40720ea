// The virtual-map XML configuration: which pair of real records serves each virtual parameter
// id, the user-interface type, and the numbers of headset names.
#include <string.h>

#include <string>

#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "config/TokenList.h"
#include "config/XmlStream.h"
#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

int32_t Orlune::KivReadConfigTableFromXML(bool musicRegionEnable) {
    ConfigUpdate update;  // the elements go into the set being built
    // In region mode both readers read the same region file, which then carries the map too.
    char base[kBaseNameBytes] = {};
    ConfigBaseName(musicRegionEnable, "kiv_config_vmap", base, sizeof(base),
                   "KivReadConfigTableFromXML() snprintf_s fail");
    char path[kPathBytes] = {};
    const char* chosen = GetRealConfigFile(base, "xml", path);
    if (IsNoPath(chosen)) {
        ORLUNE_LOGE(kTagMobile, "read kiv_config_vmap.xml:path is null");
        return -1;
    }
    char resolved[kResolvedPathBytes] = {};
    if (orlune_platform::DevRealpath(chosen, resolved) == nullptr) {
        ORLUNE_LOGE(kTagMobile, "read kiv_config_vmap.xml realpath is null");
        resolved[0] = '\0';
    }
    ORLUNE_LOGI(kTagMobile, "Read orlune config vmap file %s", resolved);
    FILE* fp = OpenConfigFile(resolved, ConfigFileKind::Xml).file;
    if (fp == nullptr) {
        return -1;
    }
    const bool ok =
            ParseConfigXml(fp, StartElementMapTable, "KivReadConfigTableFromXML status error");
    fclose(fp);
    return ok ? 0 : -1;
}

void Orlune::StartElementMapTable(void* /*userData*/, const char* name, const char** attrs) {
    ConfigUpdate update;
    const char* nameText = nullptr;
    const char* numIdText = nullptr;
    const char* idText = nullptr;
    const char* extIdText = nullptr;
    const char* valueText = nullptr;
    for (int i = 0; attrs != nullptr && attrs[i] != nullptr && attrs[i + 1] != nullptr; i += 2) {
        const char* key = attrs[i];
        const char* value = attrs[i + 1];
        if (strcmp(key, "NAME") == 0) {
            nameText = value;
        } else if (strcmp(key, "NUMID") == 0) {
            numIdText = value;
        } else if (strcmp(key, "ID") == 0) {
            idText = value;
        } else if (strcmp(key, "EXTID") == 0) {
            extIdText = value;
        } else if (strcmp(key, "PARAM_VALUE") == 0) {
            valueText = value;
        }
    }
    if (strcmp(name, "NV") == 0) {
        if (numIdText == nullptr || idText == nullptr || extIdText == nullptr) {
            ORLUNE_LOGE(kTagMobile,
                        " StartElementMapTable() attrNUMID or attrID or attrEXTID is null");
            return;
        }
        int32_t numId = 0;
        RealParamIdStru ids{0, 0};
        if (!IntegerAttr(numIdText, &numId) || !IntegerAttr(idText, &ids.ID) ||
            !IntegerAttr(extIdText, &ids.EXTID)) {
            LogOutOfRange("StartElementMapTable()", "NUMID, ID or EXTID",
                          (numIdText + std::string(" ") + idText + " " + extIdText).c_str());
            return;
        }
        update.Tables().gVituralMapTable.emplace(numId, ids);  // an existing mapping stays
        ORLUNE_LOGI(kTagMobile, "%s attrNUMIDValue:%d, attrIDValue:%d, attrIDValue:%d",
                    "StartElementMapTable", numId, ids.ID, ids.EXTID);
    } else if (strcmp(name, "CFG") == 0) {
        XmlCfgParamParse(numIdText, valueText);
    } else if (strcmp(name, "HPMAP") == 0) {
        XmlHpMapParse(numIdText, nameText);
    }
}

void Orlune::XmlCfgParamParse(const char* cfgID, const char* cfgValue) {
    if (cfgID == nullptr) {
        ORLUNE_LOGE(kTagMobile, "XmlCfgParamParse cfgID is null");
        return;
    }
    if (cfgValue == nullptr) {
        ORLUNE_LOGE(kTagMobile, "XmlCfgParamParse cfgValue is null");
        return;
    }
    ConfigUpdate update;
    int32_t id = 0;
    if (!IntegerAttr(cfgID, &id)) {
        LogOutOfRange("XmlCfgParamParse", "cfgID", cfgID);
        return;
    }
    char value[kXmlValueBufferBytes] = {};
    if (strcpy_s(value, sizeof(value), cfgValue) != EOK) {
        ORLUNE_LOGE(kTagMobile, "StartElement() strcpy_s fail");
    }
    TokenList tokens(value);
    const char* first = tokens.Next();
    if (id != 0) {
        ORLUNE_LOGE(kTagMobile, "unsupport cfg id: %d", id);
        return;
    }
    if (first == nullptr) {
        ORLUNE_LOGE(kTagMobile, "StartElement() paramPtr or elem is null, elemNum: %d", 0);
        return;
    }
    if (!HexTokenFits(first)) {
        LogOutOfRange("XmlCfgParamParse", "cfgValue", first);
        return;
    }
    update.Tables().gUiType = HexToken(first);  // every accepted element overwrites: the last wins
    if (tokens.Next() == nullptr) {
        ORLUNE_LOGI(kTagMobile, "XMLLengthCheck:%d", 0);
    }
}

// The two labels of the messages name the attributes the other way round; they are kept so.
void Orlune::XmlHpMapParse(const char* numId, const char* name) {
    if (name == nullptr) {
        ORLUNE_LOGE(kTagMobile, "XmlHpMapParse cfgID is null");
        return;
    }
    if (numId == nullptr) {
        ORLUNE_LOGE(kTagMobile, "XmlHpMapParse cfgValue is null");
        return;
    }
    int32_t number = 0;
    if (!IntegerAttr(numId, &number)) {
        LogOutOfRange("XmlHpMapParse", "NUMID", numId);
        return;
    }
    ConfigUpdate update;
    char key[kXmlValueBufferBytes] = {};
    if (strcpy_s(key, sizeof(key), name) != EOK) {
        ORLUNE_LOGE(kTagMobile, "XmlHpMapParse strcpy_s fail");
    }
    update.Tables().gHpMapTable.emplace(std::string(key, strnlen(key, sizeof(key))), number);
}
