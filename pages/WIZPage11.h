#pragma once

#include "pages/WizardPage.h"

// Save page: the group the new system is saved in.
class WIZPage11 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage11(GeoWizard* sheet);
};
