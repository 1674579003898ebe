// The "Geoid model" and "Post grid corrections" boxes of the editor. What the host gets back
// follows one rule: after a change, its value is emptied when the new value equals what the
// database holds for the system, and is the new value otherwise.
#include "editor/AdvCoordSysDlg.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/GridSelDlg.h"
#include "editor/EditorTexts.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_AdvCoordSysDlg.h"
#include "util/COrvString.h"
#include "wizard/GeoidFiles.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <iterator>

namespace {

QString Key(int index) {
    return GeoidFiles::MethodKey(index);
}

// Keys the editor's geoid list leaves out: the legacy models and what the post list offers.
bool NotOfferedAsGeoid(int key) {
    constexpr int kLeftOut[] = {GeoidKey::InclinedPlane, GeoidKey::Geoid99,
                                GeoidKey::Geoid03,       GeoidKey::AusGeoid09,
                                GeoidKey::Nkg2005,       GeoidKey::Ostn,
                                GeoidKey::Ntv2Shift,     GeoidKey::PolynomialCorrection};
    return std::find(std::begin(kLeftOut), std::end(kLeftOut), key) != std::end(kLeftOut);
}

// The post-correction methods in the order the editor lists them, after "--None--".
constexpr int kPostKeys[] = {GeoidKey::HeightReferenceSurface,
                             GeoidKey::LocalHeightShift,
                             GeoidKey::InclinedPlane,
                             GeoidKey::Ostn,
                             GeoidKey::Egm2008,
                             GeoidKey::TidalSurface,
                             GeoidKey::Ntv2Shift,
                             GeoidKey::PolynomialCorrection};

} // namespace

int AdvCoordSysDlg::GeoidKeyIndex(const QString& methodName, int from) const {
    const int index = GeoidFiles::MethodIndex(methodName);
    const bool isKey = methodName.compare(Key(index), Qt::CaseInsensitive) == 0;
    return isKey && index >= from ? index : -1;
}

void AdvCoordSysDlg::IniGeoidMdCombo(int startIndex) {
    QComboBox* list = m_ui->geoidMethodCombo;
    const QSignalBlocker quiet(list);
    list->clear();
    const QString keyText = m_geoDatabase->GetCoordSysGeoidKeys(m_groupName, m_systemName);
    const COrvString keys(keyText, QLatin1Char(','), true, true);
    auto listed = [&keys](const QString& key) {
        int position = -1;
        return keys.HasSubString(key, position);
    };
    for (int i = startIndex; i < GeoidmodelTypeKeyCount; ++i) {
        if (m_readOnly ? listed(Key(i)) : !NotOfferedAsGeoid(i))
            list->addItem(Key(i));
    }
    list->insertItem(0, EditorTexts::None());
    list->setCurrentIndex(-1); // nothing chosen yet
    m_geoidStartIndex = startIndex;
    OnSelChangeGeoidMethod();
    UpdateData(true);
}

void AdvCoordSysDlg::IniPostCorrctCombo() {
    QComboBox* list = m_ui->postMethodCombo;
    const QSignalBlocker quiet(list);
    list->clear();
    list->addItem(EditorTexts::None());
    for (int key : kPostKeys)
        list->addItem(Key(key));
    list->setCurrentIndex(0);
}

void AdvCoordSysDlg::EnableChartDatum(bool show) {
    m_ui->chartDatumApplyLabel->setVisible(show);
    m_ui->chartDatumLabel->setVisible(show);
    m_ui->chartDatumCombo->setVisible(show);
    if (!show) {
        const QSignalBlocker quiet(m_ui->chartDatumCombo);
        m_ui->chartDatumCombo->setCurrentIndex(ChartDatumNone);
    }
}

void AdvCoordSysDlg::SetManualGeoidCtrl(bool manual) {
    m_ui->separationLabel->setVisible(manual);
    m_ui->separationEdit->setVisible(manual);
    m_ui->geoidFileLabel->setVisible(!manual);
    m_ui->geoidFileEdit->setVisible(!manual);
    m_ui->geoidFileButton->setVisible(!manual);
}

void AdvCoordSysDlg::OnSelChangeGeoidMethod() {
    QComboBox* list = m_ui->geoidMethodCombo;
    if (list->currentIndex() < 0)
        return;
    const QString name = list->currentText();
    if (name != m_geoidMethodName) {
        // a file never stays with another method
        m_geoidFile.clear();
        m_callerGeoidFile.clear();
        m_callerChartDatum.clear();
        m_ui->geoidFileEdit->clear();
    }
    m_geoidMethodName = name;
    const int key = GeoidKeyIndex(name, m_geoidStartIndex);
    if (key < 0) {
        m_callerGeoidName = EditorTexts::None();
        m_callerGeoidFile.clear();
        m_callerChartDatum.clear();
        m_geoidInUse = false;
        m_ui->geoidFileButton->setEnabled(false);
        EnableChartDatum(false);
        return;
    }
    SetManualGeoidCtrl(key == GeoidKey::ManualSeparation);
    const bool stored = m_geoDatabase->SystemHasGeoidModel(m_groupName, m_systemName) &&
                        m_geoDatabase->GetGeoidModelName(m_groupName, m_systemName)
                                .compare(name, Qt::CaseInsensitive) == 0;
    m_callerGeoidName = stored ? QString() : name;
    m_geoidInUse = !name.isEmpty() && name != EditorTexts::None();
    if (GeoidFiles::TakesModelFile(key)) {
        m_ui->geoidFileButton->setEnabled(m_geoidInUse);
        m_ui->geoidFileEdit->setText(m_geoidFile);
    } else {
        m_ui->geoidFileButton->setEnabled(false);
        m_geoidFile.clear();
        m_ui->geoidFileEdit->clear();
    }
    EnableChartDatum(key == GeoidKey::ChartDatum && !m_geoidFile.isEmpty());
}

void AdvCoordSysDlg::OnSelectGridFile() {
    const int key = GeoidKeyIndex(m_geoidMethodName, m_geoidStartIndex);
    bool chosen = false;
    if (const GeoidFiles::FileDialogRule* rule = GeoidFiles::GeoidFileDialog(key)) {
        chosen = GeoidFiles::AskModelFile(this, *rule, m_geoidFile);
    } else {
        GridSelDlg picker(std::max(key, 0), m_geoidFile, this);
        if (picker.DoModal() == QDialog::Accepted) {
            m_geoidFile = picker.GetFile();
            chosen = true;
        }
    }
    if (chosen) {
        const bool stored =
            m_geoDatabase->SystemHasGeoidModel(m_groupName, m_systemName) &&
            m_geoDatabase->GetGeoidModelFile(m_groupName, m_systemName) == m_geoidFile;
        m_callerGeoidFile = stored ? QString() : m_geoidFile;
    }
    m_ui->geoidFileEdit->setText(m_geoidFile);
    // also after a cancelled dialog
    EnableChartDatum(key == GeoidKey::ChartDatum && !m_geoidFile.isEmpty());
}

void AdvCoordSysDlg::OnSelchangeChartDatum() {
    const QString datum = m_ui->chartDatumCombo->currentText();
    m_callerChartDatum =
        datum == m_geoDatabase->GetChartDatum(m_groupName, m_systemName) ? QString() : datum;
}

void AdvCoordSysDlg::ShowPostCorrctInfo() {
    QString storedName, storedFile;
    if (m_geoDatabase->SystemHasPostCorrection(m_groupName, m_systemName)) {
        double e = 0.0, n = 0.0, z = 0.0;
        m_translationOn = m_geoDatabase->GetPostTranslation(m_groupName, m_systemName, e, n, z);
        WriteTranslation(e, n, z);
        m_horAdjustOn = m_geoDatabase->HasPostHorAdjust(m_groupName, m_systemName);
        if (m_horAdjustOn)
            m_geoDatabase->GetPostHorAdjust(m_groupName, m_systemName, m_horAdjust[0],
                                            m_horAdjust[1], m_horAdjust[2], m_horAdjust[3]);
        m_vertAdjustOn = m_geoDatabase->HasPostVertAdjust(m_groupName, m_systemName);
        if (m_vertAdjustOn)
            m_geoDatabase->GetPostVertAdjust(m_groupName, m_systemName, m_vertAdjust[0],
                                             m_vertAdjust[1], m_vertAdjust[2], m_vertAdjust[3]);
        storedName = m_geoDatabase->GetPostModelName(m_groupName, m_systemName);
        storedFile = m_geoDatabase->GetPostModelFile(m_groupName, m_systemName);
        if (storedName == EditorTexts::StoredOstnName()) {
            storedName = Key(GeoidKey::Ostn);
            storedFile = m_geoDatabase->GetGeoidModelFile(m_groupName, m_systemName);
        }
    }
    m_postMethodName = storedName;
    m_postFile = storedFile;
    if (!m_callerPostName.isEmpty() && m_callerPostName != EditorTexts::None())
        m_postMethodName = m_callerPostName;
    if (m_postMethodName == EditorTexts::None() || m_callerPostName == EditorTexts::None())
        m_postFile.clear();
    else if (!m_callerPostFile.isEmpty())
        m_postFile = m_callerPostFile;

    QComboBox* list = m_ui->postMethodCombo;
    {
        const QSignalBlocker quiet(list);
        const int found = list->findText(m_postMethodName, Qt::MatchExactly);
        if (found >= 0)
            list->setCurrentIndex(found); // an empty or unknown name leaves "--None--"
    }
    UpdateData(false);
    OnSelchangePostcombo();
    SetPostRadioStatu(m_translationOn);
    SetPostHorAdjustStatu(m_horAdjustOn);
    SetPostVertAdjustStatu(m_vertAdjustOn);
}

void AdvCoordSysDlg::OnSelchangePostcombo() {
    m_postMethodName = m_ui->postMethodCombo->currentText();
    const bool stored = m_geoDatabase->SystemHasPostCorrection(m_groupName, m_systemName) &&
                        m_geoDatabase->GetPostModelName(m_groupName, m_systemName)
                                .compare(m_postMethodName, Qt::CaseInsensitive) == 0;
    m_callerPostName = stored ? QString() : m_postMethodName;
    if (m_postMethodName == EditorTexts::None())
        m_postFile.clear();
    const int key = GeoidKeyIndex(m_postMethodName);
    const bool withFile = key == GeoidKey::Ostn || key == GeoidKey::Ntv2Shift;
    m_ui->postFileLabel->setEnabled(withFile);
    m_ui->postFileEdit->setEnabled(withFile && !m_readOnly);
    m_ui->postFileButton->setEnabled(withFile && !m_readOnly);
    if (!withFile)
        m_postFile.clear();
    m_ui->postFileEdit->setText(m_postFile);
}

void AdvCoordSysDlg::OnAdvPostFileButton() {
    const GeoidFiles::FileDialogRule* rule =
        GeoidFiles::EditorPostFileDialog(GeoidKeyIndex(m_postMethodName));
    if (!rule || !GeoidFiles::AskModelFile(this, *rule, m_postFile))
        return;
    m_callerPostFile = m_postFile == m_geoDatabase->GetPostModelFile(m_groupName, m_systemName)
                           ? QString()
                           : m_postFile;
    m_ui->postFileEdit->setText(m_postFile);
}

void AdvCoordSysDlg::SetPostRadioStatu(bool enable) {
    for (QWidget* w : {static_cast<QWidget*>(m_ui->translationELabel),
                       static_cast<QWidget*>(m_ui->translationEEdit),
                       static_cast<QWidget*>(m_ui->translationNLabel),
                       static_cast<QWidget*>(m_ui->translationNEdit),
                       static_cast<QWidget*>(m_ui->translationZLabel),
                       static_cast<QWidget*>(m_ui->translationZEdit)})
        w->setEnabled(enable);
}

void AdvCoordSysDlg::SetPostHorAdjustStatu(bool enable) {
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->horOriginELabel), static_cast<QWidget*>(m_ui->horOriginEEdit),
          static_cast<QWidget*>(m_ui->horOriginNLabel), static_cast<QWidget*>(m_ui->horOriginNEdit),
          static_cast<QWidget*>(m_ui->horRotationLabel),
          static_cast<QWidget*>(m_ui->horRotationEdit), static_cast<QWidget*>(m_ui->horScaleLabel),
          static_cast<QWidget*>(m_ui->horScaleEdit)})
        w->setEnabled(enable);
}

void AdvCoordSysDlg::SetPostVertAdjustStatu(bool enable) {
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->vertOriginELabel),
          static_cast<QWidget*>(m_ui->vertOriginEEdit),
          static_cast<QWidget*>(m_ui->vertOriginNLabel),
          static_cast<QWidget*>(m_ui->vertOriginNEdit),
          static_cast<QWidget*>(m_ui->vertSlopeELabel), static_cast<QWidget*>(m_ui->vertSlopeEEdit),
          static_cast<QWidget*>(m_ui->vertSlopeNLabel),
          static_cast<QWidget*>(m_ui->vertSlopeNEdit)})
        w->setEnabled(enable);
}

void AdvCoordSysDlg::OnAdvPostCheck() {
    m_translationOn = !m_translationOn;
    UpdateData(true);
    SetPostRadioStatu(m_translationOn);
}

void AdvCoordSysDlg::OnAdvHorAdjustCheck() {
    m_horAdjustOn = !m_horAdjustOn;
    UpdateData(true);
    SetPostHorAdjustStatu(m_horAdjustOn);
}

void AdvCoordSysDlg::OnAdvVertAdjustCheck() {
    m_vertAdjustOn = !m_vertAdjustOn;
    UpdateData(true);
    SetPostVertAdjustStatu(m_vertAdjustOn);
}

bool AdvCoordSysDlg::ReadTranslation(double& e, double& n, double& z, bool report) {
    QLineEdit* edits[] = {m_ui->translationEEdit, m_ui->translationNEdit, m_ui->translationZEdit};
    double* values[] = {&e, &n, &z};
    for (int i = 0; i < 3; ++i) {
        double value = 0.0;
        // an untouched text keeps the value it shows rounded, as the exchanged numbers do
        if (edits[i]->text() == QString::asprintf("%f", m_translationShown[i])) {
            *values[i] = m_translationShown[i];
            continue;
        }
        if (!ParseNumber(edits[i]->text(), value)) {
            if (report) {
                GetUi().MessageBox(this, DataExchangeNumberMessage(), QString(), MsgButtons::Ok);
                edits[i]->setFocus();
                edits[i]->selectAll();
            }
            return false;
        }
        *values[i] = value;
    }
    return true;
}

void AdvCoordSysDlg::WriteTranslation(double e, double n, double z) {
    m_translationShown = {e, n, z};
    m_ui->translationEEdit->setText(QString::asprintf("%f", e));
    m_ui->translationNEdit->setText(QString::asprintf("%f", n));
    m_ui->translationZEdit->setText(QString::asprintf("%f", z));
}
