#include "pages/WIZPage10.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage10::WIZPage10(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage10"), StrId::TitleGeoidModel,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
