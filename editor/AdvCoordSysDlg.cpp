#include "editor/AdvCoordSysDlg.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoFactories.h"
#include "api/OrvGeoStaticDataBase.h"
#include "api/ProjectionMethods.h"
#include "dialogs/CMaskEdit.h"
#include "editor/EditorTexts.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_AdvCoordSysDlg.h"
#include "util/GeoFormat.h"
#include "wizard/UtmRows.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

#include <cmath>

namespace {

// Decimals of the datum transformation edits (parameters, rates, epoch).
constexpr int kParamDecimals = 6;
constexpr int kRateDecimals = 8;
constexpr int kEpochDecimals = 3;
// The library's default number of decimals for the post-correction adjustment values.
constexpr int kLibraryDefaultDecimals = -1;
// The rotations among the seven parameters (and among their rates).
constexpr int kFirstRotation = 3;
constexpr int kLastRotation = 5;

const char* const kParamEditNames[] = {"shiftXEdit",    "shiftYEdit",    "shiftZEdit",
                                       "rotationXEdit", "rotationYEdit", "rotationZEdit",
                                       "scaleEdit"};
const char* const kRateEditNames[] = {"shiftXRateEdit",    "shiftYRateEdit",    "shiftZRateEdit",
                                      "rotationXRateEdit", "rotationYRateEdit", "rotationZRateEdit",
                                      "scaleRateEdit"};
const char* const kHorAdjustEditNames[] = {"horOriginEEdit", "horOriginNEdit", "horRotationEdit",
                                           "horScaleEdit"};
const char* const kVertAdjustEditNames[] = {"vertOriginEEdit", "vertOriginNEdit", "vertSlopeEEdit",
                                            "vertSlopeNEdit"};

} // namespace

AdvCoordSysDlg::AdvCoordSysDlg(QString groupName, QString systemName, QString geoidModelName,
                               QString geoidModelFileName, QString geoidChartDatum,
                               QString postModelName, QString postModelFileName, bool spare,
                               QWidget* parent, bool showGeoid)
    : Dialog(parent), m_ui(std::make_unique<Ui::AdvCoordSysDlg>()),
      m_groupName(std::move(groupName)), m_systemName(std::move(systemName)),
      m_argGeoidName(std::move(geoidModelName)), m_argGeoidFile(std::move(geoidModelFileName)),
      m_argChartDatum(std::move(geoidChartDatum)), m_spare(spare), m_showGeoid(showGeoid),
      m_callerGeoidName(m_argGeoidName), m_callerGeoidFile(m_argGeoidFile),
      m_callerChartDatum(m_argChartDatum), m_callerPostName(std::move(postModelName)),
      m_callerPostFile(std::move(postModelFileName)) {
    m_ui->setupUi(this);
    m_dtfEdits = {m_ui->shiftXEdit,        m_ui->shiftYEdit,        m_ui->shiftZEdit,
                  m_ui->rotationXEdit,     m_ui->rotationYEdit,     m_ui->rotationZEdit,
                  m_ui->scaleEdit,         m_ui->shiftXRateEdit,    m_ui->shiftYRateEdit,
                  m_ui->shiftZRateEdit,    m_ui->rotationXRateEdit, m_ui->rotationYRateEdit,
                  m_ui->rotationZRateEdit, m_ui->scaleRateEdit,     m_ui->epochEdit};
    // in this order: what is shown of them is the first n (seven or all nine)
    m_dtfLabels = {m_ui->shiftXLabel,    m_ui->shiftYLabel,    m_ui->shiftZLabel,
                   m_ui->scaleLabel,     m_ui->rotationXLabel, m_ui->rotationYLabel,
                   m_ui->rotationZLabel, m_ui->rateLabel,      m_ui->epochLabel};
    m_paramLabels = {m_ui->paramLabel1, m_ui->paramLabel2, m_ui->paramLabel3,
                     m_ui->paramLabel4, m_ui->paramLabel5, m_ui->paramLabel6,
                     m_ui->paramLabel7, m_ui->paramLabel8, m_ui->paramLabel9};
    m_paramEdits = {m_ui->paramEdit1, m_ui->paramEdit2, m_ui->paramEdit3,
                    m_ui->paramEdit4, m_ui->paramEdit5, m_ui->paramEdit6,
                    m_ui->paramEdit7, m_ui->paramEdit8, m_ui->paramEdit9};
    m_utility.ResetParameterRows(m_paramLabels, m_paramEdits, WzdUtility::kMaxRows);
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->utmZoneLabel), static_cast<QWidget*>(m_ui->utmZoneCombo),
          static_cast<QWidget*>(m_ui->hemisphereLabel),
          static_cast<QWidget*>(m_ui->hemisphereCombo)})
        w->hide();
    for (int i = 0; i < ChartDatumCount; ++i)
        m_ui->chartDatumCombo->addItem(QString::fromWCharArray(ChartDatums[i]));
    m_ui->chartDatumCombo->setCurrentIndex(-1);
    m_ui->unitDescription->setTabStopDistance(fontMetrics().horizontalAdvance(QLatin1Char(' ')) *
                                              EditorTexts::kTabStopBlanks);

    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &AdvCoordSysDlg::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &AdvCoordSysDlg::reject);
    // ellipsoids and datum transformation
    connect(m_ui->satSelectButton, &QPushButton::clicked, this,
            &AdvCoordSysDlg::OnSelSrcElllipsoid);
    connect(m_ui->localSelectButton, &QPushButton::clicked, this,
            &AdvCoordSysDlg::OnSelPreEllipsoid);
    connect(m_ui->dtfSelectButton, &QPushButton::clicked, this, &AdvCoordSysDlg::OnLoadPreDttrfm);
    connect(m_ui->dtfNewButton, &QPushButton::clicked, this, &AdvCoordSysDlg::ONCreateNewDatum);
    connect(m_ui->dtfMethodCombo, &QComboBox::activated, this,
            &AdvCoordSysDlg::OnSelchangDttransMd);
    // projection and unit
    connect(m_ui->prjMethodCombo, &QComboBox::activated, this,
            &AdvCoordSysDlg::OnSelchangePrjcombo);
    connect(m_ui->utmZoneCombo, &QComboBox::activated, this, &AdvCoordSysDlg::OnSelchangeUTMZone);
    connect(m_ui->hemisphereCombo, &QComboBox::activated, this,
            &AdvCoordSysDlg::OnSelchangUTMSphere);
    connect(m_ui->prjSelectButton, &QPushButton::clicked, this, &AdvCoordSysDlg::OnLoadPrePrj);
    connect(m_ui->prjNewButton, &QPushButton::clicked, this, &AdvCoordSysDlg::OnCreateNewPrj);
    connect(m_ui->unitSelectButton, &QPushButton::clicked, this, &AdvCoordSysDlg::OnSelectUnit);
    connect(m_ui->unitNewButton, &QPushButton::clicked, this, &AdvCoordSysDlg::OnCreateNewUnit);
    // geoid model and post corrections
    connect(m_ui->geoidMethodCombo, &QComboBox::activated, this,
            &AdvCoordSysDlg::OnSelChangeGeoidMethod);
    connect(m_ui->geoidFileButton, &QPushButton::clicked, this, &AdvCoordSysDlg::OnSelectGridFile);
    connect(m_ui->chartDatumCombo, &QComboBox::activated, this,
            &AdvCoordSysDlg::OnSelchangeChartDatum);
    connect(m_ui->postMethodCombo, &QComboBox::activated, this,
            &AdvCoordSysDlg::OnSelchangePostcombo);
    connect(m_ui->postFileButton, &QPushButton::clicked, this,
            &AdvCoordSysDlg::OnAdvPostFileButton);
    connect(m_ui->translationCheck, &QCheckBox::clicked, this, &AdvCoordSysDlg::OnAdvPostCheck);
    connect(m_ui->horAdjustCheck, &QCheckBox::clicked, this, &AdvCoordSysDlg::OnAdvHorAdjustCheck);
    connect(m_ui->vertAdjustCheck, &QCheckBox::clicked, this,
            &AdvCoordSysDlg::OnAdvVertAdjustCheck);
}

AdvCoordSysDlg::~AdvCoordSysDlg() = default;

QString AdvCoordSysDlg::GetGeoidModelName() const {
    return m_showGeoid ? m_callerGeoidName : m_argGeoidName;
}

QString AdvCoordSysDlg::GetGeoidModelFileName() const {
    return m_showGeoid ? m_callerGeoidFile : m_argGeoidFile;
}

QString AdvCoordSysDlg::GetGeoidChartDatum() const {
    return m_showGeoid ? m_callerChartDatum : m_argChartDatum;
}

void AdvCoordSysDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("satNameEdit"), m_srcEllipsoid);
    DDX_Text(pDX, QStringLiteral("localNameEdit"), m_desEllipsoid);
    DDX_Text(pDX, QStringLiteral("dtfNameEdit"), m_dtfName);
    for (int i = 0; i < kParamCount; ++i) {
        const bool rotation = i >= kFirstRotation && i <= kLastRotation;
        const int format = rotation ? DDX_FORMAT_ROTATION : DDX_FORMAT_PLAIN;
        DDX_FmtDouble(pDX, QString::fromLatin1(kParamEditNames[i]), m_dtfParams[i], format,
                      kParamDecimals);
        DDX_FmtDouble(pDX, QString::fromLatin1(kRateEditNames[i]), m_dtfRates[i], format,
                      kRateDecimals);
    }
    DDX_FmtDouble(pDX, QStringLiteral("epochEdit"), m_epoch, DDX_FORMAT_PLAIN, kEpochDecimals);
    DDX_Text(pDX, QStringLiteral("descriptionEdit"), m_dtfDescription);
    DDX_Text(pDX, QStringLiteral("prjNameEdit"), m_prjName);
    DDX_Text(pDX, QStringLiteral("unitNameEdit"), m_unitName);
    if (!pDX->m_bSaveAndValidate) // the line under the unit name is only shown
        DDX_Text(pDX, QStringLiteral("unitDescription"), m_unitInfoLine);
    DDX_Text(pDX, QStringLiteral("geoidFileEdit"), m_geoidFile);
    DDX_Text(pDX, QStringLiteral("separationEdit"), m_manualSeparation);
    DDX_bCheck(pDX, QStringLiteral("translationCheck"), m_translationOn);
    DDX_bCheck(pDX, QStringLiteral("horAdjustCheck"), m_horAdjustOn);
    DDX_bCheck(pDX, QStringLiteral("vertAdjustCheck"), m_vertAdjustOn);
    for (int i = 0; i < 4; ++i) {
        DDX_FmtDouble(pDX, QString::fromLatin1(kHorAdjustEditNames[i]), m_horAdjust[i],
                      DDX_FORMAT_PLAIN, kLibraryDefaultDecimals);
        DDX_FmtDouble(pDX, QString::fromLatin1(kVertAdjustEditNames[i]), m_vertAdjust[i],
                      DDX_FORMAT_PLAIN, kLibraryDefaultDecimals);
    }
    DDX_Text(pDX, QStringLiteral("postFileEdit"), m_postFile);
}

// --- initialisation ---

bool AdvCoordSysDlg::Initialize() {
    m_dtfName.clear();
    m_srcEllipsoid.clear();
    m_desEllipsoid.clear();
    m_prjName.clear();
    m_unitName.clear();
    m_savedPrjName.clear();
    m_savedPrjMethodName.clear();
    m_geoidMethodName.clear();
    m_utmZoneText.clear();
    m_hemisphereText.clear();
    m_postMethodName.clear();
    m_postFile.clear();
    m_utmFalseNorthing = 0.0;
    m_utmCentralMeridian = 3.0;
    m_unitFactor = 0.0;
    WriteTranslation(0.0, 0.0, 0.0);
    m_translationOn = m_horAdjustOn = m_vertAdjustOn = false;
    m_utmMode = false;
    m_dtfParams.fill(0.0);
    m_dtfRates[0] = 0.0; // the other rates and the epoch stay as they are

    m_geoStatic.reset(OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(m_dllType));
    m_geoDatabase.reset(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_dllType));
    if (!m_geoStatic || !m_geoDatabase)
        return false;
    // The record starts as the stored system, so that what no control shows survives a save.
    m_geoStatic->LoadCoordSys(m_groupName, m_systemName);
    m_readOnly = m_geoDatabase->SystemNameExists(m_systemName, GEODB_SYSTEM);
    return true;
}

bool AdvCoordSysDlg::OnInitDialog() {
    Dialog::OnInitDialog();
    if (!Initialize())
        return true; // the page stays with empty fields
    SetManualGeoidCtrl(false);
    IniCtrlStatus();
    IniDataInCtrls();
    SaveProjectionData(m_savedPrjValues);
    if (m_readOnly)
        SetReadOnlyControls();
    if (!m_showGeoid)
        HideGeoidSection();
    return true;
}

bool AdvCoordSysDlg::IniCtrlStatus() {
    if (!IniComboBoxs())
        return false;
    DisableDttransEditInfo();
    UpdateData(true);
    return true;
}

void AdvCoordSysDlg::IniDataInCtrls() {
    SetWindowTitle();
    ShowSystemInfo();
    UpdateData(false);
}

bool AdvCoordSysDlg::IniComboBoxs() {
    m_geoDatabase->GetSystemDtfName(m_dtfName, m_groupName, m_systemName);
    DtfValues values{};
    std::array<double, 2> trailing{};
    if (!m_geoDatabase->GetDtfParameters(m_dtfName, m_dtfMethodName, values, m_dtfFurther,
                                         m_dtfOption, trailing))
        return false;
    SetDtfValueList(values);
    UpdateData(false); // the lists below read the controls back
    int index = 0;
    {
        const QSignalBlocker quiet(m_ui->dtfMethodCombo);
        if (!m_utility.SelectDtfMethod(m_geoStatic.get(), m_ui->dtfMethodCombo, m_dtfMethodName,
                                       index) ||
            index < 0)
            return false;
    }
    m_dtfMethodIndex = static_cast<short>(index);

    QStringList methods;
    {
        const QSignalBlocker quiet(m_ui->prjMethodCombo);
        m_utility.FillPrjMethodList(m_geoStatic.get(), m_ui->prjMethodCombo, methods);
    }
    if (!m_utility.ResetParameterRows(m_paramLabels, m_paramEdits, WzdUtility::kMaxRows))
        return false;

    IniUTMComboxs();
    IniGeoidMdCombo(GeoidKey::Egm96);
    IniPostCorrctCombo();
    m_methodShift = 0;
    DoSelDttransMd(m_dtfMethodIndex);
    UpdateData(true);
    return true;
}

void AdvCoordSysDlg::IniUTMComboxs() {
    UtmRows::FillZoneList(m_ui->utmZoneCombo);
    UtmRows::FillHemisphereList(m_ui->hemisphereCombo);
    m_hemisphereText = m_ui->hemisphereCombo->currentText();
}

void AdvCoordSysDlg::DisableDttransEditInfo() {
    for (QLineEdit* edit : m_dtfEdits) {
        edit->setText(QStringLiteral("0.000000"));
        edit->setEnabled(false);
    }
    for (QLabel* label : m_dtfLabels)
        label->setEnabled(false);
}

void AdvCoordSysDlg::SetWindowTitle() {
    // appended to whatever the title is: a second call appends again
    setWindowTitle(windowTitle() + QStringLiteral("--") + m_systemName);
}

void AdvCoordSysDlg::ShowSystemInfo() {
    // the datum transformation
    RefreshDttrans(m_dtfName);
    if (m_geoDatabase->IsDtfOfType(m_dtfName, GEODB_SYSTEM)) {
        DisableDtfValues();
        m_methodShift =
            m_utility.ReduceDtfMethodList(m_geoStatic.get(), m_ui->dtfMethodCombo, m_methodShift);
    }

    // the projection
    m_geoDatabase->GetSystemProjectionName(m_prjName, m_groupName, m_systemName);
    m_prjMethodName = m_geoDatabase->GetCoordSysPrjMethod(m_groupName, m_systemName);
    m_prjMethodId = m_geoStatic->GetPrjMethodId(m_prjMethodName);
    m_savedPrjName = m_prjName;
    m_savedPrjMethodName = m_prjMethodName;
    if (m_utmMode) {
        m_labelScheme = EditorTexts::kUtmLabelScheme;
    } else {
        LoadParameterRows(m_prjName, m_prjMethodName);
        m_labelScheme = m_prjMethodId;
    }
    SetPrjComboFocus(m_prjMethodName);
    if (m_geoDatabase->IsPrjOfType(m_prjName, GEODB_SYSTEM))
        EnablePrjEditCtrls(false);

    // the unit
    m_unitName = m_geoDatabase->GetCoordSysUnitName(m_groupName, m_systemName);
    QString suffix;
    m_geoDatabase->GetUnitDefinition(m_unitName, suffix, m_unitFactor, m_unitCategory,
                                     m_unitDescription);
    m_unitInfoLine = DumpUnitText();

    // the geoid model
    m_geoidMethodName.clear();
    m_geoidFile.clear();
    m_geoidInUse = m_geoDatabase->SystemHasGeoidModel(m_groupName, m_systemName);
    if (m_geoidInUse) {
        m_geoidMethodName = m_geoDatabase->GetGeoidModelName(m_groupName, m_systemName);
        m_geoidFile = m_geoDatabase->GetGeoidModelFile(m_groupName, m_systemName);
        EditorTexts::MapOsgm02(m_geoidMethodName, m_geoidFile);
    }
    m_loadedGeoidName = m_geoidMethodName;
    m_loadedGeoidFile = m_geoidFile;
    if (!m_callerGeoidName.isEmpty())
        m_geoidMethodName = m_callerGeoidName;
    if (!m_geoidMethodName.isEmpty() && m_geoidMethodName != EditorTexts::None()) {
        m_geoidInUse = true;
        if (!m_callerGeoidFile.isEmpty())
            m_geoidFile = m_callerGeoidFile;
    } else {
        m_geoidInUse = false;
        m_geoidFile.clear();
        m_callerGeoidFile.clear();
    }
    if (m_geoidInUse && GeoidKeyIndex(m_geoidMethodName) == GeoidKey::ManualSeparation) {
        m_manualSeparation = m_geoDatabase->GetManualGeoidSeparation(m_groupName, m_systemName);
        SetManualGeoidCtrl(true);
        UpdateData(false); // the list reads the controls back
        IniGeoidMdCombo(GeoidKey::ManualSeparation);
    }
    if (m_geoidMethodName == EditorTexts::StoredGridModelName())
        m_geoidMethodName = EditorTexts::GridModelName();
    {
        const QSignalBlocker quiet(m_ui->geoidMethodCombo);
        m_ui->geoidMethodCombo->setCurrentIndex(
            m_geoidMethodName.isEmpty()
                ? 0
                : m_ui->geoidMethodCombo->findText(m_geoidMethodName, Qt::MatchExactly));
    }
    {
        const QSignalBlocker quiet(m_ui->chartDatumCombo);
        if (GeoidKeyIndex(m_geoidMethodName) == GeoidKey::ChartDatum && !m_geoidFile.isEmpty()) {
            // the host's chart datum, else the one the system has stored
            const QString datum = !m_argChartDatum.isEmpty()
                                      ? m_argChartDatum
                                      : m_geoDatabase->GetChartDatum(m_groupName, m_systemName);
            m_ui->chartDatumCombo->setCurrentIndex(
                m_ui->chartDatumCombo->findText(datum, Qt::MatchExactly));
        } else {
            m_ui->chartDatumCombo->setCurrentIndex(0);
        }
    }

    UpdateData(false);
    OnSelChangeGeoidMethod();
    ShowPostCorrctInfo();
}

void AdvCoordSysDlg::SetUTMVisible(bool show) {
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->utmZoneLabel), static_cast<QWidget*>(m_ui->utmZoneCombo),
          static_cast<QWidget*>(m_ui->hemisphereLabel),
          static_cast<QWidget*>(m_ui->hemisphereCombo)})
        w->setVisible(show);
    m_utmMode = show;
}

void AdvCoordSysDlg::EnablePrjEditCtrls(bool enable) {
    // in UTM mode only the two lists change the rows
    for (CMaskEdit* edit : m_paramEdits)
        edit->setEnabled(enable && !m_utmMode);
    m_ui->prjMethodCombo->setEnabled(enable);
    m_ui->utmZoneCombo->setEnabled(enable);
    m_ui->hemisphereCombo->setEnabled(enable);
}

void AdvCoordSysDlg::SetReadOnlyControls() {
    DisableDtfValues();
    m_ui->prjMethodCombo->setEnabled(false);
    m_methodShift =
        m_utility.ReduceDtfMethodList(m_geoStatic.get(), m_ui->dtfMethodCombo, m_methodShift);
    EnablePrjEditCtrls(false);
    SetPostRadioStatu(false);
    SetPostHorAdjustStatu(false);
    SetPostVertAdjustStatu(false);
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->satSelectButton),
          static_cast<QWidget*>(m_ui->localSelectButton),
          static_cast<QWidget*>(m_ui->dtfSelectButton), static_cast<QWidget*>(m_ui->dtfNewButton),
          static_cast<QWidget*>(m_ui->prjSelectButton), static_cast<QWidget*>(m_ui->prjNewButton),
          static_cast<QWidget*>(m_ui->unitSelectButton), static_cast<QWidget*>(m_ui->unitNewButton),
          static_cast<QWidget*>(m_ui->translationCheck),
          static_cast<QWidget*>(m_ui->horAdjustCheck), static_cast<QWidget*>(m_ui->vertAdjustCheck),
          // nothing but the geoid model changes a pre-defined system
          static_cast<QWidget*>(m_ui->postMethodCombo), static_cast<QWidget*>(m_ui->postFileEdit),
          static_cast<QWidget*>(m_ui->postFileButton)})
        w->setEnabled(false);
}

void AdvCoordSysDlg::HideGeoidSection() {
    for (QWidget* w :
         {static_cast<QWidget*>(m_ui->geoidGroup), static_cast<QWidget*>(m_ui->geoidMethodLabel),
          static_cast<QWidget*>(m_ui->geoidMethodCombo),
          static_cast<QWidget*>(m_ui->geoidFileLabel), static_cast<QWidget*>(m_ui->geoidFileEdit),
          static_cast<QWidget*>(m_ui->geoidFileButton)})
        w->hide();
}

// --- change detection and saving ---

void AdvCoordSysDlg::OnOK() {
    if (!m_geoStatic || !m_geoDatabase) {
        Dialog::OnOK();
        return;
    }
    // A value that is no number keeps the dialog open (the exchange says so).
    if (!UpdateData(true))
        return;
    double e = 0.0, n = 0.0, z = 0.0;
    if (m_translationOn && !ReadTranslation(e, n, z, true))
        return;
    QList<double> rows;
    if (!m_utility.ReadParameterRows(m_paramEdits, rows, this))
        return;
    if (HasCoordSysChanged() &&
        GetUi().MessageBox(this, LoadOrvString(StrId::EditorSharedChangeWarning),
                           LoadOrvString(StrId::WarningCaption),
                           MsgButtons::OkCancel) != MsgAnswer::Ok)
        return;
    FillInGeoStaticData(); // the dialog closes even when the projection could not be filled in
    if (!m_readOnly)
        m_geoStatic->SaveCoordSys(); // the library rolls a failed save back; no message here
    Dialog::OnOK();
}

bool AdvCoordSysDlg::HasCoordSysChanged() {
    if (m_dtfIsStored && m_geoDatabase->IsDtfStoredOfType(m_dtfName, GEODB_USER)) {
        QString method;
        DtfValues stored{};
        std::array<double, 2> further{}, trailing{};
        unsigned char option = 0;
        m_geoDatabase->GetDtfParameters(m_dtfName, method, stored, further, option, trailing);
        UpdateData(true);
        const DtfValues shown = DtfValueList();
        for (int i = 0; i < kDtfValueCount; ++i) {
            // exact: any difference, or a value that is no number, is a change
            if (!(shown[i] == stored[i]))
                return true;
        }
    }
    if (!m_prjIsStored)
        return false;
    if (!m_geoDatabase->IsPrjStoredOfType(m_prjName, GEODB_USER))
        return false;
    std::array<double, WzdUtility::kMaxRows> now{};
    SaveProjectionData(now);
    for (int i = 0; i < WzdUtility::kMaxRows; ++i) {
        if (!(now[i] == m_savedPrjValues[i]))
            return true;
    }
    return false;
}

bool AdvCoordSysDlg::FillInGeoStaticData() {
    OrvGeoStaticDataBase& sd = *m_geoStatic;
    sd.SelectLocalEllipsoid(m_desEllipsoid, QString());
    sd.SetLocalEllipsoidValues(m_localValues);
    sd.SelectSatelliteEllipsoid(m_srcEllipsoid);

    sd.SetDtfDescription(m_dtfDescription);
    sd.SetDtfExtraText(m_dtfExtraText);
    sd.SetDtfMethod(m_dtfMethodName, m_dtfMethodIndex);
    sd.SetDtfName(m_dtfName, QString());
    sd.SetDtfParameters(DtfValueList(), m_dtfOption, m_dtfFurther[0], m_dtfFurther[1]);

    sd.SetProjectionName(m_prjName, static_cast<short>(m_prjMethodId));
    sd.SetProjectionMethod(m_prjMethodName);
    if (!FillInPrjData())
        return false; // nothing after the projection is written

    sd.SetUnitName(m_unitName, QString());
    sd.SetUnitDefinition(m_unitFactor, m_unitDescription, m_unitCategory);

    if (m_geoidInUse) {
        sd.SetGeoidEnabled(true);
        sd.SetGeoidModelName(m_loadedGeoidName);
        sd.SetGeoidModelFile(m_loadedGeoidFile);
        sd.SetGeoidMethod(GetGeoidModelName());
        sd.SetGeoidFile(GetGeoidModelFileName());
        sd.SetChartDatum(m_ui->chartDatumCombo->currentIndex() < 0
                             ? QString()
                             : m_ui->chartDatumCombo->currentText());
        if (GeoidKeyIndex(m_geoidMethodName) == GeoidKey::ManualSeparation)
            sd.SetManualGeoidSeparation(m_manualSeparation);
    } else {
        sd.SetGeoidModelFile(QString());
        sd.SetGeoidModelName(QString());
        sd.SetGeoidMethod(QString());
        sd.SetGeoidFile(QString());
        sd.SetChartDatum(QString());
        sd.SetGeoidEnabled(false);
    }

    double e = 0.0, n = 0.0, z = 0.0;
    if (m_translationOn)
        ReadTranslation(e, n, z, false);
    sd.SetPostTranslationOn(m_translationOn);
    sd.SetPostTranslation(e, n, z);
    sd.SetPostHorAdjustOn(m_horAdjustOn);
    if (m_horAdjustOn)
        sd.SetPostHorAdjust(m_horAdjust[3], m_horAdjust[0], m_horAdjust[1], m_horAdjust[2]);
    else
        sd.SetPostHorAdjust(1.0, 0.0, 0.0, 0.0);
    sd.SetPostVertAdjustOn(m_vertAdjustOn);
    if (m_vertAdjustOn)
        sd.SetPostVertAdjust(m_vertAdjust[0], m_vertAdjust[1], m_vertAdjust[2], m_vertAdjust[3]);
    else
        sd.SetPostVertAdjust(0.0, 0.0, 0.0, 0.0);

    QString postMethod = m_ui->postMethodCombo->currentIndex() < 0
                             ? QString()
                             : m_ui->postMethodCombo->currentText();
    QString postFile = m_postFile;
    if (postMethod == EditorTexts::None()) {
        postMethod.clear();
        postFile.clear();
    }
    sd.SetPostText1(m_postText1);
    sd.SetPostText2(m_postText2);
    sd.SetPostModelName(postMethod);
    sd.SetPostModelFile(postFile);

    sd.AssignSystemName(m_systemName, QString());
    sd.SetGroupName(m_groupName, QString());
    return true;
}

bool AdvCoordSysDlg::EditSave() {
    return m_geoStatic && m_geoStatic->SaveCoordSys();
}
