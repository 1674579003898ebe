#pragma once

#include "pages/WizardPage.h"

// Post correction page: offsets and a shift model added to the computed coordinates.
class WIZPage13 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage13(GeoWizard* sheet);
};
