#pragma once

#include "pages/WizardPage.h"

// Datum transformation selection page: the transformations between the two ellipsoids.
class WIZPage4 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage4(GeoWizard* sheet);
};
