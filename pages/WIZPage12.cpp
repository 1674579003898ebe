#include "pages/WIZPage12.h"

#include "api/OrvGeoStaticDataBase.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage12.h"
#include "wizard/CalculatorProgram.h"
#include "wizard/GeoWizard.h"
#include "wizard/WzdUtility.h"

WIZPage12::WIZPage12(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage12"), StrId::TitleOverview,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_FINISH),
      m_ui(std::make_unique<Ui::WIZPage12>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->terrameter, &QPushButton::clicked, this, &WIZPage12::OnTerrameter);
}

WIZPage12::~WIZPage12() = default;

void WIZPage12::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
}

bool WIZPage12::OnSetActive() {
    const bool active = WizardPage::OnSetActive(); // Back and Finish
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic())
        staticData->GetOverviewText(m_overviewText);
    // The overview is rich text; the data exchange moves plain text only.
    m_ui->overviewText->setHtml(m_overviewText);
    return active;
}

QString WIZPage12::CalculatorParameters(const QString& group, const QString& system,
                                        const QString& dataSource) {
    QString parameters = QStringLiteral(" -G:\"") + group + QStringLiteral("\" -S:\"") + system +
                         QStringLiteral("\"");
    if (!dataSource.isEmpty())
        parameters += QStringLiteral(" --data \"") + dataSource + QStringLiteral("\"");
    return parameters;
}

bool WIZPage12::SaveSystem() {
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData)
        return false;
    if (staticData->SaveCoordSys())
        return true;
    // The library rolled the save back: nothing stored changed, and the wizard stays open
    // so that the definition is not lost.
    GetUi().MessageBox(this, LoadOrvString(StrId::SaveSystemFailed).arg(staticData->LastError()),
                       QString(), MsgButtons::Ok);
    return false;
}

bool WIZPage12::OnWizardFinish() {
    if (!SaveSystem())
        return false;
    // The caller reads the names the static data saved under, not the pages' fields.
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    QString group, system;
    m_sheet->SetGroupName(staticData->GetAssignedGroupName(group));
    m_sheet->SetSystemName(staticData->GetAssignedSystemName(system));
    return WizardPage::OnWizardFinish();
}

void WIZPage12::OnTerrameter() {
    WzdUtility utility;
    QString dataFolder;
    utility.GetCommonFolders(dataFolder); // the program folder, whatever ORV.ini says
    const QString folder = utility.GetProgramFolder();
    const QString program = CalculatorProgram::ProgramFile(CalculatorProgram::Key(), folder);

    // The calculator reads the system from the database: it is saved first. A refused save
    // starts nothing, so the calculator never shows an older definition.
    if (!SaveSystem())
        return;
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    QString group, system;
    staticData->GetAssignedGroupName(group);
    staticData->GetAssignedSystemName(system);
    if (!GetUi().StartProgram(program, CalculatorParameters(group, system, m_sheet->GetDllType()),
                              folder)) {
        GetUi().Beep();
        GetUi().MessageBox(this, LoadOrvString(StrId::StartCalculatorFailed), QString(),
                           MsgButtons::Ok);
    }
}
