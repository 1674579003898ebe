#include "pages/WIZPage12.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage12::WIZPage12(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage12"), StrId::TitleOverview,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_FINISH) {}
