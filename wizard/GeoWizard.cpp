#include "wizard/GeoWizard.h"

#include "api/OrvGeoFactories.h"
#include "resources/StringTable.h"

#include <QPainter>

namespace {
constexpr int kGeoidPage = 10;
constexpr int kGeoidSlot = -1; // stands for the geoid model page in the lists below
constexpr QRgb kEtchedGrey = qRgb(128, 128, 128);
constexpr QRgb kEtchedWhite = qRgb(255, 255, 255);
} // namespace

GeoWizard::GeoWizard(const QString& caption, QWidget* parent, unsigned selectPage)
    : PropertySheet(caption, parent, selectPage), m_page0(this), m_page1(this), m_page2(this),
      m_page3(this), m_page4(this), m_page5(this), m_page6(this), m_page7(this), m_page8(this),
      m_page9(this), m_page10(this), m_page11(this), m_page12(this), m_page13(this) {
    setObjectName(QStringLiteral("GeoWizard"));
    PagesSet();
    SetWizardMode();
}

GeoWizard::~GeoWizard() {
    // The host copies what it needs before the wizard goes: the created system first, then
    // the database and the static data.
    delete m_createdCoordSys;
    m_createdCoordSys = nullptr;
    delete m_geoDatabase;
    m_geoDatabase = nullptr;
    delete m_geoStatic;
    m_geoStatic = nullptr;
}

bool GeoWizard::CreateBaseObjects() {
    delete m_geoStatic;
    delete m_geoDatabase;
    m_geoStatic = OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(m_dllType);
    m_geoDatabase = OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_dllType);
    return m_geoStatic && m_geoDatabase;
}

int GeoWizard::OnInitDialog() {
    if (!CreateBaseObjects())
        return 0;
    QString satellite;
    m_geoDatabase->GetSatelliteEllipsoidName(satellite);
    m_srcElpName = satellite;
    return PropertySheet::OnInitDialog();
}

bool GeoWizard::GetPreGroupName(QString& out) const {
    if (m_preGroupName.isEmpty())
        return false;
    out = m_preGroupName;
    return true;
}

void GeoWizard::SetPreSysName(const QString& name, const QString& newSystemName) {
    m_preSysName = name;
    if (!newSystemName.isEmpty())
        m_page0.SetNewSystemNameField(newSystemName);
}

bool GeoWizard::GetPreSysName(QString& out) const {
    if (m_preSysName.isEmpty())
        return false;
    out = m_preSysName;
    return true;
}

void GeoWizard::SetPreSysStatu(bool based, bool updateCheckBox) {
    m_preSysStatu = based;
    if (updateCheckBox)
        m_page0.SetBasedOnExisting(based ? 1 : 0);
}

// --- page flow ---

WizardPage* GeoWizard::GetWizardPage(int number) {
    WizardPage* pages[] = {&m_page0,  &m_page1,  &m_page2,  &m_page3, &m_page4,
                           &m_page5,  &m_page6,  &m_page7,  &m_page8, &m_page9,
                           &m_page10, &m_page11, &m_page12, &m_page13};
    return number >= 0 && number < int(std::size(pages)) ? pages[number] : nullptr;
}

QList<int> GeoWizard::PageNumbers() const {
    QList<int> numbers;
    auto* self = const_cast<GeoWizard*>(this);
    for (int i = 0; i < GetPageCount(); ++i)
        for (int n = 0; n < 14; ++n)
            if (self->GetWizardPage(n) == GetPage(i))
                numbers << n;
    return numbers;
}

void GeoWizard::clearHelpFlags() {
    for (int n = 0; n < 14; ++n)
        GetWizardPage(n)->SetHasHelp(false);
}

void GeoWizard::removeAllPages() {
    for (int i = GetPageCount() - 1; i >= 0; --i)
        RemovePage(i);
}

void GeoWizard::addPages(const QList<int>& numbers) {
    for (int n : numbers) {
        if (n == kGeoidSlot) {
            if (!m_skipGeoid)
                AddPage(GetWizardPage(kGeoidPage));
        } else {
            AddPage(GetWizardPage(n));
        }
    }
}

void GeoWizard::PagesSet() {
    clearHelpFlags();
    removeAllPages();
    addPages({0, 2, 3, 5, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12});
}

void GeoWizard::SetSkipGeoid(bool skip) {
    m_skipGeoid = skip;
    clearHelpFlags();
    removeAllPages();
    addPages({0, 2, 3, 5, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12});
}

void GeoWizard::ReSetPages(int code) {
    const int active = GetActiveIndex();
    removeAllPages();
    if (code >= 73)
        return;

    // The datum transformation head of the projection codes follows what the earlier
    // codes remembered.
    auto head = [this]() -> QList<int> {
        if (m_noDtfPages)
            return {0, 2};
        if (m_dtfTreePageOnly)
            return {0, 2, 3, 4};
        if (m_dtfParamPageOnly)
            return {0, 2, 3, 5};
        return {0, 2, 3, 4, 5};
    };

    QList<int> pages;
    switch (code) {
    case PagesNotBased:
        pages = {0, 2, 3, 4, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12};
        m_hasPredefinedSystem = true;
        break;
    case PagesBasedOnSystem:
        pages = {0, 1, 5, kGeoidSlot, 9, 13, 11, 12};
        m_hasPredefinedSystem = false;
        m_dtfParamPageOnly = true;
        break;
    case PagesUseExistingDtf:
        pages = {0, 2, 3, 4, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12};
        m_dtfParamPageOnly = false;
        m_dtfTreePageOnly = true;
        m_noDtfPages = false;
        break;
    case PagesNoDtf:
        pages = {0, 2, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12};
        m_hasPredefinedSystem = true;
        m_dtfParamPageOnly = false;
        m_dtfTreePageOnly = false;
        m_noDtfPages = true;
        break;
    case PagesNewDtf:
        pages = {0, 2, 3, 5, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12};
        m_dtfParamPageOnly = true;
        m_dtfTreePageOnly = false;
        m_noDtfPages = false;
        break;
    case PagesNewDtfFromOld:
        pages = {0, 2, 3, 4, 5, kGeoidSlot, 6, 7, 8, 9, 13, 11, 12};
        m_dtfParamPageOnly = false;
        m_dtfTreePageOnly = false;
        m_noDtfPages = false;
        break;
    case PagesUseExistingPrj:
        pages = head() + QList<int>{kGeoidSlot, 6, 7, 8, 13, 11, 12};
        break;
    case PagesNewPrjFromOld:
        pages = head() + QList<int>{kGeoidSlot, 6, 7, 8, 9, 13, 11, 12};
        break;
    case PagesNewPrj:
        pages = head() + QList<int>{kGeoidSlot, 6, 7, 9, 13, 11, 12};
        break;
    default:
        return;
    }
    addPages(pages);
    // The index comes back, not the page: a list that changed before it shows another page
    // there. A sheet that had no active page starts at the first.
    SetActivePage(active < 0 ? 0 : active);
}

void GeoWizard::SetWizardButtonByPage(unsigned state) {
    switch (state) {
    case 0:
        SetWizardButtons(PSWIZB_NEXT);
        break;
    case 1:
        SetWizardButtons(PSWIZB_BACK | PSWIZB_FINISH);
        break;
    case 2:
        SetWizardButtons(PSWIZB_FINISH);
        break;
    case 3:
        SetWizardButtons(PSWIZB_BACK | PSWIZB_NEXT);
        break;
    case 4:
        SetWizardButtons(PSWIZB_BACK);
        break;
    default:
        break;
    }
}

void GeoWizard::OnWizBack() {
    const int index = GetActiveIndex();
    SetWizardButtons(index < 2 ? PSWIZB_NEXT : PSWIZB_BACK | PSWIZB_NEXT);
    DefaultBack();
}

void GeoWizard::OnWizNext() {
    const int index = GetActiveIndex();
    const int count = GetPageCount();
    SetWizardButtons(index < count - 2 ? PSWIZB_BACK | PSWIZB_NEXT : PSWIZB_BACK | PSWIZB_FINISH);
    DefaultNext();
}

QString GeoWizard::DisplayPageNumber(const PropertyPage* page) const {
    const QString index = QString::asprintf("%d", GetPageIndex(page) + 1);
    const QString count = QString::asprintf("%d", GetPageCount());
    return index + LoadOrvString(StrId::PageNumberOf) + count;
}

void GeoWizard::OnPaint(QPainter& dc, const QString& title) {
    const QString caption = LoadOrvString(StrId::WizardCaption);
    if (windowTitle() != caption)
        setWindowTitle(caption);

    const QRect client = rect();
    dc.save();
    dc.setRenderHint(QPainter::Antialiasing, false);
    dc.setPen(QPen(QColor(kEtchedGrey), 1, Qt::SolidLine));
    dc.drawLine(client.left(), client.top() + 18, client.right(), client.top() + 18);
    dc.setPen(QPen(QColor(kEtchedWhite), 1, Qt::SolidLine));
    dc.drawLine(client.left(), client.top() + 19, client.right(), client.top() + 19);

    QFont titleFont = font();
    titleFont.setWeight(QFont::Normal);
    dc.setFont(titleFont);
    dc.setPen(palette().color(QPalette::WindowText));
    // the text cell's top left at (0, 0), unclipped, whatever the font's height
    dc.drawText(QPoint(0, dc.fontMetrics().ascent()), title);
    dc.restore();
}

// --- creation and information texts ---

OrvGeoCoordSysBase* GeoWizard::CreateCoordSys(QString s1, QString s2, QString s3, QString s4,
                                              QString s5, QString s6, QString s7) {
    OrvGeoCoordSysBase* system = OrvGeoCoordSysList::GetCoordSysList().Create(m_dllType);
    m_createdCoordSys = system;
    if (!system)
        return nullptr;
    if (system->DefineSystem(s1, s2, s3, s4, QString(), s5, s6, s7, QStringLiteral("none")))
        return system;
    // a destroyed object must not stay remembered: the destructor frees what is remembered
    delete system;
    m_createdCoordSys = nullptr;
    return nullptr;
}

QString GeoWizard::DumpElpInfoText(const QString& ellipsoidName) {
    if (!m_geoDatabase)
        return QString();
    QString text;
    m_geoDatabase->GetEllipsoidInfoText(text, ellipsoidName);
    const qsizetype lineFeed = text.indexOf(QLatin1Char('\n'));
    return lineFeed < 0 ? text : text.mid(lineFeed + 1);
}

QString GeoWizard::DumpPreSysInfoText() {
    const QString crlf = QStringLiteral("\r\n");
    return LoadOrvString(StrId::InfoGroup) + m_preGroupName + crlf +
           LoadOrvString(StrId::InfoSystem) + m_preSysName + crlf;
}

QString GeoWizard::DumpUnitInfoText() {
    double factor = 0.0;
    QString description;
    if (m_geoStatic) {
        m_geoStatic->GetCurrentUnitFactor(factor);
        m_geoStatic->GetCurrentUnitDescription(description);
    }
    const QString crlf = QStringLiteral("\r\n");
    return BuildIndentString(1) + LoadOrvString(StrId::InfoMetricFactor) +
           QString::asprintf("%f", factor) + crlf + BuildIndentString(1) +
           LoadOrvString(StrId::InfoDescription) + description + crlf;
}

QString GeoWizard::BuildIndentString(int level) {
    return level > 0 ? QString(level, QLatin1Char('\t')) : QString();
}
