#pragma once

#include "pages/WizardPage.h"

// Datum transformation parameters page: name, method, the fifteen values and the
// description.
class WIZPage5 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage5(GeoWizard* sheet);
};
