#include "EditorTestSupport.h"

#include "api/OrvGeoFactories.h"
#include "dialogs/PickerTree.h"
#include "support/GtxFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

ModelFolders::ModelFolders(const QString& dataFolder) {
    QFile ini(QDir(dataFolder).filePath(QStringLiteral("ORV.ini")));
    EXPECT_TRUE(ini.open(QIODevice::WriteOnly));
    ini.write(QStringLiteral("[DataPaths]\nDataRoot=%1/Data\nDataFolder=Projects\n")
                  .arg(Root())
                  .toUtf8());
    Grid(QStringLiteral("General/Geoidmodels/Netherlands/site.gtx"), 10.5f);
    Grid(QStringLiteral("vdatum/core/MODEL1.gtx"), 20.0f);
    Grid(QStringLiteral("vdatum/MODEL1/tss.gtx"), 0.3f);
    Grid(QStringLiteral("vdatum/MODEL1/mllw.gtx"), -1.2f);
    WriteCommon(QStringLiteral("vdatum/core/geoid.inf"), "geoid_models=MODEL1\n");
}

void ModelFolders::Grid(const QString& commonRelative, float value) {
    constexpr int kRows = 5, kCols = 7;
    EXPECT_TRUE(WriteGtx(QDir(Common()).filePath(commonRelative), 50, 2, 1, 1, kRows, kCols,
                         std::vector<float>(kRows * kCols, value)));
}

const QString EditorTest::kGroup = QStringLiteral("North Sea");
const QString EditorTest::kRig = QStringLiteral("Rig 15");
const QString EditorTest::kHarbour = QStringLiteral("Harbour");

EditorTest::EditorTest()
    : ui([](const QString& message) { ADD_FAILURE() << message.toStdString(); }) {
    db.reset(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(data.dllType()));
    sd.reset(OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(data.dllType()));
    EXPECT_TRUE(db && sd) << "the temporary data source cannot be opened";
}

EditorTest::~EditorTest() {
    if (editor)
        editor->hide();
}

void EditorTest::Store(const std::function<void(OrvGeoStaticDataBase&)>& fill) {
    ASSERT_TRUE(sd);
    sd->Clear();
    fill(*sd);
    ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
}

void EditorTest::Change(const QString& system,
                        const std::function<void(OrvGeoStaticDataBase&)>& change) {
    ASSERT_TRUE(sd);
    ASSERT_TRUE(sd->LoadCoordSys(kGroup, system)) << sd->LastError().toStdString();
    change(*sd);
    ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
}

void EditorTest::StoreRig(const QString& name) {
    Store([&](OrvGeoStaticDataBase& s) {
        s.AssignSystemName(name);
        s.SetGroupName(kGroup);
        s.SelectSatelliteEllipsoid(QStringLiteral("WGS 84"));
        s.SelectLocalEllipsoid(QStringLiteral("International 1924"));
        s.SetDtfName(name + QStringLiteral(" dtf"));
        s.SetDtfMethod(QStringLiteral("Position Vector time-dependent (15 parameters)"),
                       DTF_15_POSITION_VECTOR);
        s.SetDtfDescription(QStringLiteral("Fitted on the rig's reference points"));
        s.SetDtfParameters({-87.5, -98.25, -121.125, 0.25, -0.125, 0.5, 1.5, 0.001, -0.002, 0.003,
                            0.0001, 0.0002, -0.0003, 0.00005, 2010.0},
                           0, 2015.5, 0.0);
        s.SetUnitName(QStringLiteral("US survey foot"));
        s.SetProjectionMethod(QStringLiteral("UTM"));
        s.SetProjectionName(name + QStringLiteral(" UTM ft"), 1);
        s.SetUtmMode(true);
        s.SetUtmZoneText(QStringLiteral("Zone 31     (  3 E)"));
        s.SetUtmHemisphereText(QStringLiteral("Northern"));
        PrjParamBlock block;
        block.count = 5;
        block.values = {0.0, 3.0, 0.9996, 1640416.666667, 0.0};
        s.SetProjectionParameters(
            block,
            {QStringLiteral("00°00'00.0000000\"N"), QStringLiteral("003°00'00.0000000\"E"),
             QStringLiteral("0.999600"), QStringLiteral("1640416.666667"),
             QStringLiteral("0.000000")},
            {QStringLiteral("Latitude of natural origin"),
             QStringLiteral("Longitude of natural origin"),
             QStringLiteral("Scale factor at natural origin"), QStringLiteral("False easting"),
             QStringLiteral("False northing")},
            {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH, PRM_LENGTH});
        s.SetGeoidEnabled(true);
        s.SetGeoidMethod(QStringLiteral("GTX Geoid Grid"));
        s.SetGeoidFile(QStringLiteral("egm96_15.gtx"));
        s.SetPostTranslationOn(true);
        s.SetPostTranslation(10.5, -4.25, 0.75);
        s.SetPostHorAdjustOn(true);
        s.SetPostHorAdjust(1.0001, 1640000.0, 5000.0, 1.5);
    });
}

void EditorTest::StoreHarbour(const QString& name) {
    Store([&](OrvGeoStaticDataBase& s) {
        s.AssignSystemName(name);
        s.SetGroupName(kGroup);
        s.SelectSatelliteEllipsoid(QStringLiteral("WGS 84"));
        s.SelectLocalEllipsoid(QStringLiteral("International 1924"));
        s.SetDtfName(name + QStringLiteral(" dtf"));
        s.SetDtfMethod(QStringLiteral("Coordinate Frame (7 parameters)"), DTF_7_COORDINATE_FRAME);
        s.SetDtfDescription(QStringLiteral("Fitted on 12 points"));
        s.SetDtfParameters({-81.5, -90.25, -115.125, 0.5, -0.25, 0.125, 2.5}, 0, 0.0, 0.0);
        s.SetUnitName(QStringLiteral("Meters"));
        s.SetProjectionMethod(QStringLiteral("Transverse Mercator"));
        s.SetProjectionName(name + QStringLiteral(" TM"), 2);
        PrjParamBlock block;
        block.count = 5;
        block.values = {52.5, 4.25, 0.9999, 155000.0, 463000.0};
        s.SetProjectionParameters(
            block,
            {QStringLiteral("52°30'00.0000000\"N"), QStringLiteral("004°15'00.0000000\"E"),
             QStringLiteral("0.999900"), QStringLiteral("155000.000000"),
             QStringLiteral("463000.000000")},
            {QStringLiteral("Latitude of natural origin"),
             QStringLiteral("Longitude of natural origin"),
             QStringLiteral("Scale factor at natural origin"), QStringLiteral("False easting"),
             QStringLiteral("False northing")},
            {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH, PRM_LENGTH});
    });
}

AdvCoordSysDlg& EditorTest::Open(const QString& group, const QString& system, EditorArgs args) {
    editor = std::make_unique<AdvCoordSysDlg>(group, system, args.geoidName, args.geoidFile,
                                              args.chartDatum, args.postName, args.postFile, true,
                                              nullptr, args.showGeoid);
    editor->SetDllType(data.dllType());
    editor->show();
    Flush();
    return *editor;
}

void EditorTest::Flush() {
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

void EditorTest::SetText(const QString& editName, const QString& text) {
    if (auto* edit = Control<QLineEdit>(editName))
        edit->setText(text);
}

void EditorTest::Choose(const QString& listName, const QString& text) {
    auto* list = Control<QComboBox>(listName);
    ASSERT_TRUE(list);
    const int index = list->findText(text, Qt::MatchExactly);
    ASSERT_GE(index, 0) << "no entry \"" << text.toStdString() << "\" in "
                        << listName.toStdString();
    ASSERT_TRUE(list->isEnabled()) << listName.toStdString() << " is disabled";
    list->setCurrentIndex(index);
    emit list->activated(index);
    Flush();
}

void EditorTest::Click(const QString& buttonName) {
    auto* button = Control<QAbstractButton>(buttonName);
    ASSERT_TRUE(button);
    ASSERT_TRUE(button->isEnabled()) << buttonName.toStdString() << " is disabled";
    button->click();
    Flush();
}

void EditorTest::ClickCheck(const QString& checkName) {
    Click(checkName);
}

void EditorTest::PressOk() {
    auto* box = Control<QDialogButtonBox>(QStringLiteral("buttonBox"));
    ASSERT_TRUE(box);
    box->button(QDialogButtonBox::Ok)->click();
    Flush();
}

void EditorTest::PressCancel() {
    auto* box = Control<QDialogButtonBox>(QStringLiteral("buttonBox"));
    ASSERT_TRUE(box);
    box->button(QDialogButtonBox::Cancel)->click();
    Flush();
}

int EditorTest::Pick(PickerDialog& picker, const QString& name, const QString& group) {
    NameTreeModel& model = picker.Tree()->Model();
    QModelIndex item = model.FindTopLevel(group.isEmpty() ? name : group);
    if (!group.isEmpty()) {
        const QModelIndex parent = item;
        item = QModelIndex();
        for (int row = 0; row < model.rowCount(parent); ++row) {
            if (model.NameAt(model.index(row, 0, parent)) == name)
                item = model.index(row, 0, parent);
        }
    }
    EXPECT_TRUE(item.isValid()) << "no entry " << name.toStdString() << " to pick";
    picker.Tree()->Select(item);
    picker.accept();
    return picker.result();
}

QString EditorTest::DumpUserDb() const {
    const QString connection = QUuid::createUuid().toString();
    QString out;
    {
        QSqlDatabase sql = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        sql.setDatabaseName(data.userDbPath());
        sql.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (sql.open()) {
            QSqlQuery tables(sql);
            tables.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                       "ORDER BY name"));
            QStringList names;
            while (tables.next())
                names << tables.value(0).toString();
            for (const QString& name : names) {
                QSqlQuery rows(sql);
                rows.exec(QStringLiteral("SELECT * FROM \"%1\"").arg(name));
                out += QStringLiteral("[%1]\n").arg(name);
                // rows in the order of their contents: a rewritten row may get a new rowid
                QStringList lines;
                while (rows.next()) {
                    const QSqlRecord record = rows.record();
                    QString line;
                    for (int i = 0; i < record.count(); ++i)
                        line += record.fieldName(i) + QLatin1Char('=') +
                                record.value(i).toString() + QLatin1Char('|');
                    lines << line;
                }
                lines.sort();
                for (const QString& line : lines)
                    out += line + QLatin1Char('\n');
            }
        }
    }
    QSqlDatabase::removeDatabase(connection);
    return out;
}

GeoPoint EditorTest::Forward(const QString& group, const QString& system, GeoPoint point) {
    std::unique_ptr<OrvGeoCoordSysBase> cs(
        OrvGeoCoordSysList::GetCoordSysList().Create(data.dllType()));
    EXPECT_TRUE(cs);
    if (!cs)
        return point;
    EXPECT_TRUE(cs->DefineSystem(group, system, QString(), QString(), QString(), QString(),
                                 QString(), QString(), QStringLiteral("none")))
        << cs->LastError().toStdString();
    EXPECT_TRUE(cs->Forward(point)) << cs->LastError().toStdString();
    return point;
}
