#pragma once

#include "pages/WizardPage.h"

// Projection choice page: use an existing projection or make a new one; the choice
// rebuilds the page list.
class WIZPage7 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage7(GeoWizard* sheet);
};
