#include "pages/WIZPage5.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage5.h"
#include "wizard/GeoWizard.h"
#include "wizard/WzdUtility.h"

namespace {

constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;

// The edits, in the order of the values: shifts, rotations, scale, their yearly rates, the
// epoch.
const char* const kEditNames[WIZPage5::kValueCount] = {
    "shiftX",        "shiftY",        "shiftZ",        "rotationX",  "rotationY",
    "rotationZ",     "scale",         "rateShiftX",    "rateShiftY", "rateShiftZ",
    "rateRotationX", "rateRotationY", "rateRotationZ", "rateScale",  "epoch"};
// The labels: the one at position i is shown while more than i values are.
const char* const kLabelNames[WIZPage5::kLabelCount] = {
    "shiftXLabel",    "shiftYLabel",    "shiftZLabel", "scaleLabel", "rotationXLabel",
    "rotationYLabel", "rotationZLabel", "rateHeading", "epochLabel"};

constexpr int kParameterCount = 7; // shifts, rotations, scale
constexpr int kEpochPosition = 14;
constexpr int kParameterDecimals = 6;
constexpr int kRateDecimals = 8;
constexpr int kEpochDecimals = 3;

bool IsRotation(int position) {
    const int parameter = position % kParameterCount;
    return position < kEpochPosition && parameter >= 3 && parameter <= 5;
}

int DecimalsOf(int position) {
    if (position < kParameterCount)
        return kParameterDecimals;
    return position < kEpochPosition ? kRateDecimals : kEpochDecimals;
}

} // namespace

WIZPage5::WIZPage5(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage5"), StrId::TitleDtfParameters, kBackNext),
      m_ui(std::make_unique<Ui::WIZPage5>()) {
    m_ui->setupUi(ContentArea());
    for (int i = 0; i < kValueCount; ++i)
        m_edits[i] = ContentArea()->findChild<QLineEdit*>(QLatin1String(kEditNames[i]));
    for (int i = 0; i < kLabelCount; ++i)
        m_labels[i] = ContentArea()->findChild<QLabel*>(QLatin1String(kLabelNames[i]));
    connect(m_ui->method, &QComboBox::activated, this, &WIZPage5::OnSelchangeMethod);
    connect(m_ui->name, &QLineEdit::textChanged, this, &WIZPage5::OnChangeName);
}

WIZPage5::~WIZPage5() = default;

void WIZPage5::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("name"), m_name);
    DDX_Text(pDX, QStringLiteral("description"), m_description);
    for (int i = 0; i < kValueCount; ++i)
        DDX_FmtDouble(pDX, QLatin1String(kEditNames[i]), m_values[i],
                      IsRotation(i) ? DDX_FORMAT_ROTATION : DDX_FORMAT_PLAIN, DecimalsOf(i));
}

bool WIZPage5::OnInitDialog() {
    WizardPage::OnInitDialog();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData) {
        InitFields();
        return true;
    }
    WzdUtility().FillMethodList(staticData, m_ui->method);
    m_methodIndex = m_ui->method->currentIndex();
    m_methodName = m_ui->method->currentText();
    m_values.fill(0.0);
    UpdateData(false);
    InitFields();
    return true;
}

bool WIZPage5::OnSetActive() {
    QString satellite, local;
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
        staticData->GetSatelliteEllipsoidName(satellite);
        staticData->GetLocalEllipsoidName(local);
    }
    m_ui->dtfGroup->setTitle(WzdUtility::GroupBoxTitle(
        LoadOrvString(StrId::DtfGroupFrom) + satellite + LoadOrvString(StrId::DtfGroupTo) + local));
    if (!m_sheet->GetDtfInit())
        InitFields();
    m_sheet->SetWizardButtons(kBackNext);
    // What an existing transformation looked like, to tell later whether it was changed.
    if (m_sheet->GetDtfOption() == 0)
        m_snapshot.Set(m_methodName, m_values.data());
    return WizardPage::OnSetActive();
}

void WIZPage5::InitFields() {
    switch (m_sheet->GetDtfOption()) {
    case 0:
        LoadSelectedDtf();
        break;
    case 1:
        m_description.clear();
        if (m_sheet->GetDtfFromoldDtf())
            LoadSelectedDtf();
        else
            StartNewDtf();
        if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
            QString system;
            staticData->GetAssignedSystemName(system);
            m_name = system + LoadOrvString(StrId::DtfNameSuffix);
        }
        break;
    default:
        UpdateData(false);
        m_sheet->SetInitDtf(true);
        return;
    }
    m_ui->method->setEnabled(true);
    UpdateData(false);
    m_sheet->SetInitDtf(true);
}

void WIZPage5::LoadSelectedDtf() {
    m_name = m_sheet->GetSelDtfName();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (staticData)
        staticData->GetDtfDescription(m_description);
    if (!m_name.isEmpty() && database)
        database->GetDtfParameters(m_name, m_methodName, m_values, m_further, m_option, m_trailing);
    m_methodIndex = staticData ? staticData->GetDtfMethodIndex(m_methodName) : -1;
    SelectMethodEntry(m_methodIndex);
    ApplyMethodLayout(m_methodIndex);
    UpdateData(false);
}

void WIZPage5::StartNewDtf() {
    // Nothing of a transformation loaded before may stay hidden in a new one (its option
    // byte would turn the values the person types round).
    m_methodIndex = m_ui->method->count() > 0 ? 0 : -1;
    SelectMethodEntry(m_methodIndex);
    m_methodName = m_ui->method->currentText();
    m_values.fill(0.0);
    m_further = {};
    m_option = 0;
    m_trailing = {};
    ApplyMethodLayout(m_methodIndex);
}

void WIZPage5::SelectMethodEntry(int index) {
    m_ui->method->setCurrentIndex(index >= 0 && index < m_ui->method->count() ? index : -1);
}

void WIZPage5::ApplyMethodLayout(int methodIndex) {
    switch (methodIndex) {
    case DTF_NONE:
        ShowValueCount(0);
        break;
    case DTF_7_POSITION_VECTOR:
    case DTF_7_COORDINATE_FRAME:
        ShowValueCount(kParameterCount);
        WzdUtility::SetRotationUnit(DtfRotationSign(methodIndex));
        break;
    case DTF_15_POSITION_VECTOR:
    case DTF_15_COORDINATE_FRAME:
        ShowValueCount(kValueCount);
        WzdUtility::SetRotationUnit(DtfRotationSign(methodIndex));
        break;
    default:
        break;
    }
}

void WIZPage5::ShowValueCount(int count) {
    for (QLabel* label : m_labels)
        label->hide();
    for (QLineEdit* edit : m_edits)
        edit->hide();
    for (int i = 0; i < count && i < kValueCount; ++i)
        m_edits[i]->show();
    for (int i = 0; i < kLabelCount && i < count; ++i) {
        m_labels[i]->show();
        m_labels[i]->setEnabled(true);
    }
    for (int i = count; i < kValueCount; ++i)
        m_values[i] = 0.0;
}

void WIZPage5::OnSelchangeMethod(int index) {
    if (!m_sheet->GetGeoStatic() || index == m_methodIndex)
        return;
    // What was typed stays: the values are read before the layout is pushed. A text that is
    // no number keeps the method as it was.
    if (!UpdateData(true)) {
        SelectMethodEntry(m_methodIndex);
        return;
    }
    m_methodName = m_ui->method->itemText(index);
    m_methodIndex = index;
    ApplyMethodLayout(index);
    UpdateData(false);
}

void WIZPage5::OnChangeName() {
    // Only the name: reading every value at each keystroke would bring up a number message
    // for another field while the name is typed.
    m_name = m_ui->name->text();
}

bool WIZPage5::ReadControls() {
    if (!UpdateData(true))
        return false;
    m_name = m_name.trimmed();
    return true;
}

bool WIZPage5::CheckName() {
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (!database)
        return true;
    const QString caption = LoadOrvString(StrId::DtfNameProblemCaption);
    switch (m_sheet->GetDtfOption()) {
    case 1:
        if (database->IsDtfOfType(m_name, GEODB_ALL)) {
            GetUi().MessageBox(this, LoadOrvString(StrId::NameExistsEnterNew), caption,
                               MsgButtons::Ok);
            return false;
        }
        return true;
    case 0:
        if (database->IsDtfOfType(m_name, GEODB_SYSTEM) &&
            m_snapshot.Differs(m_methodName, m_values.data())) {
            GetUi().MessageBox(this, LoadOrvString(StrId::DtfPredefinedChanged), caption,
                               MsgButtons::Ok);
            m_ui->name->setFocus();
            return false;
        }
        // Here only the values count, and the page stays after either answer: Yes does
        // not go on, although the text says so.
        if (database->IsDtfOfType(m_name, GEODB_USER) &&
            m_snapshot.Differs(m_snapshot.GetMethodName(), m_values.data())) {
            if (GetUi().MessageBox(this, LoadOrvString(StrId::DtfUserDefinedChanged), caption,
                                   MsgButtons::YesNo) == MsgAnswer::No)
                m_ui->name->setFocus();
            return false;
        }
        return true;
    default:
        return true;
    }
}

int WIZPage5::OnWizardNext() {
    if (!ReadControls() || !CheckName())
        return kStay;
    if (!ReadControls())
        return kStay;
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
        staticData->SetDtfDescription(m_description);
        staticData->SetDtfName(m_name, QString());
        staticData->SetDtfMethod(m_methodName, m_methodIndex);
        staticData->SetDtfParameters(m_values, m_option, m_trailing[0], m_trailing[1]);
    }
    return kMove;
}
