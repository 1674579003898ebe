#pragma once

#include "pages/WizardPage.h"

// An empty page the sheet can place in the flow; it paints no banner and keeps one
// text it is given.
class WIZPage14 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage14(GeoWizard* sheet);

    void SetText(const QString& text) { m_text = text; }
    QString GetText() const { return m_text; }

private:
    QString m_text;
};
