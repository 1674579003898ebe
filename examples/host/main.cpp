// A host of the coordinate-system dialogs: the selection dialog, then the wizard.
//   orv-host-example [--data sqlite:<folder>] [--smoke]
// --smoke shows each dialog briefly and closes it (for CI, with QT_QPA_PLATFORM=offscreen);
// any other window that comes up (a message box) is reported, closed, and fails the run.
#include <orv/selection/SysSelectionDlg.h>
#include <orv/wizard/GeoWizard.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace {

constexpr int SmokeShowMs = 300;

// Runs a modal dialog; in smoke mode a timer closes it once it is up.
int Run(QDialog& dialog, const std::function<int()>& doModal, bool smoke, bool& failed) {
    QTimer closer;
    if (smoke) {
        closer.setInterval(SmokeShowMs);
        QObject::connect(&closer, &QTimer::timeout, [&] {
            QWidget* top = QApplication::activeModalWidget();
            if (top == &dialog) {
                std::printf("shown: %s\n", qPrintable(dialog.windowTitle()));
                dialog.reject();
            } else if (top) {
                const auto* box = qobject_cast<QMessageBox*>(top);
                std::printf("unexpected window: %s: %s\n", qPrintable(top->windowTitle()),
                            box ? qPrintable(box->text()) : "");
                failed = true;
                top->close();
            }
        });
        closer.start();
    }
    return doModal();
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    const bool smoke = args.contains(QStringLiteral("--smoke"));
    // Empty: the library's default databases (the user's data folder).
    const qsizetype data = args.indexOf(QStringLiteral("--data"));
    const QString dllType = data > 0 && data + 1 < args.size() ? args.at(data + 1) : QString();
    bool failed = false;

    // Both databases in the tree (no scope bit set), systems may be added and changed.
    SysSelectionDlg selection(static_cast<geodb_type>(0), true);
    selection.SetDllType(dllType);
    if (Run(
            selection, [&] { return selection.DoModal(); }, smoke, failed) == QDialog::Accepted)
        std::printf("chosen: %s / %s\n", qPrintable(selection.GetGroupName()),
                    qPrintable(selection.GetSystemName()));

    GeoWizard wizard(QStringLiteral("New Coordinate System"));
    wizard.SetDllType(dllType);
    if (Run(
            wizard, [&] { return wizard.DoModal(); }, smoke, failed) == PropertySheet::ID_WIZFINISH)
        std::printf("saved: %s / %s\n", qPrintable(wizard.GetGroupName()),
                    qPrintable(wizard.GetSystemName()));
    return failed ? 1 : 0;
}
