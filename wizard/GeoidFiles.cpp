#include "wizard/GeoidFiles.h"

#include "api/GeoKeys.h"
#include "engine/ModelFiles.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "util/PathUtils.h"
#include "wizard/WzdUtility.h"

#include <algorithm>
#include <array>

namespace GeoidFiles {

namespace {

constexpr std::array kTakesFile = {
    GeoidKey::GeoidModel, GeoidKey::Swen,          GeoidKey::ChartDatum, GeoidKey::Dvr90,
    GeoidKey::GridModel,  GeoidKey::GcgQuasigeoid, GeoidKey::Nn2000,     GeoidKey::Quasigeoid,
    GeoidKey::Cgg,        GeoidKey::Osgm,          GeoidKey::Ggf,        GeoidKey::Vorf,
    GeoidKey::Gtx,
};

const FileDialogRule kGeoidDialogs[] = {
    {GeoidKey::GcgQuasigeoid, "BIN", StrId::FilterQuasigeoid, "|*.BIN||", ""},
    {GeoidKey::Quasigeoid, "BIN", StrId::FilterQuasigeoid, "|*.BIN||", ""},
    {GeoidKey::Cgg, "BYN", StrId::FilterCanadianGeoid, "|*.BYN||", ""},
    {GeoidKey::Ggf, "GGF", StrId::FilterTrimbleGeoid, "|*.GGF||", ""},
    {GeoidKey::Vorf, "vrf", StrId::FilterVorf, "|*.vrf||", ""},
    {GeoidKey::Dvr90, "01", StrId::FilterDvr90, "|*.01||", "General/Geoidmodels/Denmark/"},
    {GeoidKey::Osgm, "", StrId::FilterOsGeoid, "|*.*||", "General/Geoidmodels/United Kingdom/"},
    {GeoidKey::Gtx, "gtx", StrId::FilterRdGeoid, "|*.gtx||", "General/Geoidmodels/Netherlands/"},
};

// The shift model of the United Kingdom is asked for with the geoid model file's description.
const FileDialogRule kPostDialogs[] = {
    {GeoidKey::Ostn, "txt", StrId::FilterOsGeoid, "|*.txt||",
     "General/Geoidmodels/United Kingdom/"},
    {GeoidKey::Ntv2Shift, "gsb", StrId::FilterRdShift, "|*.gsb||",
     "General/Geoidmodels/Netherlands/"},
};

const FileDialogRule kEditorPostDialogs[] = {
    {GeoidKey::Ostn, "txt", StrId::FilterOsShift, "|*.txt||",
     "General/Geoidmodels/United Kingdom/"},
    {GeoidKey::Ntv2Shift, "gsb", StrId::FilterRdShift, "|*.gsb||",
     "General/Geoidmodels/Netherlands/"},
};

template <std::size_t N>
const FileDialogRule* findRule(const FileDialogRule (&rules)[N], int index) {
    for (const FileDialogRule& rule : rules)
        if (rule.index == index)
            return &rule;
    return nullptr;
}

} // namespace

int MethodIndex(const QString& method) {
    int found = GeoidKey::None;
    for (int i = 0; i < GeoidmodelTypeKeyCount; ++i)
        if (method.compare(QString::fromWCharArray(GeoidmodelTypeKeys[i]), Qt::CaseInsensitive) ==
            0)
            found = i;
    return found;
}

QString MethodKey(int index) {
    if (index < 0 || index >= GeoidmodelTypeKeyCount)
        return {};
    return QString::fromWCharArray(GeoidmodelTypeKeys[index]);
}

bool TakesModelFile(int index) {
    return std::find(kTakesFile.begin(), kTakesFile.end(), index) != kTakesFile.end();
}

const FileDialogRule* GeoidFileDialog(int index) {
    return findRule(kGeoidDialogs, index);
}

const FileDialogRule* PostFileDialog(int index) {
    return findRule(kPostDialogs, index);
}

const FileDialogRule* EditorPostFileDialog(int index) {
    return findRule(kEditorPostDialogs, index);
}

QString Filter(const FileDialogRule& rule) {
    return LoadOrvString(rule.descriptionId) + QString::fromLatin1(rule.filterSuffix);
}

QString StartFolder(const FileDialogRule& rule) {
    WzdUtility utility;
    QString dataFolder;
    // After a failure the common data folder is empty and the sub-folder alone is left.
    utility.GetCommonFolders(dataFolder);
    const QString common = utility.GetCommonDataFolder();
    const QString subFolder = QString::fromLatin1(rule.subFolder);
    if (common.isEmpty() || subFolder.isEmpty())
        return common + subFolder;
    const QString existing = ModelFiles::ResolveNoCase(common, subFolder);
    return existing.isEmpty() ? common + subFolder : existing + QLatin1Char('/');
}

bool AskModelFile(QWidget* parent, const FileDialogRule& rule, QString& file) {
    const FileOpenRequest request{QString(), Filter(rule),
                                  QString::fromLatin1(rule.defaultExtension), StartFolder(rule),
                                  file};
    QString path;
    if (!GetUi().GetOpenFileName(parent, request, path))
        return false;
    QString folder, name, extension;
    SplitPath(path, folder, name, extension);
    file = path.mid(folder.size());
    return true;
}

} // namespace GeoidFiles
