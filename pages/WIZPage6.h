#pragma once

#include "pages/WizardPage.h"

// Unit page: the unit of the projection parameters, which becomes the system unit.
class WIZPage6 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage6(GeoWizard* sheet);
};
