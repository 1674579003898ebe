#include "editor/EditorTexts.h"

#include "api/GeoKeys.h"

namespace EditorTexts {

void MapOsgm02(QString& method, QString& file) {
    struct Mapping {
        const char* stored;
        const char* file;
    };
    static const Mapping mappings[] = {{"OSGM02 - GB", "OSTN02_OSGM02_GB.txt"},
                                       {"OSGM02 - NI", "OSGM02_NI.txt"},
                                       {"OSGM02 - RoI", "OSGM02_RoI.txt"}};
    for (const Mapping& m : mappings) {
        if (method == QLatin1String(m.stored)) {
            method = QString::fromWCharArray(GeoidmodelTypeKeys[GeoidKey::Osgm]);
            file = QLatin1String(m.file);
            return;
        }
    }
}

} // namespace EditorTexts
