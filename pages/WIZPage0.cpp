#include "pages/WIZPage0.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage0::WIZPage0(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage0"), StrId::TitleNewSystem,
                 PropertySheet::PSWIZB_NEXT) {}
