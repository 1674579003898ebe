#include "SystemChooser.h"

#include "selection/SysSelectionDlg.h"

#include <QPushButton>

bool ChooseSystem(const QString& dllType, QString& group, QString& system) {
    SysSelectionDlg dialog(geodb_type(0), false);
    dialog.SetDllType(dllType);
    dialog.SetGroupName(group);
    dialog.SetSystemName(system);
    // A system made here would go into the read-only source's scratch copy and be lost;
    // systems are made in the host program.
    if (auto* add = dialog.findChild<QPushButton*>(QStringLiteral("addButton")))
        add->hide();
    if (dialog.DoModal() != QDialog::Accepted)
        return false;
    group = dialog.GetGroupName();
    system = dialog.GetSystemName();
    return true;
}
