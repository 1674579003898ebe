#pragma once

#include "pages/WizardPage.h"

// Overview page: the overview of the new system; Finish saves it.
class WIZPage12 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage12(GeoWizard* sheet);
};
