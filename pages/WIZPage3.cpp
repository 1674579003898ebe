#include "pages/WIZPage3.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage3::WIZPage3(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage3"), StrId::TitleDtf,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
