#include "pages/WIZPage4.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/NameTreeModel.h"
#include "dialogs/PickerTree.h"
#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage4.h"
#include "wizard/GeoWizard.h"

#include <QFontMetrics>

namespace {
constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;
// Information texts indent with tabs; four average characters keep them compact.
constexpr int kTabStopCharacters = 4;
} // namespace

WIZPage4::WIZPage4(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage4"), StrId::TitleSelectDtf, kBackNext),
      m_ui(std::make_unique<Ui::WIZPage4>()) {
    m_ui->setupUi(ContentArea());
    m_ui->infoPane->setTabStopDistance(QFontMetrics(m_ui->infoPane->font()).averageCharWidth() *
                                       kTabStopCharacters);
    m_tree = new PickerTree(m_ui->filterEdit, m_ui->tree, this);
    connect(m_tree, &PickerTree::CurrentChanged, this, &WIZPage4::OnSelChangedTree);
}

WIZPage4::~WIZPage4() = default;

void WIZPage4::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("infoPane"), m_infoText);
}

bool WIZPage4::OnInitDialog() {
    return WizardPage::OnInitDialog();
}

bool WIZPage4::OnSetActive() {
    if (!FillTree())
        m_sheet->SetWizardButtons(PropertySheet::PSWIZB_BACK);
    // posted after the request above, so Next is offered in every case
    m_sheet->SetWizardButtons(kBackNext);
    return WizardPage::OnSetActive();
}

bool WIZPage4::FillTree() {
    const QString satellite = m_sheet->GetSrcElpName();
    const QString local = m_sheet->GetDesElpName();
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!database || !staticData)
        return false;

    // Every item goes, and with them the selection.
    m_ui->tree->setUpdatesEnabled(false);
    m_tree->SetEntries({});
    m_selName.clear();
    m_auxText.clear();
    m_infoText.clear();
    UpdateData(false);
    m_ui->tree->setUpdatesEnabled(true);

    QStringList names;
    database->GetDtfNames(names, satellite, local);
    m_ui->tree->setFocus();
    QString current;
    staticData->GetCurrentDtfName(current);
    if (names.isEmpty()) {
        m_sheet->SetWizardButtons(PropertySheet::PSWIZB_BACK);
        return false;
    }

    if (!m_codesRead) {
        m_codes = database->GetEpsgCodes(GeoEntryKind::DatumTransformation);
        m_codesRead = true;
    }
    m_ui->tree->setUpdatesEnabled(false);
    m_tree->SetEntries(EntriesOf(names, m_codes)); // sorted as people read them
    QModelIndex item = m_tree->Model().FindTopLevel(current);
    // The filter the person typed stays while it shows the entry to select: it goes when it
    // hides the current transformation or, without one, every entry.
    const bool hidden = item.isValid() ? !m_tree->Proxy().mapFromSource(item).isValid()
                                       : !m_tree->FirstShown().isValid();
    if (m_tree->Proxy().IsFiltering() && hidden)
        m_tree->SetFilterText(QString());
    m_sheet->SetWizardButtons(kBackNext);
    if (!item.isValid())
        item = m_tree->FirstShown();
    m_tree->Select(item); // runs the selection handling
    m_ui->tree->setUpdatesEnabled(true);
    return true;
}

void WIZPage4::OnSelChangedTree(const QModelIndex& sourceIndex) {
    if (!sourceIndex.isValid()) {
        // only a filter hiding every entry leaves the tree without a current entry
        m_sheet->SetWizardButtons(PropertySheet::PSWIZB_BACK);
        return;
    }
    m_sheet->SetWizardButtons(kBackNext);
    m_selName = m_tree->Model().NameAt(sourceIndex);
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!database || !staticData)
        return;
    database->GetDtfAuxText(m_auxText, m_selName);
    QString satellite, local;
    database->GetDtfEllipsoidNames(m_selName, satellite, local);
    staticData->SelectSatelliteEllipsoid(satellite);
    staticData->SelectLocalEllipsoid(local, QString());
    m_sheet->SetInitDtf(false);
    m_infoText.clear();
    database->GetDtfInfoText(m_infoText, m_selName, 1);
    UpdateData(false);
}

int WIZPage4::OnWizardNext() {
    m_sheet->SetSelDtfName(m_selName);
    m_sheet->SetInitDtf(false);
    LoadSelectedDtf();
    return kMove;
}

void WIZPage4::LoadSelectedDtf() {
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!database || !staticData)
        return;
    QString method;
    DtfValues values{};
    std::array<double, 2> further{}; // accuracy and EPSG code: for reading only
    unsigned char option = 0;
    std::array<double, 2> trailing{};
    database->GetDtfParameters(m_selName, method, values, further, option, trailing);

    QString text;
    staticData->SetDtfDescription(database->GetDtfDescription(text, m_selName));
    staticData->SetDtfExtraText(database->GetDtfExtraText(text, m_selName));
    staticData->SetDtfName(m_selName, QString());

    const int index = staticData->GetDtfMethodIndex(method);
    QStringList methods;
    staticData->GetDtfMethodNames(methods);
    if (index >= 0 && index < methods.size())
        method = methods[index]; // the list's spelling
    staticData->SetDtfMethod(method, index);
    staticData->SetDtfParameters(values, option, trailing[0], trailing[1]);
}
