#include "platform/ScriptedUi.h"

#include <QDialog>

#include <gtest/gtest.h>

TEST(ScriptedUi, AnswersFromTheScriptAndRecordsEveryText) {
    ScriptedUi ui([](const QString& m) { ADD_FAILURE() << m.toStdString(); });
    ui.ExpectMessage(QStringLiteral("Save?"), MsgAnswer::Yes)
        .ExpectMessage(QString(), MsgAnswer::No)
        .ExpectFileOpen(QStringLiteral("GTX|*.gtx||"), QStringLiteral("/data"),
                        QStringLiteral("/data/x.gtx"))
        .ExpectFileOpen(QStringLiteral("GTX|*.gtx||"), QStringLiteral("/data"), QString())
        .ExpectStartProgram(QStringLiteral("terrameter"), QStringLiteral(" -G:\"a b\""), false);
    EXPECT_EQ(GetUi().MessageBox(nullptr, QStringLiteral("Save?"), QStringLiteral("Cap"),
                                 MsgButtons::YesNo),
              MsgAnswer::Yes);
    EXPECT_EQ(GetUi().MessageBox(nullptr, QStringLiteral("any"), QString(), MsgButtons::YesNo),
              MsgAnswer::No);
    QString path;
    FileOpenRequest request;
    request.filter = QStringLiteral("GTX|*.gtx||");
    request.startFolder = QStringLiteral("/data");
    EXPECT_TRUE(GetUi().GetOpenFileName(nullptr, request, path));
    EXPECT_EQ(path, QStringLiteral("/data/x.gtx"));
    EXPECT_FALSE(GetUi().GetOpenFileName(nullptr, request, path));
    EXPECT_FALSE(GetUi().StartProgram(QStringLiteral("terrameter"), QStringLiteral(" -G:\"a b\""),
                                      QStringLiteral("/opt")));
    GetUi().Beep();
    EXPECT_EQ(ui.BeepCount(), 1);
    EXPECT_EQ(ui.MessageTexts(), (QStringList{QStringLiteral("Save?"), QStringLiteral("any")}));
    ASSERT_EQ(ui.Events().size(), 5);
    EXPECT_EQ(ui.Events()[0].caption, QStringLiteral("Cap"));
    EXPECT_EQ(ui.Events()[4].folder, QStringLiteral("/opt"));
    EXPECT_TRUE(ui.Verify());
}

TEST(ScriptedUi, ReportsWhatWasNotScripted) {
    QStringList failures;
    {
        ScriptedUi ui([&](const QString& m) { failures << m; });
        ui.ExpectMessage(QStringLiteral("expected"));
        // the wrong text
        EXPECT_EQ(
            GetUi().MessageBox(nullptr, QStringLiteral("other"), QString(), MsgButtons::YesNo),
            MsgAnswer::No);
        // nothing scripted any more
        QDialog dialog;
        EXPECT_EQ(GetUi().RunModal(dialog), int(QDialog::Rejected));
        ui.ExpectMessage(QStringLiteral("never shown"));
    } // pending expectation reported here
    ASSERT_EQ(failures.size(), 3);
    EXPECT_TRUE(failures[0].contains(QStringLiteral("other")));
    EXPECT_TRUE(failures[1].contains(QStringLiteral("unexpected modal dialog")));
    EXPECT_TRUE(failures[2].contains(QStringLiteral("never shown")));
}

namespace {
class NamedDialog : public QDialog {
    Q_OBJECT
};
} // namespace

// Each expectation names what it expects; anything else fails the test and is answered with
// Cancel, No or Rejected.
TEST(ScriptedUi, RefusesADialogOtherThanTheOneNamed) {
    QStringList failures;
    {
        ScriptedUi ui([&](const QString& m) { failures << m; });
        bool ran = false;
        ui.ExpectModal<NamedDialog>([&](NamedDialog&) {
            ran = true;
            return int(QDialog::Accepted);
        });
        QDialog other;
        EXPECT_EQ(GetUi().RunModal(other), int(QDialog::Rejected));
        EXPECT_FALSE(ran);

        ui.ExpectModal<NamedDialog>([&](NamedDialog&) { return int(QDialog::Accepted); });
        NamedDialog named;
        EXPECT_EQ(GetUi().RunModal(named), int(QDialog::Accepted));

        FileOpenRequest request;
        request.filter = QStringLiteral("GTX|*.gtx||");
        request.startFolder = QStringLiteral("/elsewhere");
        ui.ExpectFileOpen(QStringLiteral("GTX|*.gtx||"), QStringLiteral("/data"),
                          QStringLiteral("/data/x.gtx"));
        QString path;
        EXPECT_FALSE(GetUi().GetOpenFileName(nullptr, request, path));

        ui.ExpectStartProgram(QStringLiteral("terrameter"), QStringLiteral("-G:\"a\""));
        EXPECT_FALSE(GetUi().StartProgram(QStringLiteral("terrameter"), QStringLiteral("-G:\"b\""),
                                          QString()));

        ui.ExpectMessage(QStringLiteral("Sure?"), QStringLiteral("Warning"), MsgButtons::YesNo,
                         MsgAnswer::Yes);
        EXPECT_EQ(GetUi().MessageBox(nullptr, QStringLiteral("Sure?"), QStringLiteral("Warning"),
                                     MsgButtons::Ok),
                  MsgAnswer::Ok);
    }
    ASSERT_EQ(failures.size(), 4);
    EXPECT_TRUE(failures[0].contains(QStringLiteral("NamedDialog")));
    EXPECT_TRUE(failures[1].contains(QStringLiteral("/elsewhere")));
    EXPECT_TRUE(failures[2].contains(QStringLiteral("-G:\"b\"")));
    EXPECT_TRUE(failures[3].contains(QStringLiteral("Yes/No")));
}

TEST(ScriptedUi, RestoresTheInterfaceBefore) {
    UiInteraction* before = &GetUi();
    {
        ScriptedUi outer;
        {
            ScriptedUi inner;
            EXPECT_EQ(&GetUi(), &inner);
        }
        EXPECT_EQ(&GetUi(), &outer);
    }
    EXPECT_EQ(&GetUi(), before);
}

TEST(UiHelpers, DialogFiltersBecomeQtFilters) {
    EXPECT_EQ(QtFilterFromDialogFilter(QStringLiteral("Quasigeoid File (binary format)|*.BIN||")),
              QStringLiteral("Quasigeoid File (binary format) (*.BIN)"));
    EXPECT_EQ(QtFilterFromDialogFilter(QStringLiteral("Grids|*.gtx;*.gsb|All|*.*||")),
              QStringLiteral("Grids (*.gtx *.gsb);;All (*.*)"));
}

TEST(UiHelpers, ParameterLinesKeepQuotedNamesWhole) {
    EXPECT_EQ(SplitParameterLine(QStringLiteral(" -G:\"North Sea\" -S:\"ED50 / UTM 31N\"")),
              (QStringList{QStringLiteral("-G:North Sea"), QStringLiteral("-S:ED50 / UTM 31N")}));
    EXPECT_EQ(SplitParameterLine(QStringLiteral("-S:\"\"")), QStringList{QStringLiteral("-S:")});
}

#include "ScriptedUiTest.moc"
