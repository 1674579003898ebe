#pragma once

#include "pages/WizardPage.h"

// Existing system page: the stored systems as a tree of groups; the chosen one is the
// starting point of the new system.
class WIZPage1 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage1(GeoWizard* sheet);
};
