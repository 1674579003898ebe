#include "PageTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NewUnitDlg.h"
#include "pages/WIZPage6.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace {

class UnitPage : public WizardPageTest {
protected:
    WIZPage6* page() { return static_cast<WIZPage6*>(Page(6)); }
    QComboBox* combo() { return Control<QComboBox>(6, QStringLiteral("unitCombo")); }
    QString info() { return Control<QLabel>(6, QStringLiteral("unitInfo"))->text(); }
    // The person picks an entry of the list.
    void pick(const QString& unit) {
        const int index = combo()->findText(unit);
        ASSERT_GE(index, 0) << unit.toStdString();
        combo()->setCurrentIndex(index);
        emit combo()->activated(index);
        Flush();
    }
    double staticFactor() {
        double factor = 0;
        wizard.GetGeoStatic()->GetCurrentUnitFactor(factor);
        return factor;
    }
    QString staticUnit() {
        QString unit;
        return wizard.GetGeoStatic()->GetSystemUnit(unit);
    }
    QString descriptionAfterFirstLine(const QString& unit) {
        QString text;
        wizard.GetGeoDatabase()->GetUnitDescription(text, unit);
        return text.mid(text.indexOf(QLatin1Char('\n')) + 1);
    }
};

} // namespace

// The page opens on the sheet's default unit with its information and hands it over at once.
TEST_F(UnitPage, OpensOnTheDefaultUnit) {
    OpenOn(6);
    EXPECT_EQ(combo()->currentText(), QStringLiteral("Meters"));
    EXPECT_EQ(info(), descriptionAfterFirstLine(QStringLiteral("Meters")));
    EXPECT_EQ(staticUnit(), QStringLiteral("Meters"));
    EXPECT_EQ(staticFactor(), 1.0);
    EXPECT_TRUE(wizard.GetUnitInit());
    EXPECT_EQ(Control<QLabel>(6, QStringLiteral("unitPageInfo"))->text(),
              QStringLiteral("The selected unit will be used for the projection parameters and "
                             "therefore it becomes the system unit."));
}

TEST_F(UnitPage, WithoutADefaultUnitMetersIsSelected) {
    wizard.SetDefaultUnit(QString());
    OpenOn(6);
    EXPECT_EQ(combo()->currentText(), QStringLiteral("Meters"));
}

// Picking another unit hands it to the static data at once; Next then passes its name with the
// factor and suffix of the unit the list was filled with (kept as designed). The library takes
// a stored unit by its name, so the system still gets that unit's own factor.
TEST_F(UnitPage, NextPassesTheNewNameWithTheFirstUnitsFactor) {
    OpenOn(6);
    pick(QStringLiteral("US survey foot"));
    EXPECT_EQ(staticUnit(), QStringLiteral("US survey foot"));
    EXPECT_NEAR(staticFactor(), 0.304800609601219, 1e-15);
    EXPECT_EQ(info(), descriptionAfterFirstLine(QStringLiteral("US survey foot")));

    Next();
    EXPECT_EQ(ShownPage(), 7);
    EXPECT_EQ(wizard.GetUnit(), QStringLiteral("US survey foot"));
    EXPECT_EQ(page()->GetMetersPerUnit(), 1.0); // handed over: the factor of "Meters"
    EXPECT_EQ(page()->GetUnitSuffix(), QStringLiteral("m"));
    EXPECT_EQ(staticUnit(), QStringLiteral("US survey foot"));
    EXPECT_NEAR(staticFactor(), 0.304800609601219, 1e-15);
}

// "New" stores the unit through the new-unit dialog, appends it at the end of the list,
// selects it and hands it over; a cancelled dialog changes nothing.
TEST_F(UnitPage, NewUnitIsAppendedSelectedAndHandedOver) {
    OpenOn(6);
    const int before = combo()->count();
    ui.ExpectModal<NewUnitDlg>([](NewUnitDlg& dialog) {
        dialog.reject();
        return dialog.result();
    });
    Click(6, QStringLiteral("newUnit"));
    EXPECT_EQ(combo()->count(), before);
    EXPECT_EQ(combo()->currentText(), QStringLiteral("Meters"));

    ui.ExpectModal<NewUnitDlg>([](NewUnitDlg& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Rod"));
        dialog.findChild<QLineEdit*>(QStringLiteral("factorEdit"))
            ->setText(QStringLiteral("5.0292"));
        dialog.findChild<QPlainTextEdit*>(QStringLiteral("suffixEdit"))
            ->setPlainText(QStringLiteral("rd"));
        dialog.accept();
        return dialog.result();
    });
    Click(6, QStringLiteral("newUnit"));
    ASSERT_EQ(combo()->count(), before + 1);
    EXPECT_EQ(combo()->itemText(before), QStringLiteral("Rod"));
    EXPECT_EQ(combo()->currentText(), QStringLiteral("Rod"));
    EXPECT_TRUE(wizard.GetGeoDatabase()->UnitNameExists(QStringLiteral("Rod"), GEODB_USER));
    EXPECT_EQ(page()->GetCreatedUnitName(), QStringLiteral("Rod"));
    EXPECT_EQ(staticFactor(), 5.0292);

    Next();
    EXPECT_EQ(wizard.GetUnit(), QStringLiteral("Rod"));
    EXPECT_EQ(staticFactor(), 5.0292);
    QString suffix;
    double factor = 0;
    int category = 0;
    QString description;
    ASSERT_TRUE(wizard.GetGeoDatabase()->GetUnitDefinition(QStringLiteral("Rod"), suffix, factor,
                                                           category, description));
    EXPECT_EQ(suffix, QStringLiteral("rd"));
}
