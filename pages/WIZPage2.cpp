#include "pages/WIZPage2.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage2::WIZPage2(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage2"), StrId::TitleEllipsoids,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
