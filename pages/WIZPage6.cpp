#include "pages/WIZPage6.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage6::WIZPage6(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage6"), StrId::TitleUnit,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
