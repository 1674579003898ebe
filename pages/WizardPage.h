#pragma once

#include "platform/PropertyPage.h"

class GeoWizard;
class QLabel;

// What every page of the coordinate-system wizard shares: the sheet that owns it, its
// title painted in the banner, the page-number label at the top right and the area below
// the banner that holds the page's controls.
class WizardPage : public PropertyPage {
    Q_OBJECT
public:
    // titleId: string table id of the banner title (0: the page paints no banner);
    // buttons: the wizard buttons the page asks for when it becomes active.
    WizardPage(GeoWizard* sheet, const QString& name, int titleId, unsigned buttons);

    GeoWizard* GetSheet() const { return m_sheet; }
    QString Title() const { return m_title; }
    QString PageNumberText() const { return m_pageNumberText; }
    // The page's controls go here (below the banner).
    QWidget* ContentArea() const { return m_content; }

    bool OnSetActive() override;

    // Height of the banner band the sheet paints over every page.
    static constexpr int kBannerHeight = 20;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    GeoWizard* m_sheet;
    QString m_pageNumberText;

private:
    QString m_title;
    unsigned m_buttons;
    QLabel* m_pageNumber;
    QWidget* m_content;
};
