#pragma once

#include "api/GeoTypes.h"
#include "dialogs/DialogOwner.h"
#include "platform/Dialog.h"
#include "wizard/WzdUtility.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>

class CMaskEdit;
class OrvGeoDatabaseBase;
class OrvGeoStaticDataBase;
class QLabel;
class QLineEdit;

namespace Ui {
class AdvCoordSysDlg;
}

// "Edit Coordinate System": every part of one stored coordinate system on one page, in seven
// group boxes (satellite and local ellipsoid, datum transformation, projection, unit, geoid
// model, post grid corrections). A system of the pre-defined database opens read-only. OK
// warns when a stored datum transformation or projection that other systems may share was
// changed, fills the static data object and saves the system.
//
// The host sets the data source (SetDllType), runs the dialog modally and after OK reads the
// five geoid and post values back: each is empty unless the person changed it to something
// the stored system does not hold.
class AdvCoordSysDlg : public Dialog, public CoordSysEditorOwner {
    Q_OBJECT
public:
    AdvCoordSysDlg(QString groupName, QString systemName, QString geoidModelName,
                   QString geoidModelFileName, QString geoidChartDatum, QString postModelName,
                   QString postModelFileName, bool spare, QWidget* parent = nullptr,
                   bool showGeoid = true);
    ~AdvCoordSysDlg() override;

    void SetDllType(const QString& dllType) { m_dllType = dllType; }
    QString GetDllType() const { return m_dllType; }
    QString GetSrcEllipsoid() const { return m_srcEllipsoid; }
    QString GetTargetEllipsoid() const { return m_desEllipsoid; }
    OrvGeoStaticDataBase* GetGeoStaticData() const { return m_geoStatic.get(); }
    // The five geoid and post values as they stand (with the geoid section hidden, the geoid
    // values as the host gave them).
    QString GetGeoidModelName() const;
    QString GetGeoidModelFileName() const;
    QString GetGeoidChartDatum() const;
    QString GetPostModelName() const { return m_callerPostName; }
    QString GetPostModelFileName() const { return m_callerPostFile; }
    // Writes the filled-in system (SaveCoordSys of the static data object).
    bool EditSave();

    // The dialogs' view of the editor.
    OrvGeoDatabaseBase* GetGeoDatabase() const override { return m_geoDatabase.get(); }
    OrvGeoStaticDataBase* GetGeoStatic() const override { return m_geoStatic.get(); }
    QString CurrentSatelliteEllipsoid() const override { return m_srcEllipsoid; }
    QString CurrentLocalEllipsoid() const override { return m_desEllipsoid; }

    bool IsReadOnly() const { return m_readOnly; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    void OnOK() override;

private:
    friend class AdvCoordSysDlgProbe; // tests reach the private operations through it

    static constexpr int kDtfValueCount = 15;
    static constexpr int kDtfLabelCount = 9;
    static constexpr int kParamCount = 7;

    // --- state and initialisation ---
    bool Initialize();
    bool IniCtrlStatus();
    bool IniComboBoxs();
    void IniUTMComboxs();
    void DisableDttransEditInfo();
    void IniDataInCtrls();
    void SetWindowTitle();
    void ShowSystemInfo();
    void SetUTMVisible(bool show);
    void EnablePrjEditCtrls(bool enable);
    void SetReadOnlyControls();
    void HideGeoidSection();

    // --- datum transformation and ellipsoids ---
    void OnSelchangDttransMd();
    void OnLoadPreDttrfm();
    void ONCreateNewDatum();
    void OnSelPreEllipsoid();
    void OnSelSrcElllipsoid();
    void DoSelDttransMd(short methodIndex);
    void EnableDttransInfo(short count);
    void EnableDtfEdit(bool enable);
    bool RefreshDttrans(const QString& dtfName);
    void SetDtfTitle(const QString& satellite, const QString& local, bool rename);
    void SetNoDtfShow(bool none);
    // The seven parameters, seven rates and the epoch in their list order.
    DtfValues DtfValueList() const;
    void SetDtfValueList(const DtfValues& values);
    void DisableDtfValues();

    // --- projection and unit ---
    void OnSelchangePrjcombo();
    void OnSelchangeUTMZone();
    void OnSelchangUTMSphere();
    void OnLoadPrePrj();
    void OnCreateNewPrj();
    void OnSelectUnit();
    void OnCreateNewUnit();
    void SetPrjComboFocus(const QString& methodName);
    void ShowUTMPrjInfo(const QString& projectionName, bool stored);
    void SaveProjectionData(std::array<double, WzdUtility::kMaxRows>& out) const;
    bool DoOrvPrjUnitConversion(bool convert, double newFactor, bool direction);
    bool FillInPrjData();
    QString DumpUnitText() const;
    static QString BuildIndentString(int depth);
    // Lays out the rows of a projection's stored parameters (or the method's defaults when
    // projectionName is empty).
    void LoadParameterRows(const QString& projectionName, const QString& methodName);
    // Shared by OnLoadPrePrj and OnCreateNewPrj from the chosen or base projection on.
    void TakeProjection(const QString& projection, const QString& methodName, bool created);

    // --- geoid and post corrections ---
    void OnSelChangeGeoidMethod();
    void OnSelectGridFile();
    void OnSelchangeChartDatum();
    void OnSelchangePostcombo();
    void OnAdvPostFileButton();
    void OnAdvPostCheck();
    void OnAdvHorAdjustCheck();
    void OnAdvVertAdjustCheck();
    void IniGeoidMdCombo(int startIndex);
    void IniPostCorrctCombo();
    void EnableChartDatum(bool show);
    void SetManualGeoidCtrl(bool manual);
    void ShowPostCorrctInfo();
    void SetPostRadioStatu(bool enable);
    void SetPostHorAdjustStatu(bool enable);
    void SetPostVertAdjustStatu(bool enable);
    // The key index of a method name (case ignored) from the start index on; -1 when none.
    int GeoidKeyIndex(const QString& methodName, int from = 0) const;
    // The translation edits are read and written directly (no field).
    bool ReadTranslation(double& e, double& n, double& z, bool report);
    void WriteTranslation(double e, double n, double z);

    // --- change detection and saving ---
    bool HasCoordSysChanged();
    bool FillInGeoStaticData();

    std::unique_ptr<Ui::AdvCoordSysDlg> m_ui;
    std::array<QLineEdit*, kDtfValueCount> m_dtfEdits{};
    std::array<QLabel*, kDtfLabelCount> m_dtfLabels{};
    std::array<QLabel*, WzdUtility::kMaxRows> m_paramLabels{};
    std::array<CMaskEdit*, WzdUtility::kMaxRows> m_paramEdits{};
    WzdUtility m_utility;

    // constructor arguments
    QString m_groupName;
    QString m_systemName;
    QString m_argGeoidName, m_argGeoidFile, m_argChartDatum; // as the host gave them
    bool m_spare = false;
    bool m_showGeoid = true;
    QString m_dllType;

    std::unique_ptr<OrvGeoStaticDataBase> m_geoStatic;
    std::unique_ptr<OrvGeoDatabaseBase> m_geoDatabase;
    bool m_readOnly = false;

    // ellipsoids and datum transformation
    QString m_srcEllipsoid;
    QString m_desEllipsoid;
    EllipsoidValues m_localValues{};
    QString m_dtfName;
    QString m_dtfMethodName;
    short m_dtfMethodIndex = 0;
    int m_methodShift = 0; // added to the Method list position while the list is reduced
    std::array<double, kParamCount> m_dtfParams{};
    std::array<double, kParamCount> m_dtfRates{};
    double m_epoch = 0.0;
    std::array<double, 2> m_dtfFurther{}; // the two further values of GetDtfParameters
    unsigned char m_dtfOption = 0;
    QString m_dtfDescription;
    QString m_dtfExtraText;
    bool m_noDtf = false;
    bool m_dtfIsStored = true;

    // projection and unit
    QString m_prjName;
    QString m_prjMethodName;
    int m_prjMethodId = 0;
    std::array<double, WzdUtility::kMaxRows> m_savedPrjValues{};
    bool m_prjIsStored = true;
    bool m_utmMode = false;
    QString m_utmZoneText;
    QString m_hemisphereText;
    double m_utmFalseNorthing = 0.0;
    double m_utmCentralMeridian = 3.0;
    int m_labelScheme = 0;
    // the parameters the rows were laid out from (hidden ones included)
    QStringList m_paramNames;
    QStringList m_paramValues;
    QList<unsigned> m_paramTypes;
    QString m_unitName;
    double m_unitFactor = 0.0;
    QString m_unitDescription;
    int m_unitCategory = UNIT_CATEGORY_LENGTH;
    QString m_unitInfoLine; // the line under the unit name
    QString m_savedPrjName;
    QString m_savedPrjMethodName;

    // geoid model
    bool m_geoidInUse = false;
    QString m_geoidMethodName;
    QString m_geoidFile;
    QString m_loadedGeoidName, m_loadedGeoidFile; // as stored (OSGM02 names mapped)
    double m_manualSeparation = 0.0;
    int m_geoidStartIndex = 2;
    QString m_callerGeoidName, m_callerGeoidFile, m_callerChartDatum;

    // post grid corrections
    bool m_translationOn = false;
    bool m_horAdjustOn = false;
    bool m_vertAdjustOn = false;
    QString m_postMethodName;
    QString m_postFile;
    QString m_callerPostName, m_callerPostFile;
    QString m_postText1, m_postText2;                      // carried through unchanged
    std::array<double, 3> m_translationShown{};            // the translation as last written
    std::array<double, 4> m_horAdjust{0.0, 0.0, 0.0, 1.0}; // origin E, N, rotation, scale
    std::array<double, 4> m_vertAdjust{};                  // origin E, N, slope E, N
};
