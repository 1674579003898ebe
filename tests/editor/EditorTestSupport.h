#pragma once

#include "api/OrvGeoCoordSysBase.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/PickerDialog.h"
#include "editor/AdvCoordSysDlg.h"
#include "pages/CommonDataFolder.h"
#include "platform/ScriptedUi.h"
#include "support/QtPrinters.h"
#include "support/TempDataFolder.h"

#include <QComboBox>
#include <QLineEdit>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

// Model files for one test: a program-data root whose ORV.ini puts the common data folder
// inside it (the editor's file dialogs start below it), the same ORV.ini in the data source's
// folder (where the engine reads it), and small exact grids over 50..54 N, 2..8 E: a GTX grid
// "site.gtx" of 10.5 m in the Netherlands folder, and the vertical datum model "MODEL1"
// (20 m) with the chart datum grids of LMSL (0.3 m) and MLLW (-1.2 m), listed in geoid.inf.
class ModelFolders : public CommonDataFolder {
public:
    explicit ModelFolders(const QString& dataFolder);
    void Grid(const QString& commonRelative, float value);
};

// What the host hands the editor besides the group and the system.
struct EditorArgs {
    QString geoidName, geoidFile, chartDatum, postName, postFile;
    bool showGeoid = true;
};

// The private operations of the editor that no control reaches.
class AdvCoordSysDlgProbe {
public:
    explicit AdvCoordSysDlgProbe(AdvCoordSysDlg& editor) : m_editor(editor) {}
    bool Convert(bool convert, double newFactor, bool direction) {
        return m_editor.DoOrvPrjUnitConversion(convert, newFactor, direction);
    }
    double UnitFactor() const { return m_editor.m_unitFactor; }
    void SetUnitFactor(double factor) { m_editor.m_unitFactor = factor; }
    void SetWindowTitle() { m_editor.SetWindowTitle(); }
    QString BuildIndentString(int depth) const { return AdvCoordSysDlg::BuildIndentString(depth); }
    bool HasCoordSysChanged() { return m_editor.HasCoordSysChanged(); }
    bool FillInGeoStaticData() { return m_editor.FillInGeoStaticData(); }
    int PrjMethodId() const { return m_editor.m_prjMethodId; }
    void SetPrjMethodId(int id) { m_editor.m_prjMethodId = id; }
    bool IsUtmMode() const { return m_editor.m_utmMode; }
    double CentralMeridian() const { return m_editor.m_utmCentralMeridian; }
    double FalseNorthing() const { return m_editor.m_utmFalseNorthing; }
    int MethodShift() const { return m_editor.m_methodShift; }
    int DtfMethodIndex() const { return m_editor.m_dtfMethodIndex; }
    QString DtfName() const { return m_editor.m_dtfName; }
    bool DtfIsStored() const { return m_editor.m_dtfIsStored; }
    bool PrjIsStored() const { return m_editor.m_prjIsStored; }
    QString UnitName() const { return m_editor.m_unitName; }
    bool GeoidInUse() const { return m_editor.m_geoidInUse; }

private:
    AdvCoordSysDlg& m_editor;
};

// The real editor on a fresh user database in a temporary folder beside the real system
// database, shown offscreen, with a scripted interface whose every mismatch fails the test.
class EditorTest : public ::testing::Test {
protected:
    EditorTest();
    ~EditorTest() override;

    // --- user systems, stored through the library ---
    // "North Sea" / "Rig 15": a time-dependent (15-value) datum transformation with a
    // default observation epoch, a user UTM projection (zone 31 N) in US survey feet, the
    // EGM96 grid as GTX geoid model, a translation and a horizontal adjustment.
    static const QString kGroup;
    static const QString kRig;
    // "North Sea" / "Harbour": a seven-value coordinate frame transformation, a user
    // Transverse Mercator projection in metres, no geoid model, no post correction.
    static const QString kHarbour;
    void StoreRig(const QString& name = kRig);
    void StoreHarbour(const QString& name = kHarbour);
    // Fills the record with a system and saves it; the test fails when saving fails.
    void Store(const std::function<void(OrvGeoStaticDataBase&)>& fill);
    // Loads a stored system of kGroup, changes it and saves it again.
    void Change(const QString& system, const std::function<void(OrvGeoStaticDataBase&)>& change);

    // --- the editor ---
    AdvCoordSysDlg& Open(const QString& group, const QString& system, EditorArgs args = {});
    template <class T> T* Control(const QString& name) {
        T* control = editor ? editor->findChild<T*>(name) : nullptr;
        EXPECT_NE(control, nullptr) << "no control " << name.toStdString();
        return control;
    }
    QString Text(const QString& editName) { return Control<QLineEdit>(editName)->text(); }
    void SetText(const QString& editName, const QString& text);
    // Chooses an entry of a list as a person would (the entry must exist).
    void Choose(const QString& listName, const QString& text);
    void Click(const QString& buttonName);
    void ClickCheck(const QString& checkName);
    void PressOk();
    void PressCancel();
    static void Flush();

    // --- nested dialogs ---
    // Selects an entry of a picker's tree (below a group when one is given) and accepts it.
    static int Pick(PickerDialog& picker, const QString& name, const QString& group = QString());

    // --- what is stored ---
    // Every table of the user database, row by row, every column.
    QString DumpUserDb() const;
    // A WGS 84 position converted by the stored system (a fresh coordinate system object).
    GeoPoint Forward(const QString& group, const QString& system, GeoPoint point);

    TempDataFolder data;
    ScriptedUi ui;
    std::unique_ptr<OrvGeoDatabaseBase> db;
    std::unique_ptr<OrvGeoStaticDataBase> sd;
    std::unique_ptr<AdvCoordSysDlg> editor;
};
