#pragma once

#include "pages/WizardPage.h"
#include "wizard/WzdUtility.h"

#include <QList>
#include <QStringList>

#include <array>
#include <memory>

class CMaskEdit;
class QLabel;

namespace Ui {
class WIZPage9;
}

// Projection parameters page: the name, the method and up to nine parameter rows of the
// projection of the system being built, the unit (read-only), and for UTM the zone and
// hemisphere lists instead of free entry. Next checks the name and the unit and hands the
// projection to the static data.
class WIZPage9 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage9(GeoWizard* sheet);
    ~WIZPage9() override;

    QString GetProjectionName() const { return m_projectionName; }
    QString GetMethodName() const { return m_methodName; }
    bool IsUtmMode() const { return m_utmMode; }
    int GetUsedRowCount() const { return m_usedRows; }
    double GetCentralMeridian() const { return m_centralMeridian; }
    double GetFalseNorthing() const { return m_falseNorthing; }
    QString GetZoneText() const { return m_zoneText; }
    QString GetHemisphereText() const { return m_hemisphereText; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // Handlers of the method, zone and hemisphere lists.
    void OnSelChangeMethod();
    void OnSelChangeZone();
    void OnSelChangeHemisphere();

private:
    void FillLists();
    // Lays out the rows for the method: from the page's stored projection when restoring,
    // else from the method's defaults (UTM: from the stored "UTM Zone-30N").
    void LayOutRows(bool restore);
    void InitialValues();
    // False keeps the page (a message was shown).
    bool CheckName();
    bool CheckUnit();
    void HandOver();
    // Whether a shown row differs from what was laid out from the stored projection.
    bool RowsChanged();
    int MethodId() const;

    std::unique_ptr<Ui::WIZPage9> m_ui;
    std::array<QLabel*, WzdUtility::kMaxRows> m_labels{};
    std::array<CMaskEdit*, WzdUtility::kMaxRows> m_edits{};
    WzdUtility m_utility;

    QString m_projectionName;
    int m_methodIndex = 0;
    QString m_methodName;
    QString m_initialMethodName;
    // The projection's parameters as laid out (all of them, hidden ones included), and the
    // row texts as laid out from the stored projection (to see what the person changed).
    QStringList m_paramNames;
    QStringList m_paramValues;
    QList<unsigned> m_paramTypes;
    QStringList m_storedRowTexts;
    int m_usedRows = 0;
    bool m_utmMode = false;
    double m_centralMeridian = 0.0;
    double m_falseNorthing = 0.0;
    QString m_zoneText;
    QString m_hemisphereText;
    QString m_unitText;
    bool m_filledOnce = false;
};
