#include "pages/WIZPage1.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage1::WIZPage1(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage1"), StrId::TitleSelectSystem,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
