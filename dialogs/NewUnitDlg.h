#pragma once

#include "dialogs/DialogOwner.h"
#include "platform/Dialog.h"

#include <QString>

#include <memory>

class PropertySheet;

namespace Ui {
class NewUnitDlg;
}

// "New Unit": asks for the name, the metres per unit and the name suffix of a new length
// unit and stores it in the user database on OK. A name that either database already holds
// is refused; the dialog does not check for an empty name or a factor of zero or below (what
// the database itself refuses is reported with its reason).
class NewUnitDlg : public Dialog {
    Q_OBJECT
public:
    // Without an owner there is no database: OK does nothing.
    explicit NewUnitDlg(QWidget* parent = nullptr);
    // For the editor: its database and static data.
    explicit NewUnitDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    // For the wizard sheet: its database and static data (GetGeoDatabase, GetGeoStatic).
    explicit NewUnitDlg(PropertySheet* sheet, QWidget* parent = nullptr);
    ~NewUnitDlg() override;

    // Presets, read by OnInitDialog.
    void SetName(const QString& name) { m_name = name; }
    void SetMetersPerUnit(double metersPerUnit) { m_metersPerUnit = metersPerUnit; }
    void SetNameSuffix(const QString& suffix) { m_nameSuffix = suffix; }
    // What was stored, after OK.
    QString GetName() const { return m_name; }
    double GetMetersPerUnit() const { return m_metersPerUnit; }
    QString GetNameSuffix() const { return m_nameSuffix; }

    OrvGeoDatabaseBase* GetGeoDatabase() const { return m_geoDatabase; }
    OrvGeoStaticDataBase* GetGeoStatic() const { return m_geoStatic; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    void OnOK() override;

private:
    NewUnitDlg(DialogOwner* owner, QWidget* parent, int);

    std::unique_ptr<Ui::NewUnitDlg> m_ui;
    OrvGeoDatabaseBase* m_geoDatabase = nullptr;
    OrvGeoStaticDataBase* m_geoStatic = nullptr;
    QString m_nameSuffix;
    double m_metersPerUnit = 0.0;
    QString m_name;
};
