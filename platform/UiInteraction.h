#pragma once

#include <QString>

class QDialog;
class QWidget;

// Buttons of a message box and the answer the person gave.
enum class MsgButtons { Ok, OkCancel, YesNo };
enum class MsgAnswer { Ok, Cancel, Yes, No };

// A file-open dialog. filter uses the "Description|*.ext||" form of the dialogs (items
// separated by '|', pairs of description and pattern, ended by "||").
struct FileOpenRequest {
    QString title;
    QString filter;
    QString defaultExtension;
    QString startFolder;
    QString fileName; // preset file name
};

// Everything that waits for the person goes through this one interface, so that tests can
// answer from a script and see every text shown. Install another implementation with
// SetUi; the default uses the real Qt dialogs.
class UiInteraction {
public:
    virtual ~UiInteraction() = default;

    // Shows a modal message box; parent may be null.
    virtual MsgAnswer MessageBox(QWidget* parent, const QString& text, const QString& caption,
                                 MsgButtons buttons) = 0;
    // Asks for an existing file; true with its full path, false when cancelled.
    virtual bool GetOpenFileName(QWidget* parent, const FileOpenRequest& request,
                                 QString& chosenPath) = 0;
    // Runs a nested dialog modally and returns its result code.
    virtual int RunModal(QDialog& dialog) = 0;
    // Starts a program (the "open" verb) with a parameter line in a working folder; false
    // when it could not be started.
    virtual bool StartProgram(const QString& program, const QString& parameters,
                              const QString& workingFolder) = 0;
    virtual void Beep() = 0;
};

// The interface in use.
UiInteraction& GetUi();
// Installs ui (not owned); null restores the default. Returns the one installed before.
UiInteraction* SetUi(UiInteraction* ui);

// The real dialogs.
class QtUiInteraction : public UiInteraction {
public:
    MsgAnswer MessageBox(QWidget* parent, const QString& text, const QString& caption,
                         MsgButtons buttons) override;
    bool GetOpenFileName(QWidget* parent, const FileOpenRequest& request,
                         QString& chosenPath) override;
    int RunModal(QDialog& dialog) override;
    bool StartProgram(const QString& program, const QString& parameters,
                      const QString& workingFolder) override;
    void Beep() override;
};

// "Description|*.a;*.b|Other|*.c||" -> "Description (*.a *.b);;Other (*.c)".
QString QtFilterFromDialogFilter(const QString& filter);
// Splits a parameter line at blanks, keeping text in double quotes together (quotes removed).
QStringList SplitParameterLine(const QString& parameters);
