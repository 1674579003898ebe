#include "Screenshots.h"

#include "api/OrvGeoFactories.h"
#include "dialogs/PickerTree.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "platform/ScriptedUi.h"
#include "wizard/GeoWizard.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPushButton>

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

// Fills the pages as a person would, so that they are rendered with real values: every
// nested dialog is answered by a script.
void fillPages(GeoWizard& wizard) {
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

// The pickers, naming dialogs and the other dialogs of the kit, opened for the wizard.
void renderDialogs(GeoWizard& wizard, const QDir& dir, QStringList& written) {
    {
        SelEllipsoidDlg picker(&wizard);
        picker.SetSelName(QStringLiteral("International 1924"));
        shoot(picker, dir, QStringLiteral("dialog-select-ellipsoid"), written, [](auto&) {});
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
        const QString path = dir.filePath(
            QStringLiteral("wizard-page%1.png").arg(shot.page, 2, 10, QLatin1Char('0')));
        if (save(wizard, path))
            written << path;
    }
    wizard.hide();
    renderDialogs(wizard, dir, written);
    if (written.isEmpty())
        error = QStringLiteral("no page could be rendered");
    return written;
}
