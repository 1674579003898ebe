#include "pages/WIZPage7.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage7::WIZPage7(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage7"), StrId::TitleProjection,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
