#include "pages/WIZPage13.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoStaticDataBase.h"
#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage13.h"
#include "wizard/GeoWizard.h"
#include "wizard/GeoidFiles.h"

#include <QLocale>

#include <initializer_list>

namespace {

const QString kNoneEntry = QStringLiteral("--None--");

// The post correction methods, in the order the list offers them after "--None--".
constexpr int kPostMethods[] = {
    GeoidKey::HeightReferenceSurface,
    GeoidKey::LocalHeightShift,
    GeoidKey::InclinedPlane,
    GeoidKey::Dvr90,
    GeoidKey::Ostn,
    GeoidKey::Egm2008,
    GeoidKey::TidalSurface,
    GeoidKey::Ntv2Shift,
    GeoidKey::PolynomialCorrection,
};

bool isKey(const QString& method, int index) {
    return method.compare(GeoidFiles::MethodKey(index), Qt::CaseInsensitive) == 0;
}

// An offset as a plain decimal number: as many digits as it takes, never an exponent. A text
// that is no number is refused only when required; otherwise the value stays as it was.
void exchangeOffset(DataExchange* pDX, const QString& id, double& value, bool required) {
    auto* edit = pDX->Control<QLineEdit>(id);
    if (!edit)
        return;
    if (!pDX->m_bSaveAndValidate) {
        const QString text = QString::number(value, 'f', QLocale::FloatingPointShortest);
        if (edit->text() != text)
            edit->setText(text);
        return;
    }
    double read = 0.0;
    if (ParseNumber(edit->text(), read))
        value = read;
    else if (required)
        pDX->Fail(edit, DataExchangeNumberMessage());
}

} // namespace

WIZPage13::WIZPage13(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage13"), StrId::TitlePostCorrection,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage13>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->applyPostCorrection, &QCheckBox::clicked, this,
            &WIZPage13::OnApplyPostCorrection);
    connect(m_ui->methodCombo, &QComboBox::activated, this, &WIZPage13::OnSelChangeMethod);
    connect(m_ui->browseFile, &QPushButton::clicked, this, &WIZPage13::OnBrowseFile);
}

WIZPage13::~WIZPage13() = default;

void WIZPage13::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    // the box first: the offsets are only required while it is checked
    DDX_bCheck(pDX, QStringLiteral("applyPostCorrection"), m_apply);
    exchangeOffset(pDX, QStringLiteral("eastingEdit"), m_easting, m_apply);
    exchangeOffset(pDX, QStringLiteral("northingEdit"), m_northing, m_apply);
    exchangeOffset(pDX, QStringLiteral("zEdit"), m_z, m_apply);
    DDX_Text(pDX, QStringLiteral("fileEdit"), m_file);
    if (pDX->m_bSaveAndValidate)
        DDX_CBString(pDX, QStringLiteral("methodCombo"), m_method);
    else
        DDX_Text(pDX, QStringLiteral("unitText"), m_unit);
}

bool WIZPage13::OnInitDialog() {
    WizardPage::OnInitDialog();
    m_ui->postPageInfo->setText(LoadOrvString(StrId::PostPageInfo));
    FillMethodList();
    m_ui->methodCombo->setCurrentIndex(0);
    m_method = m_ui->methodCombo->currentText();
    UpdateData(false);
    return true;
}

void WIZPage13::FillMethodList() {
    QComboBox* combo = m_ui->methodCombo;
    combo->clear();
    combo->addItem(kNoneEntry);
    for (const int index : kPostMethods)
        combo->addItem(GeoidFiles::MethodKey(index));
}

bool WIZPage13::OnSetActive() {
    OnApplyPostCorrection();
    Reload();
    return WizardPage::OnSetActive();
}

void WIZPage13::OnApplyPostCorrection() {
    // An offset that is no number keeps the page as it is (the person was told).
    if (!UpdateData(true))
        return;
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic())
        staticData->GetSystemUnit(m_unit);
    UpdateData(false);

    const std::initializer_list<QWidget*> followApply = {
        m_ui->eastingLabel, m_ui->eastingEdit, m_ui->northingLabel, m_ui->northingEdit,
        m_ui->zLabel,       m_ui->zEdit,       m_ui->unitLabel,     m_ui->unitText,
        m_ui->methodLabel,  m_ui->methodCombo};
    for (QWidget* control : followApply)
        control->setEnabled(m_apply);
    // Whatever the box says: only a later method change enables "..." again.
    m_ui->fileLabel->setEnabled(false);
    m_ui->fileEdit->setEnabled(false);
    m_ui->browseFile->setEnabled(false);

    m_sheet->SetPosModStatu(m_apply);
}

void WIZPage13::Reload() {
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData || !staticData->IsPostTranslationOn() || !m_sheet->GetPosModStatu())
        return;
    staticData->GetPostTranslation(m_easting, m_northing, m_z);
    staticData->GetPostModelFile(m_file);
    QString method;
    staticData->GetPostModelName(method);
    const int found =
        method.isEmpty() ? 0 : m_ui->methodCombo->findText(method, Qt::MatchFixedString);
    // a method the list does not offer shows as "--None--"
    m_ui->methodCombo->setCurrentIndex(found >= 0 ? found : 0);
    m_method = m_ui->methodCombo->currentText();
    m_apply = true;
    UpdateData(false);
    OnApplyPostCorrection();
}

void WIZPage13::OnSelChangeMethod() {
    const QString method = m_ui->methodCombo->currentText();
    m_ui->browseFile->setEnabled(isKey(method, GeoidKey::Ostn) ||
                                 isKey(method, GeoidKey::Ntv2Shift));
}

void WIZPage13::OnBrowseFile() {
    const QString method = m_ui->methodCombo->currentText();
    const GeoidFiles::FileDialogRule* rule = nullptr;
    if (isKey(method, GeoidKey::Ostn))
        rule = GeoidFiles::PostFileDialog(GeoidKey::Ostn);
    else if (isKey(method, GeoidKey::Ntv2Shift))
        rule = GeoidFiles::PostFileDialog(GeoidKey::Ntv2Shift);
    // Only the file edit is touched: the offsets may hold what is being typed.
    if (rule && GeoidFiles::AskModelFile(this, *rule, m_file))
        m_ui->fileEdit->setText(m_file);
}

int WIZPage13::HandOver() {
    // refused: the message was shown, the page and its texts stay as they are
    if (!UpdateData(true))
        return kStay;
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData)
        return kMove;
    bool on = false;
    if (m_apply) {
        const QString method = m_method == kNoneEntry ? QString() : m_method;
        staticData->SetPostTranslation(m_easting, m_northing, m_z);
        staticData->SetPostModelFile(m_file);
        staticData->SetPostModelName(method);
        on = true;
    } else {
        staticData->SetPostTranslation(0.0, 0.0, 0.0);
        staticData->SetPostModelFile(QString());
        staticData->SetPostModelName(QString());
        m_apply = false;
        UpdateData(false);
    }
    staticData->SetPostTranslationOn(on);
    return kMove;
}

int WIZPage13::OnWizardBack() {
    return HandOver();
}

int WIZPage13::OnWizardNext() {
    return HandOver();
}
