#pragma once

#include "pages/WizardPage.h"

// System name page: the name of the new system and whether it is based on an
// existing one; its check box rebuilds the page list.
class WIZPage0 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage0(GeoWizard* sheet);

    // The name edit and the "Based on existing coordinate system:" check box.
    void SetNewSystemNameField(const QString& name) { m_newSystemName = name; }
    QString GetNewSystemNameField() const { return m_newSystemName; }
    void SetBasedOnExisting(int checked) { m_basedOnExisting = checked; }
    int GetBasedOnExisting() const { return m_basedOnExisting; }

private:
    QString m_newSystemName;
    int m_basedOnExisting = 0;
};
