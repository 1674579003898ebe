// The "Satellite ellipsoid", "Local ellipsoid " and "Datum Transformation" boxes of the
// editor: the values a method shows, loading a stored transformation, creating a new one and
// changing an ellipsoid.
#include "editor/AdvCoordSysDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/CreateNewDttrfmDlg.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_AdvCoordSysDlg.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>

namespace {

// How many of the fifteen values each method shows.
constexpr short kSevenValues = 7;
constexpr short kAllValues = 15;

} // namespace

DtfValues AdvCoordSysDlg::DtfValueList() const {
    DtfValues values{};
    std::copy(m_dtfParams.begin(), m_dtfParams.end(), values.begin());
    std::copy(m_dtfRates.begin(), m_dtfRates.end(), values.begin() + kParamCount);
    values[kDtfValueCount - 1] = m_epoch;
    return values;
}

void AdvCoordSysDlg::SetDtfValueList(const DtfValues& values) {
    std::copy(values.begin(), values.begin() + kParamCount, m_dtfParams.begin());
    std::copy(values.begin() + kParamCount, values.begin() + 2 * kParamCount, m_dtfRates.begin());
    m_epoch = values[kDtfValueCount - 1];
}

void AdvCoordSysDlg::DisableDtfValues() {
    for (QLineEdit* edit : m_dtfEdits)
        edit->setEnabled(false);
    m_ui->descriptionEdit->setEnabled(false);
}

void AdvCoordSysDlg::DoSelDttransMd(short methodIndex) {
    switch (methodIndex) {
    case DTF_NONE:
        EnableDttransInfo(0);
        SetDtfValueList(DtfValues{});
        break;
    case DTF_7_POSITION_VECTOR:
    case DTF_7_COORDINATE_FRAME:
        EnableDttransInfo(kSevenValues); // zeroes the rates and the epoch
        WzdUtility::SetRotationUnit(DtfRotationSign(methodIndex));
        break;
    case DTF_15_POSITION_VECTOR:
    case DTF_15_COORDINATE_FRAME:
        EnableDttransInfo(kAllValues);
        WzdUtility::SetRotationUnit(DtfRotationSign(methodIndex));
        break;
    default:
        break;
    }
    UpdateData(false);
}

void AdvCoordSysDlg::EnableDttransInfo(short count) {
    for (QLineEdit* edit : m_dtfEdits)
        edit->hide();
    for (QLabel* label : m_dtfLabels)
        label->hide();
    const int labels = std::min<int>(count, kDtfLabelCount);
    for (int i = 0; i < labels; ++i) {
        m_dtfLabels[i]->show();
        m_dtfLabels[i]->setEnabled(true);
    }
    for (int i = 0; i < std::min<int>(count, kDtfValueCount); ++i)
        m_dtfEdits[i]->show(); // whether it takes input is decided elsewhere
    DtfValues values = DtfValueList();
    for (int i = std::max<int>(count, 0); i < kDtfValueCount; ++i)
        values[i] = 0.0;
    SetDtfValueList(values);
}

void AdvCoordSysDlg::OnSelchangDttransMd() {
    const int index = m_ui->dtfMethodCombo->currentIndex() + m_methodShift;
    if (m_ui->dtfMethodCombo->currentIndex() < 0 || index == m_dtfMethodIndex)
        return;
    // what was typed is kept: read before the rotation unit changes
    UpdateData(true);
    m_dtfMethodName = m_ui->dtfMethodCombo->currentText();
    m_dtfMethodIndex = static_cast<short>(index);
    DoSelDttransMd(m_dtfMethodIndex);
    UpdateData(false);
}

void AdvCoordSysDlg::EnableDtfEdit(bool enable) {
    for (QLineEdit* edit : m_dtfEdits)
        edit->setEnabled(enable);
    m_ui->descriptionEdit->setEnabled(enable);
    const QSignalBlocker quiet(m_ui->dtfMethodCombo);
    if (enable) {
        m_methodShift = 0;
        int index = 0;
        m_utility.SelectDtfMethod(m_geoStatic.get(), m_ui->dtfMethodCombo, m_dtfMethodName, index);
    } else {
        m_methodShift =
            m_utility.ReduceDtfMethodList(m_geoStatic.get(), m_ui->dtfMethodCombo, m_methodShift);
    }
}

void AdvCoordSysDlg::SetNoDtfShow(bool none) {
    if (none) {
        SetDtfValueList(DtfValues{});
        m_dtfFurther = {0.0, 0.0};
        m_dtfOption = 0;
    }
    for (QLineEdit* edit : m_dtfEdits)
        edit->setEnabled(!none);
    m_ui->dtfMethodCombo->setEnabled(!none);
    m_ui->dtfSelectButton->setEnabled(!none);
    m_ui->dtfNewButton->setEnabled(!none);
    UpdateData(false);
    m_noDtf = none;
}

void AdvCoordSysDlg::SetDtfTitle(const QString& satellite, const QString& local, bool rename) {
    const QString title =
        LoadOrvString(StrId::DtfGroupFrom) + satellite + LoadOrvString(StrId::DtfGroupTo) + local;
    m_ui->dtfGroup->setTitle(WzdUtility::GroupBoxTitle(title));
    if (rename)
        m_dtfName = m_systemName + QStringLiteral("-") + title;
}

bool AdvCoordSysDlg::RefreshDttrans(const QString& dtfName) {
    m_geoDatabase->GetDtfEllipsoids(dtfName, m_desEllipsoid, m_localValues);
    DtfValues values{};
    std::array<double, 2> trailing{};
    if (m_geoDatabase->GetDtfParameters(dtfName, m_dtfMethodName, values, m_dtfFurther, m_dtfOption,
                                        trailing))
        SetDtfValueList(values);
    QString local;
    m_geoDatabase->GetDtfEllipsoidNames(dtfName, m_srcEllipsoid, local);
    m_geoDatabase->GetDtfDescription(m_dtfDescription, dtfName);
    SetDtfTitle(m_srcEllipsoid, m_desEllipsoid, !m_geoDatabase->IsDtfOfType(dtfName, GEODB_ALL));
    SetNoDtfShow(false);
    m_geoDatabase->GetDtfExtraText(m_dtfExtraText, dtfName);
    int index = 0;
    {
        const QSignalBlocker quiet(m_ui->dtfMethodCombo);
        m_utility.SelectDtfMethod(m_geoStatic.get(), m_ui->dtfMethodCombo, m_dtfMethodName, index);
    }
    m_methodShift = 0;
    if (index >= 0) {
        m_dtfMethodIndex = static_cast<short>(index);
        // the values and labels of the loaded method, with its rotation sign
        DoSelDttransMd(m_dtfMethodIndex);
    }
    return true;
}

void AdvCoordSysDlg::OnLoadPreDttrfm() {
    DatumTransfmSelDlg picker(this, this);
    picker.SetEllipsoidNames(m_ui->satNameEdit->text(), m_ui->localNameEdit->text());
    picker.SetSelName(m_dtfName);
    if (picker.DoModal() != QDialog::Accepted)
        return;
    m_dtfName = picker.GetSelName();
    RefreshDttrans(m_dtfName);
    if (m_geoDatabase->IsDtfOfType(m_dtfName, GEODB_SYSTEM)) {
        DisableDtfValues();
        const QSignalBlocker quiet(m_ui->dtfMethodCombo);
        m_methodShift =
            m_utility.ReduceDtfMethodList(m_geoStatic.get(), m_ui->dtfMethodCombo, m_methodShift);
    } else {
        EnableDtfEdit(true);
    }
    UpdateData(false);
}

void AdvCoordSysDlg::ONCreateNewDatum() {
    CreateNewDttrfmDlg naming(this, this);
    if (naming.DoModal() != QDialog::Accepted)
        return;
    UpdateData(true); // what was typed stays
    m_dtfIsStored = false;
    if (naming.GetBasedOn() != 0) {
        RefreshDttrans(naming.GetBasedOnName());
        OnSelchangDttransMd();
    }
    m_ui->localSelectButton->setEnabled(true);
    m_ui->localNameEdit->setEnabled(true);
    m_dtfName = naming.GetName();
    EnableDtfEdit(true);
    UpdateData(false);
}

void AdvCoordSysDlg::OnSelPreEllipsoid() {
    SelEllipsoidDlg picker(this, this);
    picker.SetSelName(m_desEllipsoid);
    if (picker.DoModal() != QDialog::Accepted)
        return;
    // asked even when the same ellipsoid was chosen
    if (GetUi().MessageBox(this, LoadOrvString(StrId::EllipsoidChangedQuestion), QString(),
                           MsgButtons::YesNo) != MsgAnswer::Yes)
        return;
    UpdateData(true); // what was typed stays
    const QString chosen = picker.GetSelName();
    if (chosen.compare(m_desEllipsoid, Qt::CaseInsensitive) != 0)
        SetDtfValueList(DtfValues{});
    m_desEllipsoid = chosen;
    SetDtfTitle(m_srcEllipsoid, m_desEllipsoid, true);
    SetNoDtfShow(false);
    UpdateData(false);
    m_geoDatabase->GetEllipsoidValues(m_desEllipsoid, m_localValues);
}

void AdvCoordSysDlg::OnSelSrcElllipsoid() {
    SelEllipsoidDlg picker(this, this);
    picker.SetSelName(m_srcEllipsoid);
    if (picker.DoModal() != QDialog::Accepted)
        return;
    UpdateData(true); // what was typed stays
    const QString chosen = picker.GetSelName();
    // unlike the local ellipsoid, the same one asks nothing
    if (chosen.compare(m_srcEllipsoid, Qt::CaseInsensitive) != 0) {
        if (GetUi().MessageBox(this, LoadOrvString(StrId::EllipsoidChangedQuestion), QString(),
                               MsgButtons::YesNo) != MsgAnswer::Yes)
            return;
        SetDtfValueList(DtfValues{});
        m_dtfFurther = {0.0, 0.0};
        m_dtfOption = 0;
    }
    m_srcEllipsoid = chosen;
    SetDtfTitle(m_srcEllipsoid, m_desEllipsoid, true);
    SetNoDtfShow(false);
}
