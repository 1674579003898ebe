#include "pages/WIZPage9.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage9::WIZPage9(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage9"), StrId::TitlePrjParameters,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
