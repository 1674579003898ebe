#pragma once

#include "pages/WizardPage.h"

// Geoid model page: geoid model method, its file and the chart datum.
class WIZPage10 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage10(GeoWizard* sheet);
};
