#pragma once

#include "api/GeoTypes.h"
#include "platform/Dialog.h"

#include <QModelIndex>
#include <QPersistentModelIndex>

#include <memory>

class OrvGeoDatabaseBase;
class PickerTree;

namespace Ui {
class SysSelectionDlg;
}

// "Select Coordinate System": the stored systems under their databases and groups beside the
// information of the selected one, with Add (the wizard), Edit (the editor) and Remove. The
// host presets its current group and system and reads the chosen ones after OK.
class SysSelectionDlg : public Dialog {
    Q_OBJECT
public:
    // scope: the databases left out of the tree (bit 2 the system database, bit 1 the user
    // database); editFlag: the dialog may change systems (then Add is off).
    SysSelectionDlg(geodb_type scope, bool editFlag, QWidget* parent = nullptr);
    ~SysSelectionDlg() override;

    void SetDllType(QString dllType) { m_dllType = dllType; }
    // Set the selection and the host's current system.
    void SetGroupName(QString group);
    QString GetGroupName() const { return m_groupName; }
    void SetSystemName(QString system);
    QString GetSystemName() const { return m_systemName; }
    // The host's current system only: it can be neither edited nor removed here.
    void SetCurGroupName(QString group) { m_curGroupName = group; }
    void SetCurSystemName(QString system) { m_curSystemName = system; }
    void SetGeoidModelName(QString text) { m_geoidModelName = m_presetGeoidModelName = text; }
    QString GetGeoidModelName() const { return m_geoidModelName; }
    void SetGeoidModelFileName(QString text) { m_geoidModelFile = m_presetGeoidModelFile = text; }
    QString GetGeoidModelFileName() const { return m_geoidModelFile; }
    void SetGeoidChartDatum(QString text) { m_chartDatum = m_presetChartDatum = text; }
    QString GetGeoidChartDatum() const { return m_chartDatum; }
    void SetPostModelName(QString text) { m_postModelName = m_presetPostModelName = text; }
    QString GetPostModelName() const { return m_postModelName; }
    void SetPostModelFileName(QString text) { m_postModelFile = m_presetPostModelFile = text; }
    QString GetPostModelFileName() const { return m_postModelFile; }

    PickerTree* Tree() const { return m_tree; }
    OrvGeoDatabaseBase* GetGeoDatabase() const { return m_database.get(); }

    bool OnInitDialog() override;
    void OnOK() override;

    // Handlers.
    void OnSelChangedTree(const QModelIndex& sourceIndex);
    void OnAdd();
    void OnEdit();
    void OnRemove();

private:
    void BuildTree();
    // Takes the group and system of an item (a system, a group or a root), the geoid and
    // post values that go with them, shows its information and sets the buttons.
    void Refresh(const QModelIndex& sourceIndex);
    // The library's information text of the selected system, handed the geoid and post
    // values that go with it.
    QString SystemInfoText() const;
    // Edit and Remove: a system other than the host's current one, with the edit flag.
    bool CanChange(const QModelIndex& sourceIndex) const;
    void SetButtons(const QModelIndex& sourceIndex);
    // Opens the database object again; false (and no object) when the data source fails.
    bool OpenDatabase();
    bool IsSystem(const QModelIndex& sourceIndex) const;

    std::unique_ptr<Ui::SysSelectionDlg> m_ui;
    PickerTree* m_tree = nullptr;
    std::unique_ptr<OrvGeoDatabaseBase> m_database;
    QPersistentModelIndex m_shown; // the item whose information the pane shows
    geodb_type m_scope;
    bool m_editFlag;
    QString m_dllType;
    QString m_groupName;
    QString m_systemName;
    QString m_curGroupName;
    QString m_curSystemName;
    QString m_geoidModelName, m_presetGeoidModelName;
    QString m_geoidModelFile, m_presetGeoidModelFile;
    QString m_chartDatum, m_presetChartDatum;
    QString m_postModelName, m_presetPostModelName;
    QString m_postModelFile, m_presetPostModelFile;
};
