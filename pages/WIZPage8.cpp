#include "pages/WIZPage8.h"

#include "platform/PropertySheet.h"
#include "resources/StringTable.h"

WIZPage8::WIZPage8(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage8"), StrId::TitleSelectProjection,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT) {}
