#include "platform/Dialog.h"
#include "platform/PropertyPage.h"
#include "platform/ScriptedUi.h"
#include "util/COrvUnitCnv.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "support/QtMessages.h"

#include <gtest/gtest.h>

namespace {

ScriptedUi::FailureHandler failTest() {
    return [](const QString& message) { ADD_FAILURE() << message.toStdString(); };
}

class FieldsPage : public PropertyPage {
public:
    FieldsPage() {
        auto* layout = new QVBoxLayout(this);
        auto edit = [this, layout](const char* name) {
            auto* e = new QLineEdit(this);
            e->setObjectName(QLatin1String(name));
            layout->addWidget(e);
            return e;
        };
        nameEdit = edit("name");
        shiftEdit = edit("shiftX");
        rotationEdit = edit("rotationX");
        rateEdit = edit("rateRotationX");
        check = new QCheckBox(this);
        check->setObjectName(QStringLiteral("based"));
        layout->addWidget(check);
        first = new QRadioButton(this);
        first->setObjectName(QStringLiteral("optionExisting"));
        second = new QRadioButton(this);
        second->setObjectName(QStringLiteral("optionNew"));
        layout->addWidget(first);
        layout->addWidget(second);
        combo = new QComboBox(this);
        combo->setObjectName(QStringLiteral("method"));
        combo->addItems({QStringLiteral("None"), QStringLiteral("Position Vector"),
                         QStringLiteral("Coordinate Frame")});
        layout->addWidget(combo);
    }
    void DoDataExchange(DataExchange* pDX) override {
        DDX_Text(pDX, QStringLiteral("name"), name);
        DDX_FmtDouble(pDX, QStringLiteral("shiftX"), shift, DDX_FORMAT_PLAIN, 6);
        DDX_FmtDouble(pDX, QStringLiteral("rotationX"), rotation, DDX_FORMAT_ROTATION, 6);
        DDX_FmtDouble(pDX, QStringLiteral("rateRotationX"), rate, DDX_FORMAT_ROTATION, 8);
        DDX_bCheck(pDX, QStringLiteral("based"), based);
        DDX_Radio(pDX, QStringLiteral("optionExisting"), option);
        DDX_CBIndex(pDX, QStringLiteral("method"), method);
    }
    QString name = QStringLiteral("WGS84 to ED50");
    double shift = -87.0;
    double rotation = 1.5;
    double rate = 0.00012345;
    bool based = true;
    int option = 1;
    int method = 2;
    QLineEdit *nameEdit, *shiftEdit, *rotationEdit, *rateEdit;
    QCheckBox* check;
    QRadioButton *first, *second;
    QComboBox* combo;
};

void setRotationSign(double sign) {
    StaticFormats::GetUnitCnv().SetUnit(COrvUnitCnv::RotationCategory, sign, 0.0,
                                        QStringLiteral("\""),
                                        QStringLiteral("Datum Transformation Rotation Units"));
}

struct Exchange : ::testing::Test {
    ~Exchange() override { setRotationSign(1.0); }
    FieldsPage page;
};

} // namespace

TEST_F(Exchange, LoadingShowsTheFieldsWithTheirFormats) {
    setRotationSign(1.0);
    ASSERT_TRUE(page.UpdateData(false));
    EXPECT_EQ(page.nameEdit->text(), QStringLiteral("WGS84 to ED50"));
    EXPECT_EQ(page.shiftEdit->text(), QStringLiteral("-87.000000"));
    EXPECT_EQ(page.rotationEdit->text(), QStringLiteral("1.500000"));
    EXPECT_EQ(page.rateEdit->text(), QStringLiteral("0.00012345"));
    EXPECT_TRUE(page.check->isChecked());
    EXPECT_FALSE(page.first->isChecked());
    EXPECT_TRUE(page.second->isChecked());
    EXPECT_EQ(page.combo->currentIndex(), 2);
}

TEST_F(Exchange, TheRotationSignFlipsWhatIsShownNotWhatIsStored) {
    setRotationSign(-1.0);
    ASSERT_TRUE(page.UpdateData(false));
    EXPECT_EQ(page.rotationEdit->text(), QStringLiteral("-1.500000"));
    EXPECT_EQ(page.rateEdit->text(), QStringLiteral("-0.00012345"));
    EXPECT_EQ(page.shiftEdit->text(), QStringLiteral("-87.000000")); // plain values keep theirs

    page.rotationEdit->setText(QStringLiteral("0.25"));
    ASSERT_TRUE(page.UpdateData(true));
    EXPECT_DOUBLE_EQ(page.rotation, -0.25);
    // a zero never shows as "-0.000000"
    page.rotation = 0.0;
    page.UpdateData(false);
    EXPECT_EQ(page.rotationEdit->text(), QStringLiteral("0.000000"));
}

// A shown text rounds the value behind it; saving an untouched text must not round the
// value (a datum transformation read back would otherwise count as changed).
TEST_F(Exchange, AnUntouchedTextKeepsTheValueItRounds) {
    setRotationSign(-1.0);
    page.shift = 0.06155123;
    page.rotation = 0.0394924;
    page.rate = 0.000000001234;
    ASSERT_TRUE(page.UpdateData(false));
    EXPECT_EQ(page.shiftEdit->text(), QStringLiteral("0.061551"));
    EXPECT_EQ(page.rotationEdit->text(), QStringLiteral("-0.039492"));
    ASSERT_TRUE(page.UpdateData(true));
    EXPECT_EQ(page.shift, 0.06155123);
    EXPECT_EQ(page.rotation, 0.0394924);
    EXPECT_EQ(page.rate, 0.000000001234);

    // a text typed again, even the same digits with blanks, is read
    page.shiftEdit->setText(QStringLiteral("0.061551 "));
    page.rotationEdit->setText(QStringLiteral("-0.039492"));
    ASSERT_TRUE(page.UpdateData(true));
    EXPECT_EQ(page.shift, 0.061551);
    EXPECT_EQ(page.rotation, 0.0394924); // the text was left as shown
}

TEST_F(Exchange, SavingReadsEveryControl) {
    page.UpdateData(false);
    page.nameEdit->setText(QStringLiteral("renamed"));
    page.shiftEdit->setText(QStringLiteral(" 12.5 "));
    page.check->setChecked(false);
    page.first->setChecked(true);
    page.combo->setCurrentIndex(0);
    ASSERT_TRUE(page.UpdateData(true));
    EXPECT_EQ(page.name, QStringLiteral("renamed"));
    EXPECT_DOUBLE_EQ(page.shift, 12.5);
    EXPECT_FALSE(page.based);
    EXPECT_EQ(page.option, 0);
    EXPECT_EQ(page.method, 0);
}

TEST_F(Exchange, TextThatIsNoNumberIsRefusedWithAMessage) {
    page.UpdateData(false);
    ScriptedUi ui(failTest());
    ui.ExpectMessage(DataExchangeNumberMessage());
    page.shiftEdit->setText(QStringLiteral("12,5m"));
    page.nameEdit->setText(QStringLiteral("changed"));
    EXPECT_FALSE(page.UpdateData(true));
    EXPECT_DOUBLE_EQ(page.shift, -87.0);
    EXPECT_EQ(page.name, QStringLiteral("changed")); // fields before the bad one were read
    EXPECT_TRUE(page.based);                         // and nothing after it
    EXPECT_EQ(ui.MessageTexts(), QStringList{DataExchangeNumberMessage()});

    ui.ExpectMessage(DataExchangeNumberMessage());
    page.shiftEdit->setText(QString());
    EXPECT_FALSE(page.UpdateData(true));
}

TEST_F(Exchange, RadioGroupsFollowTheirButtonGroup) {
    QWidget root;
    auto* a = new QRadioButton(&root);
    a->setObjectName(QStringLiteral("a"));
    auto* other = new QRadioButton(&root);
    auto* b = new QRadioButton(&root);
    auto* group = new QButtonGroup(&root);
    group->addButton(b, 0);
    group->addButton(a, 1);
    Q_UNUSED(other);
    int value = 0;
    RunDataExchange(&root, false,
                    [&](DataExchange* pDX) { DDX_Radio(pDX, QStringLiteral("a"), value); });
    EXPECT_TRUE(b->isChecked());
    a->setChecked(true);
    RunDataExchange(&root, true,
                    [&](DataExchange* pDX) { DDX_Radio(pDX, QStringLiteral("a"), value); });
    EXPECT_EQ(value, 1);
}

namespace {
class MisspeltPage : public FieldsPage {
public:
    void DoDataExchange(DataExchange* pDX) override {
        DDX_Text(pDX, QStringLiteral("nmae"), name);
        DDX_FmtDouble(pDX, QStringLiteral("shiftX"), shift, DDX_FORMAT_PLAIN, 6);
    }
};
} // namespace

// A control name that does not exist fails the exchange both ways instead of moving no
// value in silence; the fields after it are left alone.
TEST(DataExchangeNames, AMisspeltControlFailsTheExchange) {
    MisspeltPage page;
    page.shiftEdit->setText(QStringLiteral("5"));
    QtWarningsExpected warned(QStringLiteral("no control named \"nmae\""));
    EXPECT_FALSE(page.UpdateData(true));
    EXPECT_EQ(page.shift, -87.0);
    EXPECT_FALSE(page.UpdateData(false));
    EXPECT_EQ(warned.Seen().size(), 2);
}

namespace {
class NumberDialog : public Dialog {
    Q_OBJECT
public:
    NumberDialog() {
        edit = new QLineEdit(this);
        edit->setObjectName(QStringLiteral("factor"));
        setObjectName(QStringLiteral("numberDialog"));
    }
    void DoDataExchange(DataExchange* pDX) override {
        DDX_FmtDouble(pDX, QStringLiteral("factor"), factor, DDX_FORMAT_PLAIN, 3);
    }
    double factor = 0.3048;
    QLineEdit* edit;
};
} // namespace

TEST(DialogExchange, OkStaysOpenOnARefusedValue) {
    ScriptedUi ui(failTest());
    NumberDialog dialog;
    ui.ExpectModal<NumberDialog>([](NumberDialog& dlg) {
        EXPECT_EQ(dlg.edit->text(), QStringLiteral("0.305")); // initialised before the script
        dlg.edit->setText(QStringLiteral("abc"));
        dlg.OnOK();
        EXPECT_EQ(dlg.result(), 0);
        dlg.edit->setText(QStringLiteral("0.201"));
        dlg.OnOK();
        return dlg.result();
    });
    ui.ExpectMessage(DataExchangeNumberMessage());
    // the modal handler runs first; the message comes from inside it
    EXPECT_EQ(dialog.DoModal(), int(QDialog::Accepted));
    EXPECT_DOUBLE_EQ(dialog.factor, 0.201);
}

#include "DataExchangeTest.moc"
