#include "pages/WIZPage14.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage14::WIZPage14(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage14"), 0,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
