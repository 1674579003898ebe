#include "pages/WIZPage5.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage5::WIZPage5(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage5"), StrId::TitleDtfParameters,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
