// OK: the warning about a shared datum transformation or projection (exact comparisons, never
// for new ones), the static data filled in its order, the save (never for a pre-defined
// system), bad input, a refused save, and the round trip of an unchanged system.
#include "EditorTestSupport.h"

#include "api/GeoKeys.h"
#include "dialogs/CreateNewDttrfmDlg.h"
#include "dialogs/CreateNewPrjDlg.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "resources/StringTable.h"

#include <QCryptographicHash>
#include <QFile>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>

namespace {

QByteArray FileHash(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

class Saving : public EditorTest {
protected:
    void ExpectWarning(MsgAnswer answer) {
        ui.ExpectMessage(LoadOrvString(StrId::EditorSharedChangeWarning),
                         LoadOrvString(StrId::WarningCaption), MsgButtons::OkCancel, answer);
    }
    // One column of a stored user system.
    QVariant Column(const QString& system, const QString& column) {
        const QString connection = QUuid::createUuid().toString();
        QVariant value;
        {
            QSqlDatabase sql = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            sql.setDatabaseName(data.userDbPath());
            if (sql.open()) {
                QSqlQuery q(sql);
                q.prepare(QStringLiteral("SELECT %1 FROM coordsys WHERE name = ?").arg(column));
                q.addBindValue(system);
                if (q.exec() && q.next())
                    value = q.value(0);
            }
        }
        QSqlDatabase::removeDatabase(connection);
        return value;
    }
    DtfValues StoredDtf(const QString& dtf) {
        QString method;
        DtfValues values{};
        std::array<double, 2> further{}, trailing{};
        unsigned char option = 0;
        db->GetDtfParameters(dtf, method, values, further, option, trailing);
        return values;
    }
};

} // namespace

// Opened and closed with OK unchanged, a user system is stored exactly as before: every
// column of every table, the 15-value transformation's default epoch included.
TEST_F(Saving, AnUnchangedSystemIsStoredExactlyAsBefore) {
    StoreRig();
    StoreHarbour();
    // values finer than the edits show them: untouched, they are kept as they are
    const QString fine = QStringLiteral("Fine");
    StoreHarbour(fine);
    Change(fine, [](OrvGeoStaticDataBase& s) {
        s.SetDtfParameters({-81.12345678, -90.25, -115.125, 0.123456789, -0.25, 0.125, 2.00000001},
                           0, 0.0, 0.0);
        s.SetPostTranslationOn(true); // an adjustment comes with the translation flag
        s.SetPostTranslation(0.0000001, 0.0, 0.0);
        s.SetPostHorAdjustOn(true);
        s.SetPostHorAdjust(1.000012345, 155000.1234567, 463000.0, 0.0000123);
    });
    for (const QString& system : {kRig, kHarbour, fine}) {
        const QString before = DumpUserDb();
        Open(kGroup, system);
        PressOk();
        EXPECT_EQ(editor->result(), QDialog::Accepted) << system.toStdString();
        EXPECT_TRUE(ui.MessageTexts().isEmpty());
        EXPECT_EQ(DumpUserDb(), before) << system.toStdString();
    }
}

// A pre-defined system opened and closed with OK is filled in but written nowhere.
TEST_F(Saving, APredefinedSystemIsFilledInButNeverWritten) {
    const QByteArray systemDb = FileHash(TestSystemDbPath());
    const QString before = DumpUserDb();
    Open(QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"));
    // even a method switched within its family is not written
    Choose(QStringLiteral("dtfMethodCombo"), QStringLiteral("Coordinate Frame (7 parameters)"));
    PressOk();
    EXPECT_EQ(editor->result(), QDialog::Accepted);
    EXPECT_EQ(DumpUserDb(), before);
    EXPECT_EQ(FileHash(TestSystemDbPath()), systemDb);
    QString name, dtf;
    editor->GetGeoStaticData()->GetAssignedSystemName(name);
    editor->GetGeoStaticData()->GetCurrentDtfName(dtf);
    EXPECT_EQ(name, QStringLiteral("ED50 / UTM zone 31N"));
    EXPECT_EQ(dtf, QStringLiteral("ED50 to WGS 84 (1)"));
}

// A changed value of a stored user transformation warns; Cancel keeps the dialog open with
// everything as it is, OK saves.
TEST_F(Saving, AChangedSharedTransformationWarnsFirst) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    SetText(QStringLiteral("shiftXEdit"), QStringLiteral("-81.500001"));
    const QString before = DumpUserDb();
    ExpectWarning(MsgAnswer::Cancel);
    PressOk();
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-81.500001"));
    EXPECT_EQ(DumpUserDb(), before);

    ExpectWarning(MsgAnswer::Ok);
    PressOk();
    EXPECT_EQ(editor->result(), QDialog::Accepted);
    EXPECT_EQ(StoredDtf(QStringLiteral("Harbour dtf"))[0], -81.500001);
}

// The comparison is exact: a rate changed in its last decimal warns too.
TEST_F(Saving, TheComparisonIsExact) {
    StoreRig();
    Open(kGroup, kRig);
    SetText(QStringLiteral("scaleRateEdit"), QStringLiteral("0.00005001"));
    ExpectWarning(MsgAnswer::Ok);
    PressOk();
    EXPECT_EQ(StoredDtf(QStringLiteral("Rig 15 dtf"))[13], 0.00005001);
}

// The method alone, with the values unchanged, raises no warning.
TEST_F(Saving, TheMethodAloneRaisesNoWarning) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    Choose(QStringLiteral("dtfMethodCombo"), QStringLiteral("Position Vector (7 parameters)"));
    PressOk();
    EXPECT_EQ(editor->result(), QDialog::Accepted);
    QString method;
    DtfValues values{};
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 0;
    db->GetDtfParameters(QStringLiteral("Harbour dtf"), method, values, further, option, trailing);
    EXPECT_EQ(method, QStringLiteral("Position Vector (7 parameters)"));
    EXPECT_EQ(values[3], 0.5);
}

// A changed row of a stored user projection warns; a zone too.
TEST_F(Saving, AChangedSharedProjectionWarns) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    SetText(QStringLiteral("paramEdit4"), QStringLiteral("155000.5"));
    ExpectWarning(MsgAnswer::Ok);
    PressOk();
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    db->GetProjectionParameters(QStringLiteral("Harbour TM"), block, texts, names, types);
    EXPECT_EQ(block.values[3], 155000.5);

    StoreRig();
    Open(kGroup, kRig);
    Choose(QStringLiteral("utmZoneCombo"), QStringLiteral("Zone 32     (  9 E)"));
    ExpectWarning(MsgAnswer::Ok);
    PressOk();
    EXPECT_EQ(Column(kRig, QStringLiteral("utm_zone_text")).toString(),
              QStringLiteral("Zone 32     (  9 E)"));
}

// A transformation or projection created in the dialog is never compared.
TEST_F(Saving, NewOnesAreNeverCompared) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ui.ExpectModal<CreateNewDttrfmDlg>([](CreateNewDttrfmDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay dtf"));
        d.accept();
        return d.result();
    });
    Click(QStringLiteral("dtfNewButton"));
    ui.ExpectModal<CreateNewPrjDlg>([](CreateNewPrjDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay TM"));
        d.accept();
        return d.result();
    });
    Click(QStringLiteral("prjNewButton"));
    SetText(QStringLiteral("shiftXEdit"), QStringLiteral("-80"));
    SetText(QStringLiteral("paramEdit4"), QStringLiteral("120000"));
    PressOk(); // no warning
    EXPECT_EQ(editor->result(), QDialog::Accepted);
    EXPECT_EQ(Column(kHarbour, QStringLiteral("dtf_name")).toString(), QStringLiteral("Quay dtf"));
    EXPECT_EQ(Column(kHarbour, QStringLiteral("projection_name")).toString(),
              QStringLiteral("Quay TM"));
    EXPECT_EQ(StoredDtf(QStringLiteral("Quay dtf"))[0], -80.0);
    EXPECT_EQ(StoredDtf(QStringLiteral("Harbour dtf"))[0], -81.5); // the shared one kept
}

// With an adjustment switched off its values are written as neutral: scale 1, the rest 0;
// translation off writes zeros.
TEST_F(Saving, AdjustmentsSwitchedOffAreWrittenNeutral) {
    StoreRig();
    Open(kGroup, kRig);
    ClickCheck(QStringLiteral("horAdjustCheck"));
    ClickCheck(QStringLiteral("translationCheck"));
    PressOk();
    EXPECT_EQ(Column(kRig, QStringLiteral("hor_on")).toInt(), 0);
    EXPECT_EQ(Column(kRig, QStringLiteral("hor_scale")).toDouble(), 1.0);
    EXPECT_EQ(Column(kRig, QStringLiteral("hor_origin_e")).toDouble(), 0.0);
    EXPECT_EQ(Column(kRig, QStringLiteral("hor_rotation")).toDouble(), 0.0);
    EXPECT_EQ(Column(kRig, QStringLiteral("post_e")).toDouble(), 0.0);
    EXPECT_EQ(Column(kRig, QStringLiteral("post_on")).toInt(), 0);
}

// "--None--" as post method writes no post model and no file, even after a file was chosen.
TEST_F(Saving, NoPostMethodWritesNoPostModel) {
    ModelFolders models(data.path());
    StoreRig();
    Open(kGroup, kRig);
    Choose(QStringLiteral("postMethodCombo"),
           QString::fromWCharArray(GeoidmodelTypeKeys[GeoidKey::Ntv2Shift]));
    ui.ExpectFileOpen(LoadOrvString(StrId::FilterRdShift) + QStringLiteral("|*.gsb||"),
                      models.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                      QStringLiteral("/models/rdtrans2018.gsb"));
    Click(QStringLiteral("postFileButton"));
    Choose(QStringLiteral("postMethodCombo"), QStringLiteral("--None--"));
    PressOk();
    EXPECT_EQ(Column(kRig, QStringLiteral("post_model_name")).toString(), QString());
    EXPECT_EQ(Column(kRig, QStringLiteral("post_model_file")).toString(), QString());
    QString out;
    EXPECT_EQ(editor->GetGeoStaticData()->GetPostModelName(out), QString());
}

// A text that is no number is refused with a message and the dialog stays, whether it is a
// datum transformation value, a translation or a projection row.
TEST_F(Saving, ATextThatIsNoNumberKeepsTheDialogOpen) {
    StoreRig();
    StoreHarbour();
    const QString before = DumpUserDb();
    Open(kGroup, kRig);
    const QString number = LoadOrvString(StrId::EnterNumber);
    SetText(QStringLiteral("shiftYEdit"), QStringLiteral("12,5 m"));
    ui.ExpectMessage(number, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    PressOk();
    EXPECT_TRUE(editor->isVisible());
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("shiftYEdit"))->hasFocus());
    SetText(QStringLiteral("shiftYEdit"), QStringLiteral("-98.25"));

    SetText(QStringLiteral("translationNEdit"), QStringLiteral("north"));
    ui.ExpectMessage(number, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    PressOk();
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(DumpUserDb(), before);

    Open(kGroup, kHarbour);
    SetText(QStringLiteral("paramEdit4"), QStringLiteral("15x000"));
    ui.ExpectMessage(number, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    PressOk();
    EXPECT_TRUE(editor->isVisible());
    SetText(QStringLiteral("paramEdit3"), QStringLiteral("0.5"));
    SetText(QStringLiteral("paramEdit4"), QStringLiteral("155000.000000"));
    ui.ExpectMessage(LoadOrvString(StrId::ScaleFactorTooSmall), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    PressOk();
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(DumpUserDb(), before);
}

// A save the library refuses (a pre-defined transformation switched to another method) loses
// nothing already stored; the editor says nothing and EditSave reports it.
TEST_F(Saving, ARefusedSaveLosesNothing) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ui.ExpectModal<DatumTransfmSelDlg>(
        [](DatumTransfmSelDlg& d) { return Pick(d, QStringLiteral("ED50 to WGS 84 (1)")); });
    Click(QStringLiteral("dtfSelectButton"));
    Choose(QStringLiteral("dtfMethodCombo"), QStringLiteral("Coordinate Frame (7 parameters)"));
    const QString before = DumpUserDb();
    PressOk();
    EXPECT_EQ(editor->result(), QDialog::Accepted);
    EXPECT_EQ(DumpUserDb(), before);
    EXPECT_FALSE(editor->EditSave());
    EXPECT_TRUE(editor->GetGeoStaticData()->LastError().contains(QStringLiteral("pre-defined")));
}

// EditSave writes what OK filled in, on the host's terms.
TEST_F(Saving, EditSaveWritesWhatWasFilledIn) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    AdvCoordSysDlgProbe probe(*editor);
    SetText(QStringLiteral("horOriginNEdit"), QStringLiteral("7"));
    ClickCheck(QStringLiteral("horAdjustCheck"));
    EXPECT_FALSE(probe.HasCoordSysChanged());
    ASSERT_TRUE(probe.FillInGeoStaticData());
    EXPECT_TRUE(editor->EditSave());
    EXPECT_EQ(Column(kHarbour, QStringLiteral("hor_origin_n")).toDouble(), 7.0);
}

// Cancel closes without a word and writes nothing, whatever was changed.
TEST_F(Saving, CancelWritesNothing) {
    StoreRig();
    const QString before = DumpUserDb();
    Open(kGroup, kRig);
    SetText(QStringLiteral("shiftXEdit"), QStringLiteral("-1"));
    Choose(QStringLiteral("hemisphereCombo"), QStringLiteral("Southern"));
    PressCancel();
    EXPECT_EQ(editor->result(), QDialog::Rejected);
    EXPECT_TRUE(ui.MessageTexts().isEmpty());
    EXPECT_EQ(DumpUserDb(), before);
}
