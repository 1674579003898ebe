#include "PageTestSupport.h"

#include <QApplication>
#include <QPushButton>

WizardPageTest::WizardPageTest()
    : wizard(QStringLiteral("Coordinate System")),
      ui([](const QString& message) { ADD_FAILURE() << message.toStdString(); }) {
    wizard.SetDllType(data.dllType());
}

WizardPageTest::~WizardPageTest() {
    wizard.hide();
}

void WizardPageTest::Flush() {
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

void WizardPageTest::OpenOn(int number) {
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    wizard.show();
    Flush();
    const int index = wizard.GetPageIndex(Page(number));
    ASSERT_GE(index, 0) << "WIZPage" << number << " is not in the page list";
    ASSERT_TRUE(wizard.SetActivePage(index));
    Flush();
}

void WizardPageTest::Click(int number, const QString& buttonName) {
    if (auto* button = Control<QAbstractButton>(number, buttonName))
        button->click();
    Flush();
}

void WizardPageTest::Next() {
    wizard.NextButton()->click();
    Flush();
}

void WizardPageTest::Back() {
    wizard.BackButton()->click();
    Flush();
}

int WizardPageTest::ShownPage() const {
    const QList<int> numbers = wizard.PageNumbers();
    const int index = wizard.GetActiveIndex();
    return index >= 0 && index < numbers.size() ? numbers[index] : -1;
}
