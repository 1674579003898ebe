// The "Projection" and "Unit" boxes of the editor: the method and its rows, the UTM zone and
// hemisphere, choosing or creating a projection or a unit, and converting the lengths of the
// rows when the unit changes.
#include "editor/AdvCoordSysDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "api/ProjectionMethods.h"
#include "dialogs/CMaskEdit.h"
#include "dialogs/CreateNewPrjDlg.h"
#include "dialogs/NewUnitDlg.h"
#include "dialogs/PrjSelectDlg.h"
#include "dialogs/UnitSelectionDlg.h"
#include "editor/EditorTexts.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_AdvCoordSysDlg.h"
#include "util/GeoFormat.h"
#include "util/UtmZones.h"
#include "wizard/UtmRows.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>

namespace {

// The method id the static data gives for a projection that cannot be part of a system.
constexpr int kSpecialProjectionId = -1;

// "%f" as the rows write converted lengths.
QString PlainText(double value) {
    return QString::asprintf("%f", value);
}

} // namespace

void AdvCoordSysDlg::LoadParameterRows(const QString& projectionName, const QString& methodName) {
    m_paramNames.clear();
    m_paramValues.clear();
    m_paramTypes.clear();
    if (!projectionName.isEmpty()) {
        PrjParamBlock block;
        m_geoDatabase->GetProjectionParameters(projectionName, block, m_paramValues, m_paramNames,
                                               m_paramTypes);
    } else {
        WzdUtility::MethodDefaultParameters(methodName, m_paramNames, m_paramValues, m_paramTypes);
    }
    m_utility.LayoutParameterRows(m_paramLabels, m_paramEdits, m_paramNames, m_paramValues,
                                  m_paramTypes);
}

void AdvCoordSysDlg::SetPrjComboFocus(const QString& methodName) {
    SetUTMVisible(false);
    EnablePrjEditCtrls(true);
    {
        const QSignalBlocker quiet(m_ui->prjMethodCombo);
        m_ui->prjMethodCombo->setCurrentIndex(
            m_ui->prjMethodCombo->findText(methodName, Qt::MatchFixedString));
    }
    const int id = m_geoStatic->GetPrjMethodId(methodName);
    if (id == ProjectionMethods::UtmId && m_geoStatic->IsUtmMethod(id)) {
        m_utility.ResetParameterRows(m_paramLabels, m_paramEdits, WzdUtility::kMaxRows);
        SetUTMVisible(true);
        ShowUTMPrjInfo(m_prjName, true);
    }
}

void AdvCoordSysDlg::ShowUTMPrjInfo(const QString& projectionName, bool stored) {
    // a projection of its own, else the template the UTM layout starts from
    LoadParameterRows(stored ? projectionName : UtmRows::TemplateProjection(), QString());
    UtmRows::SelectZoneAndHemisphere(m_paramNames, m_paramValues, m_ui->utmZoneCombo,
                                     m_ui->hemisphereCombo, m_utmZoneText, m_hemisphereText);
    UtmRows::CentralMeridianOfZone(m_utmZoneText, m_utmCentralMeridian);
    m_utmFalseNorthing = UtmZones::FalseNorthing(m_hemisphereText);
    m_labelScheme = EditorTexts::kUtmLabelScheme;
    for (CMaskEdit* edit : m_paramEdits)
        edit->setEnabled(false); // only the lists change a UTM projection
}

void AdvCoordSysDlg::OnSelchangePrjcombo() {
    m_prjMethodName = m_ui->prjMethodCombo->currentText();
    const bool unchanged =
        m_prjMethodName.compare(m_savedPrjMethodName, Qt::CaseInsensitive) == 0 &&
        m_prjName.compare(m_savedPrjName, Qt::CaseInsensitive) == 0;
    SetPrjComboFocus(m_prjMethodName);
    m_prjMethodId = m_geoStatic->GetPrjMethodId(m_prjMethodName);
    UpdateData(true);
    m_utility.ResetParameterRows(m_paramLabels, m_paramEdits, WzdUtility::kMaxRows);
    if (m_utmMode) {
        ShowUTMPrjInfo(m_prjName, unchanged);
    } else {
        LoadParameterRows(unchanged ? m_prjName : QString(), m_prjMethodName);
        m_labelScheme = m_prjMethodId;
    }
    UpdateData(false);
}

void AdvCoordSysDlg::OnSelchangeUTMZone() {
    m_utmZoneText = m_ui->utmZoneCombo->currentText();
    if (!UtmRows::CentralMeridianOfZone(m_utmZoneText, m_utmCentralMeridian))
        return;
    WzdUtility::ShowRowText(m_paramEdits[UtmRows::CentralMeridianRow],
                            WzdUtility::FormatLongitude(m_utmCentralMeridian));
}

void AdvCoordSysDlg::OnSelchangUTMSphere() {
    m_hemisphereText = m_ui->hemisphereCombo->currentText();
    m_utmFalseNorthing = UtmZones::FalseNorthing(m_hemisphereText);
    WzdUtility::ShowRowText(m_paramEdits[UtmRows::FalseNorthingRow],
                            UtmRows::FalseNorthingText(m_utmFalseNorthing));
}

void AdvCoordSysDlg::SaveProjectionData(std::array<double, WzdUtility::kMaxRows>& out) const {
    for (int row = 0; row < WzdUtility::kMaxRows; ++row) {
        const CMaskEdit* edit = m_paramEdits[row];
        QString text = edit->text();
        text.remove(QLatin1Char(edit->GetPlaceholder()));
        // degree text; a length beyond the angles' range reads as the plain number it is
        double value = 0.0;
        if (!StringToGeo(text, value) && !ParseNumber(text, value))
            value = 0.0;
        out[row] = value;
    }
}

bool AdvCoordSysDlg::DoOrvPrjUnitConversion(bool convert, double newFactor, bool direction) {
    if (!convert || newFactor == 0.0 || m_unitFactor == 0.0)
        return false;
    const double ratio = direction ? newFactor / m_unitFactor : m_unitFactor / newFactor;
    const QList<unsigned> kinds = m_utility.RowTypes();
    for (int row = 0; row < kinds.size() && row < WzdUtility::kMaxRows; ++row) {
        if (kinds[row] != PRM_LENGTH)
            continue;
        double value = 0.0;
        if (!ParseNumber(m_paramEdits[row]->text(), value))
            value = 0.0;
        WzdUtility::ShowRowText(m_paramEdits[row], PlainText(value * ratio));
    }
    double e = 0.0, n = 0.0, z = 0.0;
    ReadTranslation(e, n, z, false);
    WriteTranslation(e * ratio, n * ratio, z * ratio);
    // the origins are lengths; rotation, scale and slopes are not
    m_horAdjust[0] *= ratio;
    m_horAdjust[1] *= ratio;
    m_vertAdjust[0] *= ratio;
    m_vertAdjust[1] *= ratio;
    return true;
}

void AdvCoordSysDlg::OnSelectUnit() {
    UnitSelectionDlg units(this, this);
    units.SetUnitName(m_unitName);
    if (units.DoModal() != QDialog::Accepted)
        return;
    const QString chosen = units.GetSelUnitName();
    QString projectionUnit;
    m_geoDatabase->GetProjectionUnit(projectionUnit, m_prjName);
    bool rename = false;
    if (chosen.compare(projectionUnit, Qt::CaseInsensitive) != 0) {
        if (!m_geoStatic->IsMethodUnitFree(m_geoStatic->GetPrjMethodId(m_prjMethodName))) {
            GetUi().MessageBox(this, LoadOrvString(StrId::UnitSelectFixedMeter), QString(),
                               MsgButtons::Ok);
            return;
        }
        if (GetUi().MessageBox(this, LoadOrvString(StrId::UnitSelectConvertQuestion), QString(),
                               MsgButtons::YesNo) != MsgAnswer::Yes)
            return;
        rename = true;
    }
    UpdateData(true); // what was typed stays
    QString suffix, description;
    double factor = 0.0;
    int category = UNIT_CATEGORY_LENGTH;
    m_geoDatabase->GetUnitDefinition(chosen, suffix, factor, category, description);
    // The line still describes the unit selected before: it follows only when the page is
    // loaded again.
    m_unitInfoLine = DumpUnitText();
    if (rename) {
        const qsizetype at = m_prjName.indexOf(m_unitName, 0, Qt::CaseInsensitive);
        if (at > 0)
            m_prjName = m_prjName.left(at - 1) + QStringLiteral("_") + chosen;
    }
    // renamed, not converted: the rows keep their numbers
    m_unitName = chosen;
    m_unitFactor = factor;
    m_unitDescription = description;
    m_unitCategory = category;
    UpdateData(false);
}

void AdvCoordSysDlg::OnCreateNewUnit() {
    NewUnitDlg unit(this, this);
    if (unit.DoModal() != QDialog::Accepted)
        return;
    bool convert = false;
    if (unit.GetName().compare(m_unitName, Qt::CaseInsensitive) != 0) {
        if (!m_geoStatic->IsMethodUnitFree(m_geoStatic->GetPrjMethodId(m_prjMethodName))) {
            GetUi().MessageBox(this, LoadOrvString(StrId::UnitCreateFixedMeter), QString(),
                               MsgButtons::Ok);
            return;
        }
        if (GetUi().MessageBox(this, LoadOrvString(StrId::UnitCreateConvertQuestion), QString(),
                               MsgButtons::YesNo) != MsgAnswer::Yes)
            return;
        convert = true;
    }
    UpdateData(true);
    DoOrvPrjUnitConversion(convert, unit.GetMetersPerUnit(), false);
    QString suffix, description;
    double factor = unit.GetMetersPerUnit();
    int category = UNIT_CATEGORY_LENGTH;
    m_geoDatabase->GetUnitDefinition(unit.GetName(), suffix, factor, category, description);
    m_unitName = unit.GetName();
    m_unitDescription = description;
    m_unitFactor = unit.GetMetersPerUnit();
    m_unitCategory = category;
    m_unitInfoLine = LoadOrvString(StrId::InfoMetricFactor) + PlainText(m_unitFactor) +
                     QStringLiteral("\r\n") + BuildIndentString(1) +
                     LoadOrvString(StrId::InfoDescription) + m_unitDescription +
                     QStringLiteral("\r\n");
    if (convert) // the old unit name is not cut off here
        m_prjName = m_prjName + QStringLiteral("_") + m_unitName;
    UpdateData(false);
}

void AdvCoordSysDlg::TakeProjection(const QString& projection, const QString& methodName,
                                    bool created) {
    const int methodId = m_geoStatic->GetPrjMethodId(methodName);
    QString projectionUnit;
    m_geoDatabase->GetProjectionUnit(projectionUnit, projection);
    bool convert = false;
    if (projectionUnit.compare(m_unitName, Qt::CaseInsensitive) != 0) {
        if (!m_geoStatic->IsMethodUnitFree(methodId)) {
            GetUi().MessageBox(this, LoadOrvString(StrId::PrjSelectFixedMeter), QString(),
                               MsgButtons::Ok);
            return;
        }
        if (GetUi().MessageBox(this, LoadOrvString(StrId::PrjSelectConvertQuestion), QString(),
                               MsgButtons::YesNo) != MsgAnswer::Yes)
            return;
        convert = true;
    }
    UpdateData(true);
    if (!created)
        m_prjName = projection;
    m_prjMethodName = methodName;
    m_prjMethodId = methodId;
    QString suffix, description;
    double projectionFactor = 0.0;
    int category = UNIT_CATEGORY_LENGTH;
    m_geoDatabase->GetUnitDefinition(projectionUnit, suffix, projectionFactor, category,
                                     description);
    SetPrjComboFocus(methodName);
    if (m_utmMode) {
        ShowUTMPrjInfo(projection, true);
    } else {
        LoadParameterRows(projection, methodName);
        m_labelScheme = m_prjMethodId;
    }
    DoOrvPrjUnitConversion(convert, projectionFactor, true);
    UpdateData(false);
}

void AdvCoordSysDlg::OnLoadPrePrj() {
    PrjSelectDlg picker(this, this);
    if (picker.DoModal() != QDialog::Accepted)
        return;
    TakeProjection(picker.GetSelName(), picker.GetMethodName(), false);
}

void AdvCoordSysDlg::OnCreateNewPrj() {
    CreateNewPrjDlg naming(this, this);
    if (naming.DoModal() != QDialog::Accepted)
        return;
    m_prjIsStored = false;
    m_prjName = naming.GetName();
    UpdateData(false);
    if (naming.GetBasedOn() != 0) {
        // the base's rows stay (converted into the system's unit); re-applying the method
        // would replace them by the method's defaults
        TakeProjection(naming.GetBasedOnName(), naming.GetBasedOnMethod(), true);
    } else {
        OnSelchangePrjcombo();
    }
    EnablePrjEditCtrls(true);
}

bool AdvCoordSysDlg::FillInPrjData() {
    if (m_prjMethodId == kSpecialProjectionId) {
        GetUi().MessageBox(this, LoadOrvString(StrId::PrjSpecial), QString(), MsgButtons::Ok);
        return false;
    }
    if (m_prjMethodId == ProjectionMethods::NotImplementedId) {
        GetUi().MessageBox(this, LoadOrvString(StrId::PrjNotImplemented), QString(),
                           MsgButtons::Ok);
        return false;
    }
    QList<double> numbers;
    if (!m_utility.ReadParameterRows(m_paramEdits, numbers, this))
        return false;
    if (m_utmMode) {
        m_geoStatic->SetUtmMode(true);
        m_geoStatic->SetUtmZoneText(m_utmZoneText);
        m_geoStatic->SetUtmHemisphereText(m_hemisphereText);
    }
    PrjParamBlock block;
    QStringList texts;
    m_utility.CollectParameters(m_paramEdits, numbers, m_paramNames, m_paramValues, m_utmZoneText,
                                m_hemisphereText, block, texts);
    m_geoStatic->SetProjectionParameters(block, texts, m_paramNames, m_paramTypes);
    return true;
}

QString AdvCoordSysDlg::DumpUnitText() const {
    QString text;
    m_geoDatabase->GetUnitDescription(text, m_unitName);
    const qsizetype tab = text.indexOf(QLatin1Char('\t'));
    return tab < 0 ? QString() : text.mid(tab + 1);
}

QString AdvCoordSysDlg::BuildIndentString(int depth) {
    return depth < 1 ? QString() : QString(depth, QLatin1Char('\t'));
}
