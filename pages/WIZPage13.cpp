#include "pages/WIZPage13.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage13::WIZPage13(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage13"), StrId::TitlePostCorrection,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
