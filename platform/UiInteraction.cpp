#include "platform/UiInteraction.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QProcess>

namespace {
QtUiInteraction& defaultUi() {
    static QtUiInteraction ui;
    return ui;
}
UiInteraction* g_ui = nullptr;
} // namespace

UiInteraction& GetUi() {
    return g_ui ? *g_ui : defaultUi();
}

UiInteraction* SetUi(UiInteraction* ui) {
    UiInteraction* before = g_ui;
    g_ui = ui;
    return before;
}

QString QtFilterFromDialogFilter(const QString& filter) {
    QStringList parts = filter.split(QLatin1Char('|'));
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        const QString description = parts[i];
        const QString patterns = parts[i + 1];
        if (description.isEmpty() && patterns.isEmpty())
            break;
        QString joined = patterns;
        joined.replace(QLatin1Char(';'), QLatin1Char(' '));
        out << QStringLiteral("%1 (%2)").arg(description, joined);
    }
    return out.join(QStringLiteral(";;"));
}

QStringList SplitParameterLine(const QString& parameters) {
    QStringList out;
    QString current;
    bool quoted = false, any = false;
    for (const QChar c : parameters) {
        if (c == QLatin1Char('"')) {
            quoted = !quoted;
            any = true;
        } else if (c.isSpace() && !quoted) {
            if (any)
                out << current;
            current.clear();
            any = false;
        } else {
            current += c;
            any = true;
        }
    }
    if (any)
        out << current;
    return out;
}

MsgAnswer QtUiInteraction::MessageBox(QWidget* parent, const QString& text, const QString& caption,
                                      MsgButtons buttons) {
    QMessageBox box(parent);
    box.setObjectName(QStringLiteral("messageBox"));
    box.setText(text);
    box.setWindowTitle(caption.isEmpty() ? QApplication::applicationDisplayName() : caption);
    switch (buttons) {
    case MsgButtons::Ok:
        box.setIcon(QMessageBox::Information);
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
        return MsgAnswer::Ok;
    case MsgButtons::OkCancel:
        box.setIcon(QMessageBox::Warning);
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        return box.exec() == QMessageBox::Ok ? MsgAnswer::Ok : MsgAnswer::Cancel;
    case MsgButtons::YesNo:
        box.setIcon(QMessageBox::Question);
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        return box.exec() == QMessageBox::Yes ? MsgAnswer::Yes : MsgAnswer::No;
    }
    return MsgAnswer::Cancel;
}

bool QtUiInteraction::GetOpenFileName(QWidget* parent, const FileOpenRequest& request,
                                      QString& chosenPath) {
    QFileDialog dialog(parent, request.title, request.startFolder,
                       QtFilterFromDialogFilter(request.filter));
    dialog.setObjectName(QStringLiteral("fileOpenDialog"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setOption(QFileDialog::ReadOnly, false);
    if (!request.defaultExtension.isEmpty())
        dialog.setDefaultSuffix(request.defaultExtension);
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    chosenPath = dialog.selectedFiles().constFirst();
    return true;
}

int QtUiInteraction::RunModal(QDialog& dialog) {
    return dialog.exec();
}

bool QtUiInteraction::StartProgram(const QString& program, const QString& parameters,
                                   const QString& workingFolder) {
    QString path = program;
    if (!workingFolder.isEmpty() && QDir::isRelativePath(path))
        path = QDir(workingFolder).filePath(program);
    return QProcess::startDetached(path, SplitParameterLine(parameters), workingFolder);
}

void QtUiInteraction::Beep() {
    QApplication::beep();
}
