#include "Screenshots.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoFactories.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/CMaskEdit.h"
#include "dialogs/CreateNewDttrfmDlg.h"
#include "dialogs/CreateNewPrjDlg.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "dialogs/GridSelDlg.h"
#include "dialogs/NewUnitDlg.h"
#include "dialogs/PickerTree.h"
#include "dialogs/PrjSelectDlg.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "dialogs/UnitSelectionDlg.h"
#include "editor/AdvCoordSysDlg.h"
#include "pages/WIZPage1.h"
#include "pages/WIZPage4.h"
#include "pages/WIZPage8.h"
#include "platform/ScriptedUi.h"
#include "selection/SysSelectionDlg.h"
#include "util/BrandingConfig.h"
#include "wizard/GeoWizard.h"
#include "wizard/GeoidFiles.h"
#include "wizard/WzdUtility.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>

#include <memory>

namespace {

void settle() {
    // posted button requests and layout work
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

bool save(QWidget& widget, const QString& path) {
    settle();
    return widget.grab().toImage().save(path, "PNG");
}

// --- WIZPage0, WIZPage1: a new system based on "OSGB36 / British National Grid" ---
// A name typed, "Based on existing coordinate system:" checked (the page list of a system
// based on another), Next, and the system chosen in its group. The page list stays the based
// one: the name page is rendered in it, and the later pages' shots rebuild their own lists.
void fillNameAndExistingSystem(GeoWizard& wizard) {
    WizardPage* namePage = wizard.GetWizardPage(0);
    if (!wizard.SetActivePage(namePage))
        return;
    if (auto* name = namePage->findChild<QLineEdit*>(QStringLiteral("newSystemName")))
        name->setText(QStringLiteral("OSGB36 / BNG (Thames site grid)"));
    if (auto* based = namePage->findChild<QCheckBox*>(QStringLiteral("basedOnExisting")))
        based->click();
    settle();
    wizard.NextButton()->click();
    settle();
    auto* existing = static_cast<WIZPage1*>(wizard.GetWizardPage(1));
    if (wizard.GetActivePage() != existing)
        return;
    const NameTreeModel& model = existing->Tree()->Model();
    const QModelIndex group = model.FindTopLevel(QStringLiteral("UK"));
    existing->Tree()->Expand(group);
    for (int row = 0; row < model.rowCount(group); ++row) {
        const QModelIndex system = model.index(row, 0, group);
        if (model.NameAt(system) == QStringLiteral("OSGB36 / British National Grid"))
            existing->Tree()->Select(system);
    }
    settle();
}

// --- Geoid model and post correction pages (WIZPage10, WIZPage13) ---
// Filled once shown (both read the system being built back on every activation, and the
// existing-system page's copy replaces its geoid model and post correction): a GTX geoid grid,
// proj-data's EGM96 grid, and a post correction of constant offsets. Each is then handed over
// as Next would, without leaving the page, so that the pages shot later see it.

// The person picks an entry of a page's list.
void pickEntry(QWidget* page, const QString& list, const QString& text) {
    auto* combo = page->findChild<QComboBox*>(list);
    const int index = combo ? combo->findText(text) : -1;
    if (index < 0)
        return;
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

void clickButton(QWidget* page, const QString& name) {
    if (auto* button = page->findChild<QAbstractButton*>(name))
        button->click();
    settle();
}

void fillGeoidPage(GeoWizard& wizard) {
    QWidget* page = wizard.GetWizardPage(10);
    pickEntry(page, QStringLiteral("methodCombo"), QStringLiteral("GTX Geoid Grid"));
    const GeoidFiles::FileDialogRule* gtx = GeoidFiles::GeoidFileDialog(GeoidKey::Gtx);
    ScriptedUi script;
    script.ExpectFileOpen(GeoidFiles::Filter(*gtx), GeoidFiles::StartFolder(*gtx),
                          QStringLiteral("/usr/share/proj/egm96_15.gtx"));
    clickButton(page, QStringLiteral("browseFile"));
    script.Verify();
    wizard.GetWizardPage(10)->OnWizardNext();
}

void fillPostPage(GeoWizard& wizard) {
    QWidget* page = wizard.GetWizardPage(13);
    clickButton(page, QStringLiteral("applyPostCorrection"));
    const std::pair<const char*, const char*> offsets[] = {
        {"eastingEdit", "0.35"}, {"northingEdit", "-0.12"}, {"zEdit", "1.204"}};
    for (const auto& [name, text] : offsets)
        if (auto* edit = page->findChild<QLineEdit*>(QString::fromLatin1(name)))
            edit->setText(QString::fromLatin1(text));
    wizard.GetWizardPage(13)->OnWizardNext();
}

// --- end of WIZPage10, WIZPage13 ---

// --- Save and overview pages (WIZPage11, WIZPage12) ---
// The save page's Next as a person would press it: the new system goes into the user group
// "River Thames". In a throw-away data source (the screenshots' temporary folder) a system
// saved there before gives the save page that group to list; a data source given with
// --data is never written to. The overview then shows the system the pages built, with
// its test point.
void fillClosingPages(GeoWizard& wizard) {
    const QString group = QStringLiteral("River Thames");
    const bool scratch =
        wizard.GetDllType().startsWith(QStringLiteral("sqlite:") + QDir::tempPath());
    if (scratch) {
        std::unique_ptr<OrvGeoStaticDataBase> earlier(
            OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(wizard.GetDllType()));
        if (earlier && earlier->LoadCoordSys(QStringLiteral("UK"),
                                             QStringLiteral("OSGB36 / British National Grid"))) {
            earlier->AssignSystemName(QStringLiteral("Thames crossing 2019"));
            earlier->SetGroupName(group);
            earlier->SaveCoordSys();
        }
    }
    if (OrvGeoStaticDataBase* staticData = wizard.GetGeoStatic())
        staticData->SetGroupName(group);
}

// Fills the pages as a person would, so that they are rendered with real values: every
// nested dialog is answered by a script.
void fillPages(GeoWizard& wizard) {
    fillNameAndExistingSystem(wizard);

    ScriptedUi script;
    script.ExpectModal<SelEllipsoidDlg>([](SelEllipsoidDlg& picker) {
        picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(QStringLiteral("Airy 1830")));
        picker.accept();
        return picker.result();
    });
    if (auto* select =
            wizard.GetWizardPage(2)->findChild<QPushButton*>(QStringLiteral("selectLocal")))
        select->click();
    script.Verify();

    // the projection pages: a new projection based on a stored UTM zone
    if (OrvGeoStaticDataBase* staticData = wizard.GetGeoStatic())
        staticData->AssignSystemName(QStringLiteral("North Sea survey"));
    wizard.SetPrjOption(1);
    wizard.SetPrjFromOldPrj(true);
    wizard.SetPrePrjName(QStringLiteral("UTM Zone-31N"));
    wizard.SetUnit(QStringLiteral("Meters"));

    fillClosingPages(wizard);
}

// What a person does on a page after it became active (pages that refill themselves on every
// activation), so that the picture shows a real choice.
void showActivePage(GeoWizard& wizard, int page) {
    if (page == 8) {
        auto* projections = static_cast<WIZPage8*>(wizard.GetWizardPage(8));
        const NameTreeModel& model = projections->Tree()->Model();
        const QModelIndex method = model.FindTopLevel(QStringLiteral("Transverse Mercator"));
        for (int row = 0; row < model.rowCount(method); ++row) {
            const QModelIndex item = model.index(row, 0, method);
            if (model.NameAt(item) == QStringLiteral("British National Grid"))
                projections->Tree()->Select(item);
        }
    }
    if (page == 10)
        fillGeoidPage(wizard);
    if (page == 13)
        fillPostPage(wizard);
}

// --- WIZPage4, WIZPage5: a time-dependent datum transformation (two more pictures) ---
// After the pages above, the person starts another system, not based on a stored one, on
// GRS 1980, makes a new datum transformation based on an existing one, narrows the selection
// page's tree to "GDA94" with its filter field and goes on to the fifteen values of "GDA94 to
// WGS 84 (G1762) (1)".
void renderTimeDependentDtf(GeoWizard& wizard, const QDir& dir, QStringList& written) {
    auto page = [&wizard](int number) { return wizard.GetWizardPage(number); };
    auto click = [&page](int number, const char* name) {
        if (auto* button = page(number)->findChild<QAbstractButton*>(QLatin1String(name)))
            button->click();
        settle();
    };
    auto next = [&wizard](int expected) {
        wizard.NextButton()->click();
        settle();
        return wizard.GetActivePage() == wizard.GetWizardPage(expected);
    };
    auto render = [&wizard, &dir, &written](const char* name) {
        const QString path = dir.filePath(QLatin1String(name));
        if (save(wizard, path))
            written << path;
    };

    ScriptedUi script;
    script.ExpectModal<SelEllipsoidDlg>([](SelEllipsoidDlg& picker) {
        picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(QStringLiteral("GRS 1980")));
        picker.accept();
        return picker.result();
    });
    wizard.SetSkipGeoid(false);
    if (!wizard.SetActivePage(page(0)))
        return;
    if (auto* name = page(0)->findChild<QLineEdit*>(QStringLiteral("newSystemName")))
        name->setText(QStringLiteral("Perth harbour grid"));
    auto* based = page(0)->findChild<QCheckBox*>(QStringLiteral("basedOnExisting"));
    if (based && based->isChecked())
        click(0, "basedOnExisting");
    if (!next(2))
        return;
    click(2, "selectLocal");
    if (!next(3))
        return;
    click(3, "optionNew");
    click(3, "basedOnExisting");
    if (!next(4))
        return;
    auto* selection = static_cast<WIZPage4*>(page(4));
    selection->Tree()->SetFilterText(QStringLiteral("GDA94"));
    selection->Tree()->Select(
        selection->Tree()->Model().FindTopLevel(QStringLiteral("GDA94 to WGS 84 (G1762) (1)")));
    render("wizard-page04-filtered.png");
    if (next(5))
        render("wizard-page05-time-dependent.png");
    script.Verify();
}

// Shows a dialog as its caller would (initialised, then prepared), renders it and closes it.
template <class D, class Prepare>
void shoot(D& dialog, const QDir& dir, const QString& name, QStringList& written, Prepare prepare) {
    dialog.EnsureInitialised();
    prepare(dialog);
    dialog.show();
    const QString path = dir.filePath(name + QStringLiteral(".png"));
    if (save(dialog, path))
        written << path;
    dialog.hide();
}

// Selects an entry of a picker's tree: a top-level one, or one below a group.
template <class Picker>
void choose(Picker& picker, const QString& name, const QString& group = QString()) {
    const NameTreeModel& model = picker.Tree()->Model();
    QModelIndex item = model.FindTopLevel(group.isEmpty() ? name : group);
    for (int row = 0; !group.isEmpty() && row < model.rowCount(item); ++row) {
        if (model.NameAt(model.index(row, 0, item)) == name) {
            item = model.index(row, 0, item);
            break;
        }
    }
    picker.Tree()->Select(item);
}

// A program-data folder with an ORV.ini and a few vertical datum models, so that the grid
// file picker has entries to show; the real settings are restored afterwards.
class SampleGeoidModels {
public:
    SampleGeoidModels() {
        const QString data = m_root.filePath(QStringLiteral("Data"));
        const QString inf = data + QStringLiteral("/Projects Common Files/vdatum/core/geoid.inf");
        QDir().mkpath(m_root.filePath(QStringLiteral("Geodesy")));
        QDir().mkpath(QFileInfo(inf).path());
        write(m_root.filePath(QStringLiteral("Geodesy/ORV.ini")),
              QStringLiteral("[DataPaths]\nDataRoot=%1\nDataFolder=Projects\n").arg(data));
        write(inf, QStringLiteral("geoid_models=GEOID96,GEOID99,GEOID03,GEOID09,GEOID12A,"
                                  "GEOID12B,GEOID18,XGEOID20B\n"));
        BrandingConfig::Instance().SetRootProgramDataFolder(m_root.path());
    }
    ~SampleGeoidModels() { BrandingConfig::Instance().SetRootProgramDataFolder(QString()); }

private:
    static void write(const QString& path, const QString& text) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(text.toUtf8());
    }
    QTemporaryDir m_root;
};

// The pickers and the other dialogs of the kit, opened for the wizard.
void renderDialogs(GeoWizard& wizard, const QDir& dir, QStringList& written) {
    const auto nothing = [](auto&) {};
    {
        SelEllipsoidDlg picker(&wizard);
        picker.SetSelName(QStringLiteral("International 1924"));
        shoot(picker, dir, QStringLiteral("dialog-select-ellipsoid"), written, nothing);
    }
    {
        DatumTransfmSelDlg picker(&wizard);
        picker.SetEllipsoidNames(QStringLiteral("WGS 84"), QStringLiteral("International 1924"));
        picker.SetSelName(QStringLiteral("ED50 to WGS 84 (1)"));
        shoot(picker, dir, QStringLiteral("dialog-select-datum-transformation"), written, nothing);
    }
    {
        PrjSelectDlg picker(&wizard);
        shoot(picker, dir, QStringLiteral("dialog-select-projection"), written,
              [](auto& p) { choose(p, QStringLiteral("UTM Zone-31N"), QStringLiteral("UTM")); });
    }
    {
        UnitSelectionDlg units(wizard.GetGeoDatabase());
        units.SetUnitName(QStringLiteral("Meters"));
        shoot(units, dir, QStringLiteral("dialog-select-unit"), written, nothing);
    }
    {
        CreateNewDttrfmDlg naming(&wizard);
        shoot(naming, dir, QStringLiteral("dialog-create-datum-transformation"), written,
              [](auto& d) {
                  d.template findChild<QLineEdit*>(QStringLiteral("nameEdit"))
                      ->setText(QStringLiteral("ED50 to WGS 84 (North Sea survey)"));
              });
    }
    {
        CreateNewPrjDlg naming(&wizard);
        shoot(naming, dir, QStringLiteral("dialog-create-projection"), written, [](auto& d) {
            d.template findChild<QLineEdit*>(QStringLiteral("nameEdit"))
                ->setText(QStringLiteral("UTM Zone-31N (site grid)"));
        });
    }
    {
        NewUnitDlg unit(&wizard);
        unit.SetName(QStringLiteral("Rod"));
        unit.SetMetersPerUnit(5.0292);
        unit.SetNameSuffix(QStringLiteral("rd"));
        shoot(unit, dir, QStringLiteral("dialog-new-unit"), written, nothing);
    }
    {
        SysSelectionDlg selection(geodb_type(0), true);
        selection.SetDllType(wizard.GetDllType());
        selection.SetGroupName(QStringLiteral("UK"));
        selection.SetSystemName(QStringLiteral("OSGB36 / British National Grid"));
        shoot(selection, dir, QStringLiteral("dialog-select-coordinate-system"), written, nothing);
    }
    {
        SampleGeoidModels models;
        GridSelDlg picker(GeoidKey::ChartDatum, QStringLiteral("GEOID18"));
        shoot(picker, dir, QStringLiteral("dialog-select-geoid-model-file"), written, nothing);
    }
    {
        // a latitude row of the projection parameters, half typed
        QWidget row;
        row.setObjectName(QStringLiteral("maskedEditSample"));
        auto* layout = new QFormLayout(&row);
        auto* edit = new CMaskEdit(&row);
        edit->setObjectName(QStringLiteral("latitudeOfOrigin"));
        edit->SetMask(WzdUtility::MaskForType(PRM_LATITUDE));
        edit->SetText(QStringLiteral("5230"));
        edit->setMinimumWidth(220);
        layout->addRow(QStringLiteral("Latitude of natural origin:"), edit);
        row.resize(420, 44);
        row.show();
        const QString path = dir.filePath(QStringLiteral("dialog-masked-edit.png"));
        if (save(row, path))
            written << path;
    }
}

// ---- the coordinate system editor ----

// A user system as a surveyor keeps one: a 15-value datum transformation, a UTM projection in
// US survey feet, a geoid grid and post corrections.
bool storeEditorSample(const QString& dataSource) {
    std::unique_ptr<OrvGeoStaticDataBase> sd(
        OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(dataSource));
    if (!sd)
        return false;
    sd->AssignSystemName(QStringLiteral("Rig 15"));
    sd->SetGroupName(QStringLiteral("North Sea"));
    sd->SelectSatelliteEllipsoid(QStringLiteral("WGS 84"));
    sd->SelectLocalEllipsoid(QStringLiteral("International 1924"));
    sd->SetDtfName(QStringLiteral("Rig 15 dtf"));
    sd->SetDtfMethod(QStringLiteral("Position Vector time-dependent (15 parameters)"),
                     DTF_15_POSITION_VECTOR);
    sd->SetDtfDescription(QStringLiteral("Fitted on the rig's reference points"));
    sd->SetDtfParameters({-87.5, -98.25, -121.125, 0.25, -0.125, 0.5, 1.5, 0.001, -0.002, 0.003,
                          0.0001, 0.0002, -0.0003, 0.00005, 2010.0},
                         0, 2015.5, 0.0);
    sd->SetUnitName(QStringLiteral("US survey foot"));
    sd->SetProjectionMethod(QStringLiteral("UTM"));
    sd->SetProjectionName(QStringLiteral("Rig 15 UTM ft"), 1);
    sd->SetUtmMode(true);
    sd->SetUtmZoneText(QStringLiteral("Zone 31     (  3 E)"));
    sd->SetUtmHemisphereText(QStringLiteral("Northern"));
    PrjParamBlock block;
    block.count = 5;
    block.values = {0.0, 3.0, 0.9996, 1640416.666667, 0.0};
    sd->SetProjectionParameters(block,
                                {QStringLiteral("00°00'00.0000000\"N"),
                                 QStringLiteral("003°00'00.0000000\"E"), QStringLiteral("0.999600"),
                                 QStringLiteral("1640416.666667"), QStringLiteral("0.000000")},
                                {QStringLiteral("Latitude of natural origin"),
                                 QStringLiteral("Longitude of natural origin"),
                                 QStringLiteral("Scale factor at natural origin"),
                                 QStringLiteral("False easting"), QStringLiteral("False northing")},
                                {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH, PRM_LENGTH});
    sd->SetGeoidEnabled(true);
    sd->SetGeoidMethod(QStringLiteral("GTX Geoid Grid"));
    sd->SetGeoidFile(QStringLiteral("egm96_15.gtx"));
    sd->SetPostTranslationOn(true);
    sd->SetPostTranslation(10.5, -4.25, 0.75);
    sd->SetPostHorAdjustOn(true);
    sd->SetPostHorAdjust(1.0001, 1640000.0, 5000.0, 1.5);
    return sd->SaveCoordSys();
}

// The editor on a pre-defined system (read-only) and on a user system.
void renderEditor(const QString& dataSource, const QDir& dir, QStringList& written) {
    struct Shot {
        const char* group;
        const char* system;
        const char* file;
    };
    const Shot shots[] = {{"Europe", "ED50 / UTM zone 31N", "editor-predefined"},
                          {"North Sea", "Rig 15", "editor-user-system"}};
    storeEditorSample(dataSource);
    for (const Shot& shot : shots) {
        AdvCoordSysDlg editor(QString::fromUtf8(shot.group), QString::fromUtf8(shot.system),
                              QString(), QString(), QString(), QString(), QString(), true);
        editor.SetDllType(dataSource);
        editor.show();
        const QString path = dir.filePath(QString::fromLatin1(shot.file) + QStringLiteral(".png"));
        if (save(editor, path))
            written << path;
        editor.hide();
    }
}

} // namespace

QStringList RenderScreenshots(const QString& folder, const QString& dataSource, QString& error) {
    QStringList written;
    QDir dir(folder);
    if (!dir.mkpath(QStringLiteral("."))) {
        error = QStringLiteral("cannot create the folder %1").arg(folder);
        return written;
    }

    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(dataSource);
    wizard.show();
    settle();
    if (!wizard.IsInitialised()) {
        QString reason = OrvGeoDatabaseBaseList::GetGeoDatabaseList().LastError();
        if (reason.isEmpty())
            reason = OrvGeoStaticDatabaseList::GetGeoStaticDataList().LastError();
        error = QStringLiteral("the wizard could not open its database \"%1\": %2")
                    .arg(dataSource, reason);
        return written;
    }

    // Every page once, each in a page list that holds it, shown where that list puts it.
    struct Shot {
        int code; // page-set code, -1 for the list the wizard starts with
        int page;
    };
    const Shot shots[] = {{-1, 0}, {1, 1},  {-1, 2}, {-1, 3},  {31, 4},  {-1, 5},  {-1, 6},
                          {-1, 7}, {-1, 8}, {-1, 9}, {-1, 10}, {-1, 11}, {-1, 12}, {-1, 13}};
    fillPages(wizard);
    int currentCode = -1;
    for (const Shot& shot : shots) {
        if (shot.code != currentCode) {
            if (shot.code < 0)
                wizard.SetSkipGeoid(false);
            else
                wizard.ReSetPages(shot.code);
            currentCode = shot.code;
        }
        const int index = wizard.GetPageIndex(wizard.GetWizardPage(shot.page));
        if (index < 0 || !wizard.SetActivePage(index))
            continue;
        settle();
        showActivePage(wizard, shot.page);
        const QString path = dir.filePath(
            QStringLiteral("wizard-page%1.png").arg(shot.page, 2, 10, QLatin1Char('0')));
        if (save(wizard, path))
            written << path;
    }
    // --- The overview page scrolled to its end: the test point and any warnings ---
    if (wizard.SetActivePage(wizard.GetPageIndex(wizard.GetWizardPage(12)))) {
        if (auto* overview =
                wizard.GetWizardPage(12)->findChild<QTextEdit*>(QStringLiteral("overviewText"))) {
            settle();
            overview->verticalScrollBar()->setValue(overview->verticalScrollBar()->maximum());
            const QString path = dir.filePath(QStringLiteral("wizard-page12-test-point.png"));
            if (save(wizard, path))
                written << path;
        }
    }
    renderTimeDependentDtf(wizard, dir, written);
    wizard.hide();
    renderDialogs(wizard, dir, written);
    renderEditor(dataSource, dir, written);
    if (written.isEmpty())
        error = QStringLiteral("no page could be rendered");
    return written;
}
