#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPainter>

#include <gtest/gtest.h>

namespace {
void flush() {
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}
} // namespace

TEST(Banner, RenderedWizardShowsTitleSeparatorAndPageNumber) {
    TempDataFolder data;
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(data.dllType());
    wizard.show();
    flush();
    ASSERT_TRUE(wizard.IsInitialised());

    const QImage image = wizard.grab().toImage();
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(wizard.windowTitle(), QStringLiteral("Coordinate System Wizard"));

    // the etched separator under the title, across the whole sheet
    for (int x : {0, 5, image.width() / 2, image.width() - 1}) {
        EXPECT_EQ(image.pixelColor(x, 18), QColor(128, 128, 128)) << "x " << x;
        EXPECT_EQ(image.pixelColor(x, 19), QColor(255, 255, 255)) << "x " << x;
    }
    // the title: dark pixels in the band above the separator, at the left
    int dark = 0;
    for (int y = 0; y < 18; ++y)
        for (int x = 0; x < 150; ++x)
            if (image.pixelColor(x, y).lightness() < 100)
                ++dark;
    EXPECT_GT(dark, 20);

    auto* number = wizard.GetWizardPage(0)->findChild<QLabel*>(QStringLiteral("pageNumber"));
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number->text(), QStringLiteral("1 of 12"));
    EXPECT_GT(number->geometry().left(), image.width() / 2); // top right corner
    EXPECT_LT(number->geometry().bottom(), 18);
    EXPECT_EQ(wizard.GetWizardPage(0)->PageNumberText(), QStringLiteral("1 of 12"));
    wizard.hide();
}

TEST(Banner, TitleIsPaintedInNormalWeight) {
    // a bold sheet font still paints the title at weight 400
    QImage normal(300, 20, QImage::Format_ARGB32), fromBold(300, 20, QImage::Format_ARGB32);
    GeoWizard wizard(QStringLiteral("w"));
    wizard.resize(300, 200);
    auto paint = [&](QImage& image) {
        image.fill(Qt::white);
        QPainter dc(&image);
        wizard.OnPaint(dc, QStringLiteral("Datum Transformation Parameters"));
    };
    paint(normal);
    QFont bold = wizard.font();
    bold.setBold(true);
    wizard.setFont(bold);
    paint(fromBold);
    EXPECT_EQ(normal, fromBold);
}
