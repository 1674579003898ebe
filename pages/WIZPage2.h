#pragma once

#include "pages/WizardPage.h"

// Ellipsoid page: the satellite and the local ellipsoid of the new system.
class WIZPage2 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage2(GeoWizard* sheet);
};
