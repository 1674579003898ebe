#pragma once

#include "pages/WizardPage.h"

// Datum transformation choice page: use an existing datum transformation or make a new
// one; the choice rebuilds the page list.
class WIZPage3 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage3(GeoWizard* sheet);
};
