#include "pages/WIZPage8.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/InformationPane.h"
#include "dialogs/PickerTree.h"
#include "dialogs/ProjectionTree.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage8.h"
#include "wizard/GeoWizard.h"

#include <QTreeView>

namespace {

constexpr unsigned kBackOnly = PropertySheet::PSWIZB_BACK;
constexpr unsigned kBackAndNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;

bool sameUnit(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

double metersPerUnit(OrvGeoDatabaseBase& database, const QString& unit) {
    QString suffix, description;
    double factor = 0.0;
    int category = 0;
    database.GetUnitDefinition(unit, suffix, factor, category, description);
    return factor;
}

} // namespace

WIZPage8::WIZPage8(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage8"), StrId::TitleSelectProjection, kBackAndNext),
      m_ui(std::make_unique<Ui::WIZPage8>()) {
    m_ui->setupUi(ContentArea());
    m_tree = new PickerTree(m_ui->filterEdit, m_ui->tree, this);
    PrepareInformationPane(m_ui->infoPane);
    connect(m_tree, &PickerTree::CurrentChanged, this, &WIZPage8::OnSelChangedTree);
}

WIZPage8::~WIZPage8() = default;

void WIZPage8::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("infoPane"), m_information);
}

bool WIZPage8::FillTree() {
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (!database)
        return false;
    m_ui->tree->setUpdatesEnabled(false);
    m_tree->SetEntries({});
    m_ui->tree->setUpdatesEnabled(true);
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!staticData)
        return false;
    // every method, also one nothing is stored for
    m_tree->SetEntries(ProjectionTreeEntries(*staticData, *database, true));
    m_ui->tree->setFocus();
    const QModelIndex first = m_tree->FirstShown();
    m_selPrjName = m_tree->Model().NameAt(first);
    m_tree->Select(first);
    return true;
}

bool WIZPage8::OnSetActive() {
    if (!FillTree())
        m_sheet->SetWizardButtons(kBackOnly);
    // posted after the selection handler's request, so Back and Next are always offered
    m_sheet->SetWizardButtons(kBackAndNext);
    return PropertyPage::OnSetActive();
}

void WIZPage8::OnSelChangedTree(const QModelIndex& sourceIndex) {
    if (!sourceIndex.isValid())
        return;
    const NameTreeModel& model = m_tree->Model();
    m_selPrjName = model.NameAt(sourceIndex);
    if (model.rowCount(sourceIndex) > 0) {
        // a method: show what it holds
        m_sheet->SetWizardButtons(kBackOnly);
        m_tree->Expand(sourceIndex);
        m_information.clear();
    } else if (sourceIndex.parent().isValid()) {
        m_information.clear();
        m_selMethodName = model.NameAt(sourceIndex.parent());
        m_selPrjName = model.NameAt(sourceIndex);
        if (OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase())
            m_information = ProjectionInformation(*database, m_selPrjName);
        m_sheet->SetWizardButtons(kBackAndNext);
    } else {
        m_sheet->SetWizardButtons(kBackOnly); // a method without projections
    }
    UpdateData(false);
}

int WIZPage8::OnWizardNext() {
    m_convertUnit = false;
    m_sheet->SetInitPrj(false);
    m_sheet->SetSelPrjUnitStatu(false);
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    if (!database || !staticData)
        return kStay;

    QString projectionUnit;
    database->GetProjectionUnit(projectionUnit, m_selPrjName);
    const int methodId = staticData->GetPrjMethodId(m_selMethodName);
    const bool unitFree = staticData->IsMethodUnitFree(methodId);
    const QString wizardUnit = m_sheet->GetUnit();
    if (!unitFree && !sameUnit(projectionUnit, wizardUnit)) {
        GetUi().MessageBox(this, LoadOrvString(StrId::PrjUnitFixedGoBack), QString(),
                           MsgButtons::Ok);
        return kStay;
    }
    if (!sameUnit(projectionUnit, wizardUnit)) {
        if (GetUi().MessageBox(this, LoadOrvString(StrId::PrjUnitConvertQuestion), QString(),
                               MsgButtons::YesNo) != MsgAnswer::Yes)
            return kStay;
        m_convertUnit = true;
    }
    CommitSelection();
    return kMove;
}

void WIZPage8::CommitSelection() {
    OrvGeoDatabaseBase& database = *m_sheet->GetGeoDatabase();
    OrvGeoStaticDataBase& staticData = *m_sheet->GetGeoStatic();
    m_sheet->SetPrePrjName(m_selPrjName);
    m_sheet->SetPrjMdName(m_selMethodName);

    PrjParamBlock block;
    QStringList values, names;
    QList<unsigned> types;
    database.GetProjectionParameters(m_selPrjName, block, values, names, types);
    const int methodId = staticData.GetPrjMethodId(m_selMethodName);
    QString projectionName = m_selPrjName;
    if (m_convertUnit) {
        QString projectionUnit;
        database.GetProjectionUnit(projectionUnit, m_selPrjName);
        const QString wizardUnit = m_sheet->GetUnit();
        const double toWizardUnit =
            metersPerUnit(database, projectionUnit) / metersPerUnit(database, wizardUnit);
        projectionName = m_selPrjName + QLatin1Char('_') + wizardUnit;
        m_sheet->SetPrePrjName(projectionName);
        for (int i = 0; i < types.size(); ++i) {
            if (types[i] != PRM_LENGTH)
                continue;
            const double value = i < block.count ? block.values[i] : values.value(i).toDouble();
            const double converted = value * toWizardUnit;
            if (i < values.size())
                values[i] = QString::asprintf("%f", converted);
            if (i < block.count)
                block.values[i] = converted;
        }
    }
    staticData.SetProjectionMethod(m_selMethodName);
    staticData.SetProjectionName(projectionName, static_cast<short>(methodId));
    staticData.SetProjectionParameters(block, values, names, types);
}
