#include "pages/WIZPage11.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage11::WIZPage11(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage11"), StrId::TitleSaveSystem,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
