#pragma once

#include "dialogs/PickerDialog.h"

#include <memory>

namespace Ui {
class DatumTransfmSelDlg;
}

// "Select Datum Transformation": the datum transformations between a satellite and a local
// ellipsoid beside the information of the current one. The caller may preset both ellipsoid
// names (else the owner's current ellipsoids are taken) and the name to select, and reads
// the chosen name and its auxiliary text after OK.
class DatumTransfmSelDlg : public PickerDialog {
    Q_OBJECT
public:
    // Without an owner there is no database: the tree stays empty.
    explicit DatumTransfmSelDlg(QWidget* parent = nullptr);
    // For the editor (or a naming dialog of the editor): its database and ellipsoids.
    explicit DatumTransfmSelDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    // For the wizard sheet: its database and ellipsoids.
    explicit DatumTransfmSelDlg(PropertySheet* sheet, QWidget* parent = nullptr);
    ~DatumTransfmSelDlg() override;

    void SetEllipsoidNames(const QString& satellite, const QString& local);
    QString GetSatelliteEllipsoidName() const { return m_satelliteName; }
    QString GetLocalEllipsoidName() const { return m_localName; }
    void SetSelName(const QString& name) { m_selName = name; }
    QString GetSelName() const { return m_selName; }
    QString GetAuxText() const { return m_auxText; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;

protected:
    void OnSelChangedTree(const QModelIndex& sourceIndex) override;

private:
    DatumTransfmSelDlg(DialogOwner* owner, QWidget* parent, int);
    void FillTree();

    std::unique_ptr<Ui::DatumTransfmSelDlg> m_ui;
    QString m_satelliteName;
    QString m_localName;
    QString m_selName;
    QString m_auxText;
    QString m_paneText;
};
