#include "pages/WIZPage6.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NameTreeModel.h"
#include "dialogs/NewUnitDlg.h"
#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage6.h"
#include "wizard/GeoWizard.h"

#include <QSignalBlocker>

namespace {
// The unit selected when neither the sheet nor the page names one.
const QString kFallbackUnit = QStringLiteral("Meters");
} // namespace

WIZPage6::WIZPage6(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage6"), StrId::TitleUnit,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage6>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->unitCombo, &QComboBox::activated, this, &WIZPage6::OnSelChangeUnit);
    connect(m_ui->newUnit, &QPushButton::clicked, this, &WIZPage6::OnNewUnit);
}

WIZPage6::~WIZPage6() = default;

void WIZPage6::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_CBString(pDX, QStringLiteral("unitCombo"), m_unitName);
    // the information block only shows what the page computed
    if (!pDX->m_bSaveAndValidate)
        DDX_Text(pDX, QStringLiteral("unitInfo"), m_information);
}

bool WIZPage6::OnInitDialog() {
    WizardPage::OnInitDialog();
    m_ui->unitPageInfo->setText(LoadOrvString(StrId::UnitPageInfo));
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (!database)
        return false;
    database->GetUnitNames(m_unitNames);
    FillUnitCombo();
    return true;
}

QString WIZPage6::UnitInformation(const QString& name) const {
    QString description;
    m_sheet->GetGeoDatabase()->GetUnitDescription(description, name);
    const qsizetype lineFeed = description.indexOf(QLatin1Char('\n'));
    return lineFeed >= 0 ? description.mid(lineFeed + 1) : QString();
}

void WIZPage6::HandOver(double metersPerUnit, const QString& name, const QString& suffix) {
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
        staticData->SetUnitFactor(metersPerUnit);
        staticData->SetUnitName(name, QString());
        staticData->SetUnitSuffix(suffix);
    }
}

void WIZPage6::SelectUnit(const QString& name) {
    const int index = m_ui->unitCombo->findText(name, Qt::MatchFixedString);
    const QSignalBlocker quiet(m_ui->unitCombo);
    m_ui->unitCombo->setCurrentIndex(index);
}

void WIZPage6::FillUnitCombo() {
    QComboBox* combo = m_ui->unitCombo;
    m_lastIndex = -1;
    {
        const QSignalBlocker quiet(combo);
        combo->clear();
    }
    UpdateData(false);
    // The list is sorted; a unit created here is appended after the sorted ones.
    QStringList sorted = m_unitNames;
    if (!m_createdUnitName.isEmpty())
        sorted.removeAll(m_createdUnitName);
    SortNamesNaturally(sorted);
    {
        const QSignalBlocker quiet(combo);
        combo->addItems(sorted);
    }
    SelectUnit(m_unitName.isEmpty() ? kFallbackUnit : m_unitName);
    if (!m_createdUnitName.isEmpty()) {
        const QSignalBlocker quiet(combo);
        combo->addItem(m_createdUnitName);
    }
    m_currentIndex = combo->currentIndex();
    if (m_lastIndex >= 0 && m_lastIndex < combo->count())
        combo->setCurrentIndex(m_lastIndex);
    else
        m_lastIndex = m_currentIndex;
    m_unitName = combo->currentText();

    QString suffix, description;
    double metersPerUnit = 0.0;
    int category = 0;
    if (m_sheet->GetGeoDatabase()->GetUnitDefinition(m_unitName, suffix, metersPerUnit, category,
                                                     description)) {
        HandOver(metersPerUnit, m_unitName, suffix);
        m_metersPerUnit = metersPerUnit;
        m_unitSuffix = suffix;
        m_information = UnitInformation(m_unitName);
    }
    UpdateData(true);
    UpdateData(false);
}

void WIZPage6::ApplySelection() {
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    QComboBox* combo = m_ui->unitCombo;
    if (!database || !m_sheet->GetGeoStatic() || combo->currentIndex() < 0)
        return;
    m_lastIndex = combo->currentIndex();
    m_unitName = combo->currentText();
    QString suffix, description;
    double metersPerUnit = 0.0;
    int category = 0;
    if (database->GetUnitDefinition(m_unitName, suffix, metersPerUnit, category, description)) {
        // the page's own factor and suffix stay those of the unit it was filled with
        HandOver(metersPerUnit, m_unitName, suffix);
        m_information = UnitInformation(m_unitName);
    } else {
        HandOver(m_metersPerUnit, m_createdUnitName, m_unitSuffix);
        m_information = m_sheet->DumpUnitInfoText();
    }
    UpdateData(false);
    m_sheet->SetInitUnit(true);
}

bool WIZPage6::OnSetActive() {
    if (m_sheet->GetGeoDatabase() && m_sheet->GetGeoStatic()) {
        if (!m_sheet->GetDefaultUnit().isEmpty())
            m_unitName = m_sheet->GetDefaultUnit();
        SelectUnit(m_unitName);
        ApplySelection();
        UpdateData(true);
        m_sheet->SetInitUnit(true);
    }
    return WizardPage::OnSetActive();
}

void WIZPage6::OnSelChangeUnit() {
    ApplySelection();
}

void WIZPage6::OnNewUnit() {
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData)
        return;
    NewUnitDlg dialog(m_sheet);
    dialog.SetName(QString());
    dialog.SetMetersPerUnit(0.0);
    dialog.SetNameSuffix(QString());
    if (dialog.DoModal() != QDialog::Accepted)
        return;
    HandOver(dialog.GetMetersPerUnit(), dialog.GetName(), dialog.GetNameSuffix());
    m_createdUnitName = dialog.GetName();
    m_unitSuffix = dialog.GetNameSuffix();
    m_metersPerUnit = dialog.GetMetersPerUnit();
    {
        const QSignalBlocker quiet(m_ui->unitCombo);
        m_ui->unitCombo->addItem(m_createdUnitName);
    }
    m_unitNames.append(m_createdUnitName);
    m_unitName = m_createdUnitName;
    SelectUnit(m_unitName);
    m_information = m_sheet->DumpUnitInfoText();
    ApplySelection();
    UpdateData(false);
}

int WIZPage6::OnWizardNext() {
    m_sheet->SetUnit(m_unitName);
    HandOver(m_metersPerUnit, m_unitName, m_unitSuffix);
    return kMove;
}
