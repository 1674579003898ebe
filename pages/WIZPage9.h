#pragma once

#include "pages/WizardPage.h"

// Projection parameters page: name, method, the parameter rows and the UTM zone and
// hemisphere.
class WIZPage9 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage9(GeoWizard* sheet);
};
