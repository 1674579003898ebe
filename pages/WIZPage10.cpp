#include "pages/WIZPage10.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/GridSelDlg.h"
#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage10.h"
#include "wizard/GeoWizard.h"
#include "wizard/GeoidFiles.h"

namespace {

// The geoid model keys the wizard offers: 2 to 31 without those of this mask (8 to 12 are
// kept for stored systems only; 25 and 29 are shift models of the post correction).
constexpr int kFirstOfferedMethod = GeoidKey::Egm96;
constexpr unsigned kMethodsLeftOut = 0x22001f00;
constexpr int kMaskBits = 30; // the mask covers the indexes up to 29

bool leftOut(int index) {
    return index < kMaskBits && ((kMethodsLeftOut >> index) & 1u) != 0;
}

const QString kNoneEntry = QStringLiteral("--None--");

} // namespace

WIZPage10::WIZPage10(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage10"), StrId::TitleGeoidModel,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage10>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->methodCombo, &QComboBox::activated, this, &WIZPage10::OnSelChangeMethod);
    connect(m_ui->browseFile, &QPushButton::clicked, this, &WIZPage10::OnBrowseFile);
    connect(m_ui->chartDatumCombo, &QComboBox::activated, this, &WIZPage10::OnSelChangeChartDatum);
}

WIZPage10::~WIZPage10() = default;

void WIZPage10::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("fileEdit"), m_file);
}

bool WIZPage10::OnInitDialog() {
    WizardPage::OnInitDialog();
    m_ui->geoidPageInfo->setText(LoadOrvString(StrId::GeoidPageInfo));
    for (const wchar_t* chartDatum : ChartDatums)
        m_ui->chartDatumCombo->addItem(QString::fromWCharArray(chartDatum));
    FillMethodList();
    m_ui->methodCombo->setCurrentIndex(0);
    OnSelChangeMethod();
    return true;
}

void WIZPage10::FillMethodList() {
    QComboBox* combo = m_ui->methodCombo;
    combo->clear();
    for (int index = kFirstOfferedMethod; index < GeoidmodelTypeKeyCount; ++index)
        if (!leftOut(index))
            combo->addItem(GeoidFiles::MethodKey(index));
    combo->insertItem(0, kNoneEntry);
}

bool WIZPage10::OnSetActive() {
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
        QString method;
        staticData->GetGeoidMethod(method);
        if (method.isEmpty()) {
            // Nothing handed over: the page shows "--None--", as Next would hand over.
            m_ui->methodCombo->setCurrentIndex(0);
            OnSelChangeMethod();
        } else {
            staticData->GetGeoidFile(m_file);
            m_method = method;
            staticData->GetChartDatum(m_chartDatum);
            m_ui->methodCombo->setCurrentIndex(
                m_ui->methodCombo->findText(m_method, Qt::MatchFixedString));
            m_geoidOn = true;
            ShowFileButton();
            ShowChartDatumRow();
            UpdateData(false);
        }
    }
    return WizardPage::OnSetActive();
}

void WIZPage10::OnSelChangeMethod() {
    const int selected = m_ui->methodCombo->currentIndex();
    if (selected < 0)
        return;
    if (selected == 0) {
        m_method.clear();
        m_file.clear();
        m_chartDatum.clear();
        m_geoidOn = false;
    } else {
        const QString method = m_ui->methodCombo->itemText(selected);
        // the same method again keeps its file
        if (method != m_method) {
            m_file.clear();
            m_chartDatum.clear();
        }
        m_method = method;
        m_geoidOn = true;
    }
    ShowFileButton();
    ShowChartDatumRow();
    UpdateData(false);
}

void WIZPage10::ShowFileButton() {
    m_ui->browseFile->setEnabled(GeoidFiles::TakesModelFile(GeoidFiles::MethodIndex(m_method)));
}

void WIZPage10::ShowChartDatumRow() {
    const bool shown =
        GeoidFiles::MethodIndex(m_method) == GeoidKey::ChartDatum && !m_file.isEmpty();
    // a chart datum that is none of the list selects nothing
    m_ui->chartDatumCombo->setCurrentIndex(shown ? ChartDatumIndex(m_chartDatum) : ChartDatumNone);
    m_ui->chartDatumText->setVisible(shown);
    m_ui->chartDatumLabel->setVisible(shown);
    m_ui->chartDatumCombo->setVisible(shown);
}

void WIZPage10::OnBrowseFile() {
    const int index = GeoidFiles::MethodIndex(m_method);
    if (const GeoidFiles::FileDialogRule* rule = GeoidFiles::GeoidFileDialog(index)) {
        GeoidFiles::AskModelFile(this, *rule, m_file);
    } else {
        GridSelDlg picker(index, m_file, m_sheet);
        if (picker.DoModal() == QDialog::Accepted)
            m_file = picker.GetFile();
    }
    ShowChartDatumRow();
    UpdateData(false);
}

void WIZPage10::OnSelChangeChartDatum() {
    const int selected = m_ui->chartDatumCombo->currentIndex();
    m_chartDatum = selected >= 0 ? m_ui->chartDatumCombo->itemText(selected) : QString();
}

int WIZPage10::OnWizardNext() {
    UpdateData(true);
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
        if (m_geoidOn) {
            staticData->SetGeoidFile(m_file);
            staticData->SetGeoidMethod(m_method);
            staticData->SetChartDatum(m_chartDatum);
        } else {
            staticData->SetGeoidFile(QString());
            staticData->SetGeoidMethod(QString());
            staticData->SetChartDatum(QString());
        }
        staticData->SetGeoidEnabled(m_geoidOn);
    }
    m_sheet->SetGeoModStatu(m_geoidOn);
    return kMove;
}
