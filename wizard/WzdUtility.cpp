#include "wizard/WzdUtility.h"

#include "api/OrvGeoStaticDataBase.h"
#include "api/ProjectionMethods.h"
#include "dialogs/CMaskEdit.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "util/BrandingConfig.h"
#include "util/COrvUnitCnv.h"
#include "util/CommonFolders.h"
#include "util/GeoFormat.h"
#include "util/PathUtils.h"
#include "wizard/UtmRows.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace {

constexpr int kMaxProgramPath = 260;
constexpr double kMinScaleFactor = 0.8;

// The characters of a text that has the shape of the mask at its input positions: what
// CMaskEdit::SetText takes, literals left out.
QString inputCharacters(const QString& mask, const QString& text) {
    QString input;
    for (qsizetype i = 0; i < mask.size() && i < text.size(); ++i) {
        if (CMaskEdit::IsInputMaskChar(mask[i]))
            input += text[i];
    }
    return input;
}

bool isAngle(unsigned type) {
    return type == 1 || type == 2;
}

} // namespace

bool WzdUtility::GetCommonFolders(QString& dataFolder) {
    // Each call starts afresh: after a failure the callers build their start folders from
    // an empty common data folder, not from what an earlier call found.
    m_programFolder.clear();
    m_programFileName.clear();
    m_commonDataFolder.clear();
    m_terrainModelFolder.clear();

    const QString program = QCoreApplication::applicationFilePath();
    if (program.isEmpty() || program.size() > kMaxProgramPath)
        return false;
    QString folder, name, extension;
    SplitPath(program, folder, name, extension);
    m_programFolder = folder;
    m_programFileName = name;
    CheckAppPathForDevelopEnvironment(m_programFolder);

    BrandingConfig& branding = BrandingConfig::Instance();
    QString root;
    if (!branding.GetRootProgramDataFolder(root))
        return false;
    DataPaths paths;
    if (!ReadDataPaths(branding.GetProgramDataFolder() + QStringLiteral("/ORV.ini"), paths))
        return false;
    m_commonDataFolder = paths.commonDataFolder;
    m_terrainModelFolder = paths.terrainModelFolder;
    dataFolder = paths.dataFolder;
    return true;
}

void WzdUtility::FillMethodList(OrvGeoStaticDataBase* staticData, QComboBox* list) {
    if (!staticData || !list)
        return;
    QStringList names;
    staticData->GetDtfMethodNames(names);
    list->clear();
    list->addItems(names);
    list->setCurrentIndex(names.isEmpty() ? -1 : 0);
}

bool WzdUtility::SelectDtfMethod(OrvGeoStaticDataBase* staticData, QComboBox* list,
                                 const QString& method, int& index) {
    if (!staticData || !list)
        return false;
    QStringList names;
    staticData->GetDtfMethodNames(names);
    index = staticData->GetDtfMethodIndex(method);
    list->clear();
    list->addItems(names);
    list->setCurrentIndex(index >= 0 && index < names.size() ? index : -1);
    return true;
}

int WzdUtility::ReduceDtfMethodList(OrvGeoStaticDataBase* staticData, QComboBox* list, int shift) {
    if (!staticData || !list)
        return shift;
    QStringList names;
    staticData->GetDtfMethodNames(names);
    const int full = list->currentIndex() + shift;
    int first = 0, last = 0, newShift = 0;
    if (full == 0) {
        first = last = newShift = 0;
    } else if (full == 1 || full == 2) {
        first = newShift = 1;
        last = 2;
    } else if (full == 3 || full == 4) {
        first = newShift = 3;
        last = 4;
    } else {
        return shift;
    }
    list->clear();
    for (int i = first; i <= last && i < names.size(); ++i)
        list->addItem(names[i]);
    list->setCurrentIndex(full - first < list->count() ? full - first : -1);
    return newShift;
}

bool WzdUtility::FillPrjMethodList(OrvGeoStaticDataBase* staticData, QComboBox* list,
                                   QStringList& names) {
    if (!staticData || !list)
        return false;
    names.clear();
    staticData->GetPrjMethodNames(names);
    list->clear();
    list->addItems(names);
    list->setCurrentIndex(names.isEmpty() ? -1 : 0);
    return true;
}

bool WzdUtility::ResetParameterRows(LabelRows labels, EditRows edits, int count) {
    bool complete = true;
    for (int i = 0; i < std::min(count, kMaxRows); ++i) {
        if (labels[i]) {
            labels[i]->setText(QString());
            labels[i]->hide();
        }
        if (edits[i]) {
            edits[i]->SetMask(QString());
            edits[i]->SetText(QStringLiteral("0.000000"));
            edits[i]->hide();
        }
        complete = complete && labels[i] && edits[i];
    }
    return complete;
}

void WzdUtility::ShowValues(std::span<QLineEdit* const> edits, std::span<const double> values) {
    const std::size_t count = std::min(edits.size(), values.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (!edits[i])
            continue;
        const int decimals = i < 7 ? 6 : i < 14 ? 8 : 3;
        edits[i]->setText(QString::asprintf("%.*f", decimals, values[i]));
    }
}

QString WzdUtility::RowLabel(const QString& paramName) {
    return paramName + QLatin1Char(':');
}

QString WzdUtility::MaskForType(unsigned type) {
    // the shapes FormatGeogs writes with seven decimals, fixed width and a hemisphere letter
    if (type == 1)
        return QStringLiteral("##\u00b0##'##.#######\"?");
    if (type == 2)
        return QStringLiteral("###\u00b0##'##.#######\"?");
    return QString();
}

int WzdUtility::LayoutParameterRows(LabelRows labels, EditRows edits, const QStringList& names,
                                    const QStringList& values, const QList<unsigned>& types) {
    m_rowCount = 0;
    m_rowParams.clear();
    m_rowTypes.clear();
    ResetParameterRows(labels, edits, kMaxRows);
    for (int p = 0; p < names.size() && m_rowCount < kMaxRows; ++p) {
        const unsigned type = p < types.size() ? types[p] : 0;
        if (type == 3)
            continue;
        const int row = m_rowCount++;
        m_rowParams << p;
        m_rowTypes << type;
        const QString value = p < values.size() ? values[p].trimmed() : QString();
        QString text = value;
        if (isAngle(type)) {
            double degrees = 0.0;
            if (!ParseNumber(value, degrees) && !StringToGeo(value, degrees))
                degrees = 0.0;
            text = FormatAngle(degrees, type == 1 ? 10 : 11);
        } else if (type == 4 && value.isEmpty()) {
            text = QStringLiteral("1.000000");
        } else if (value.isEmpty()) {
            text = QStringLiteral("0.000000");
        }
        if (labels[row]) {
            labels[row]->setText(RowLabel(names[p]));
            labels[row]->show();
        }
        if (CMaskEdit* edit = edits[row]) {
            const QString mask = MaskForType(type);
            edit->SetMask(mask);
            ShowRowText(edit, text);
            edit->setEnabled(true);
            edit->show();
        }
    }
    return m_rowCount;
}

void WzdUtility::ShowRowText(CMaskEdit* edit, const QString& text) {
    if (!edit)
        return;
    const QString mask = edit->GetMask();
    edit->SetText(mask.isEmpty() ? text : inputCharacters(mask, text));
}

bool WzdUtility::ReadParameterRows(EditRows edits, QList<double>& numbers, QWidget* parent) {
    numbers.clear();
    for (int row = 0; row < std::min(m_rowCount, kMaxRows); ++row) {
        CMaskEdit* edit = edits[row];
        if (!edit)
            return false;
        const unsigned type = m_rowTypes.value(row);
        double value = 0.0;
        if (isAngle(type)) {
            value = ReadAngle(edit);
        } else if (!ParseNumber(edit->text(), value)) {
            GetUi().MessageBox(parent, DataExchangeNumberMessage(), QString(), MsgButtons::Ok);
            edit->setFocus();
            return false;
        }
        if (type == 4 && !(value > kMinScaleFactor)) {
            GetUi().MessageBox(parent, LoadMessage(StrId::ScaleFactorTooSmall), QString(),
                               MsgButtons::Ok);
            edit->setFocus();
            return false;
        }
        numbers << value;
    }
    return true;
}

void WzdUtility::MethodDefaultParameters(const QString& methodName, QStringList& names,
                                         QStringList& values, QList<unsigned>& types) {
    names.clear();
    values.clear();
    types.clear();
    const ProjectionMethods::Method* method = ProjectionMethods::ByName(methodName);
    if (!method)
        return;
    for (const ProjectionMethods::Param& param : method->params) {
        names << QString::fromUtf8(param.name);
        types << param.type;
        values << QString::number(param.defaultValue, 'f', 6);
    }
}

void WzdUtility::CollectParameters(EditRows edits, const QList<double>& rowNumbers,
                                   const QStringList& names, const QStringList& values,
                                   const QString& zoneText, const QString& hemisphereText,
                                   PrjParamBlock& block, QStringList& texts) const {
    block = PrjParamBlock{};
    texts = values;
    while (texts.size() < names.size())
        texts << QString();
    for (int row = 0; row < m_rowParams.size() && row < kMaxRows; ++row) {
        const int param = m_rowParams[row];
        if (param < 0 || param >= texts.size())
            continue;
        if (edits[row])
            texts[param] = edits[row]->text();
        if (param < PrjParamBlock::MaxParams && row < rowNumbers.size())
            block.values[param] = rowNumbers[row];
    }
    for (int i = 0; i < names.size(); ++i) {
        if (UtmRows::IsZoneParameter(names[i]))
            texts[i] = zoneText;
        else if (UtmRows::IsHemisphereParameter(names[i]))
            texts[i] = hemisphereText;
    }
    block.count = static_cast<int>(std::min<qsizetype>(names.size(), PrjParamBlock::MaxParams));
}

double WzdUtility::ReadAngle(const CMaskEdit* edit) {
    if (!edit)
        return 0.0;
    QString text = edit->text();
    text.remove(QLatin1Char(edit->GetPlaceholder()));
    double value = 0.0;
    if (!StringToGeo(text, value))
        return 0.0;
    return value;
}

QString WzdUtility::FormatAngle(double value, int kind) {
    QString text;
    FormatGeogs(value, 7, 7, kind, text, true, true);
    return text;
}

QString WzdUtility::FormatLatitude(double value) {
    return FormatAngle(value, 10);
}

QString WzdUtility::FormatLongitude(double value) {
    return FormatAngle(value, 11);
}

void WzdUtility::SetRotationUnit(double sign) {
    StaticFormats::GetUnitCnv().SetUnit(COrvUnitCnv::RotationCategory, sign, 0.0,
                                        QStringLiteral("\""),
                                        LoadOrvString(StrId::RotationUnitName), QString());
}

QString WzdUtility::GroupBoxTitle(QString text) {
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QString WzdUtility::LoadMessage(int id) {
    return LoadOrvString(id);
}

QString WzdUtility::LoadMessage(const QString& id) {
    bool ok = false;
    const int number = id.trimmed().toInt(&ok);
    return ok ? LoadOrvString(number) : QString();
}
