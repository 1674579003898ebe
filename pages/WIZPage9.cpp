#include "pages/WIZPage9.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/CMaskEdit.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage9.h"
#include "util/UtmZones.h"
#include "wizard/GeoWizard.h"
#include "wizard/UtmRows.h"

#include <QSignalBlocker>

namespace {

const QString kMeters = QStringLiteral("Meters");

} // namespace

WIZPage9::WIZPage9(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage9"), StrId::TitlePrjParameters,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage9>()) {
    m_ui->setupUi(ContentArea());
    m_labels = {m_ui->paramLabel1, m_ui->paramLabel2, m_ui->paramLabel3,
                m_ui->paramLabel4, m_ui->paramLabel5, m_ui->paramLabel6,
                m_ui->paramLabel7, m_ui->paramLabel8, m_ui->paramLabel9};
    m_edits = {m_ui->paramEdit1, m_ui->paramEdit2, m_ui->paramEdit3,
               m_ui->paramEdit4, m_ui->paramEdit5, m_ui->paramEdit6,
               m_ui->paramEdit7, m_ui->paramEdit8, m_ui->paramEdit9};
    m_utility.ResetParameterRows(m_labels, m_edits, WzdUtility::kMaxRows);
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->zoneLabel), static_cast<QWidget*>(m_ui->zoneCombo),
          static_cast<QWidget*>(m_ui->hemisphereLabel),
          static_cast<QWidget*>(m_ui->hemisphereCombo)})
        w->hide();
    connect(m_ui->methodCombo, &QComboBox::activated, this, &WIZPage9::OnSelChangeMethod);
    connect(m_ui->zoneCombo, &QComboBox::activated, this, &WIZPage9::OnSelChangeZone);
    connect(m_ui->hemisphereCombo, &QComboBox::activated, this, &WIZPage9::OnSelChangeHemisphere);
}

WIZPage9::~WIZPage9() = default;

void WIZPage9::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("nameEdit"), m_projectionName);
    DDX_Text(pDX, QStringLiteral("unitEdit"), m_unitText);
}

int WIZPage9::MethodId() const {
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    return staticData ? staticData->GetPrjMethodId(m_methodName) : -1;
}

bool WIZPage9::OnInitDialog() {
    WizardPage::OnInitDialog();
    FillLists();
    return true;
}

void WIZPage9::FillLists() {
    QStringList methods;
    {
        const QSignalBlocker quiet(m_ui->methodCombo);
        m_utility.FillPrjMethodList(m_sheet->GetGeoStatic(), m_ui->methodCombo, methods);
        m_ui->methodCombo->setCurrentIndex(m_methodIndex < methods.size() ? m_methodIndex : -1);
    }
    m_methodName = m_ui->methodCombo->currentText();

    UtmRows::FillZoneList(m_ui->zoneCombo);
    UtmRows::FillHemisphereList(m_ui->hemisphereCombo);
    m_hemisphereText = m_ui->hemisphereCombo->currentText();
}

void WIZPage9::LayOutRows(bool restore) {
    for (CMaskEdit* edit : m_edits)
        edit->setEnabled(true);
    const int methodId = MethodId();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    m_utmMode = staticData && staticData->IsUtmMethod(methodId);
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->zoneLabel), static_cast<QWidget*>(m_ui->zoneCombo),
          static_cast<QWidget*>(m_ui->hemisphereLabel),
          static_cast<QWidget*>(m_ui->hemisphereCombo)})
        w->setVisible(m_utmMode);

    m_paramNames.clear();
    m_paramValues.clear();
    m_paramTypes.clear();
    PrjParamBlock block;
    if (restore || m_utmMode) {
        if (database)
            database->GetProjectionParameters(restore ? m_projectionName
                                                      : UtmRows::TemplateProjection(),
                                              block, m_paramValues, m_paramNames, m_paramTypes);
    } else {
        // the method's own parameters with their defaults
        WzdUtility::MethodDefaultParameters(m_methodName, m_paramNames, m_paramValues,
                                            m_paramTypes);
    }
    m_usedRows =
        m_utility.LayoutParameterRows(m_labels, m_edits, m_paramNames, m_paramValues, m_paramTypes);
    if (m_utmMode) {
        // only the lists change a UTM projection
        UtmRows::SelectZoneAndHemisphere(m_paramNames, m_paramValues, m_ui->zoneCombo,
                                         m_ui->hemisphereCombo, m_zoneText, m_hemisphereText);
        for (CMaskEdit* edit : m_edits)
            edit->setEnabled(false);
        m_usedRows = UtmRows::RowCount;
    }
    m_storedRowTexts.clear();
    if (restore)
        for (int row = 0; row < m_usedRows; ++row)
            m_storedRowTexts << m_edits[row]->text();
}

void WIZPage9::InitialValues() {
    const unsigned option = m_sheet->GetPrjOption();
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    const bool fromStored = option == 0 || (option == 1 && m_sheet->GetPrjFromoldPrj());
    if (option != 0 && option != 1)
        return;
    if (fromStored) {
        m_projectionName = m_sheet->GetPrePrjName();
        QString method;
        if (database)
            database->GetProjectionMethodName(method, m_projectionName);
        m_methodName = method;
        m_initialMethodName = method;
    } else {
        m_initialMethodName.clear();
        m_methodName = m_ui->methodCombo->currentText();
    }
    {
        const QSignalBlocker quiet(m_ui->methodCombo);
        m_ui->methodCombo->setCurrentIndex(
            m_ui->methodCombo->findText(m_methodName, Qt::MatchFixedString));
        m_methodIndex = m_ui->methodCombo->currentIndex();
    }
    LayOutRows(fromStored);
    if (option == 1) {
        QString system;
        if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic())
            staticData->GetAssignedSystemName(system);
        m_projectionName = system + LoadOrvString(StrId::PrjNameSuffix);
    }
}

bool WIZPage9::OnSetActive() {
    // Initialised whenever the projection pages changed, and at the first visit in any case
    // (a new projection not based on a stored one reaches this page with the flag already
    // set by the choice page).
    if (!m_sheet->GetPrjInit() || !m_filledOnce) {
        InitialValues();
        m_sheet->SetInitPrj(true);
        m_filledOnce = true;
    }
    m_unitText = m_sheet->GetUnit();
    UpdateData(false);
    return WizardPage::OnSetActive();
}

bool WIZPage9::CheckUnit() {
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData || staticData->IsMethodUnitFree(MethodId()) ||
        m_sheet->GetUnit().compare(kMeters, Qt::CaseInsensitive) == 0)
        return true;
    GetUi().MessageBox(this, LoadOrvString(StrId::PrjUnitFixedSelectAnother), QString(),
                       MsgButtons::Ok);
    return false;
}

void WIZPage9::OnSelChangeMethod() {
    UpdateData(true);
    m_methodIndex = m_ui->methodCombo->currentIndex();
    m_methodName = m_ui->methodCombo->currentText();
    CheckUnit();
    // the method the page started with gets its stored values back
    LayOutRows(!m_initialMethodName.isEmpty() &&
               m_methodName.compare(m_initialMethodName, Qt::CaseInsensitive) == 0);
    UpdateData(false);
}

void WIZPage9::OnSelChangeZone() {
    if (!UtmRows::CentralMeridianOfZone(m_ui->zoneCombo->currentText(), m_centralMeridian))
        return;
    m_zoneText = m_ui->zoneCombo->currentText();
    WzdUtility::ShowRowText(m_edits[UtmRows::CentralMeridianRow],
                            WzdUtility::FormatLongitude(m_centralMeridian));
}

void WIZPage9::OnSelChangeHemisphere() {
    m_hemisphereText = m_ui->hemisphereCombo->currentText();
    m_falseNorthing = UtmZones::FalseNorthing(m_hemisphereText);
    WzdUtility::ShowRowText(m_edits[UtmRows::FalseNorthingRow],
                            UtmRows::FalseNorthingText(m_falseNorthing));
}

bool WIZPage9::RowsChanged() {
    for (int row = 0; row < m_usedRows && row < m_storedRowTexts.size(); ++row)
        if (m_edits[row]->text() != m_storedRowTexts[row])
            return true;
    return false;
}

bool WIZPage9::CheckName() {
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (!database)
        return true;
    const QString caption = LoadOrvString(StrId::PrjNameProblemCaption);
    const unsigned option = m_sheet->GetPrjOption();
    if (option == 0) {
        if (!RowsChanged())
            return true;
        if (database->IsPrjOfType(m_projectionName, GEODB_SYSTEM)) {
            GetUi().MessageBox(this, LoadOrvString(StrId::PrjPredefinedChanged), caption,
                               MsgButtons::Ok);
            m_ui->nameEdit->setFocus();
            return false;
        }
        // The page stays whatever the answer; No also puts the focus into the name.
        if (GetUi().MessageBox(this, LoadOrvString(StrId::PrjUserDefinedChanged), caption,
                               MsgButtons::YesNo) == MsgAnswer::No)
            m_ui->nameEdit->setFocus();
        return false;
    }
    if (option == 1 && database->IsPrjOfType(m_projectionName, GEODB_ALL)) {
        GetUi().MessageBox(this, LoadOrvString(StrId::NameExistsEnterNew), caption, MsgButtons::Ok);
        m_ui->nameEdit->setFocus();
        return false;
    }
    return true;
}

void WIZPage9::HandOver() {
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    QList<double> numbers;
    if (!staticData)
        return;
    // the texts of the rows as shown; the numbers read from them
    m_utility.ReadParameterRows(m_edits, numbers, this);
    PrjParamBlock block;
    QStringList values;
    m_utility.CollectParameters(m_edits, numbers, m_paramNames, m_paramValues, m_zoneText,
                                m_hemisphereText, block, values);
    staticData->SetProjectionMethod(m_methodName);
    staticData->SetProjectionName(m_projectionName, static_cast<short>(MethodId()));
    if (m_utmMode) {
        staticData->SetUtmMode(true);
        staticData->SetUtmZoneText(m_zoneText);
        staticData->SetUtmHemisphereText(m_hemisphereText);
    }
    staticData->SetProjectionParameters(block, values, m_paramNames, m_paramTypes);
}

int WIZPage9::OnWizardNext() {
    UpdateData(true);
    if (!CheckName() || !CheckUnit())
        return kStay;
    QList<double> numbers;
    // a row that is no number, or a scale factor not bigger than 0.8, keeps the page
    if (!m_utility.ReadParameterRows(m_edits, numbers, this))
        return kStay;
    HandOver();
    return kMove;
}
