#pragma once

#include "pages/WizardPage.h"

// Projection selection page: the stored projections grouped by method.
class WIZPage8 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage8(GeoWizard* sheet);
};
