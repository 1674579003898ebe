#pragma once

#include "platform/ScriptedUi.h"
#include "support/QtPrinters.h"
#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <QAbstractButton>

#include <gtest/gtest.h>

// The real wizard on a fresh user database in a temporary folder beside the real system
// database, shown offscreen, with a scripted interface whose every mismatch fails the test.
// Pages are reached by activating them; from there the test uses the wizard's buttons and the
// page's own controls, found by objectName.
class WizardPageTest : public ::testing::Test {
protected:
    WizardPageTest();
    ~WizardPageTest() override;

    // Initialises and shows the wizard on WIZPage<number> (in the page list it has now).
    void OpenOn(int number);
    WizardPage* Page(int number) { return wizard.GetWizardPage(number); }
    // A control of a page by its objectName (the test fails when there is none).
    template <class T> T* Control(int number, const QString& name) {
        T* control = Page(number)->findChild<T*>(name);
        EXPECT_NE(control, nullptr) << "no control " << name.toStdString();
        return control;
    }
    // Clicks a page's button, or the wizard's Next / Back, and lets posted requests run.
    void Click(int number, const QString& buttonName);
    void Next();
    void Back();
    // The number of the page the wizard shows (-1 for none).
    int ShownPage() const;
    static void Flush();

    TempDataFolder data;
    GeoWizard wizard;
    ScriptedUi ui;
};
