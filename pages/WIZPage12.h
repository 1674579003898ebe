#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage12;
}

// Overview page: the overview of the system the earlier pages built. Finish saves it and
// reports its group and name to the sheet; "Terrameter" saves it and starts the geodetic
// calculator on it. A save the library refuses is shown with its reason and keeps the
// wizard open.
class WIZPage12 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage12(GeoWizard* sheet);
    ~WIZPage12() override;

    QString GetOverviewText() const { return m_overviewText; }

    bool OnSetActive() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnWizardFinish() override;

    // The "Terrameter" button.
    void OnTerrameter();

    // " -G:"<group>" -S:"<system>"": the calculator's parameters, names as they are; a data
    // source other than the default follows as " --data "<source>"", so that the calculator
    // opens the database the system was saved in.
    static QString CalculatorParameters(const QString& group, const QString& system,
                                        const QString& dataSource = QString());

private:
    // SaveCoordSys; false after showing the library's reason.
    bool SaveSystem();

    std::unique_ptr<Ui::WIZPage12> m_ui;
    QString m_overviewText;
};
