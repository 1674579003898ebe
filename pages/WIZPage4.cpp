#include "pages/WIZPage4.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage4::WIZPage4(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage4"), StrId::TitleSelectDtf,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
