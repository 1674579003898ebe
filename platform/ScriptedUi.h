#pragma once

#include "platform/UiInteraction.h"

#include <QList>
#include <QStringList>

#include <functional>

// A UiInteraction for tests: installs itself while it lives, records every text shown and
// answers from a script. Expectations are consumed in order; a dialog that was not
// expected, or one that differs from the next expectation, is reported as a failure (and
// answered with Cancel/No), and so is every expectation still pending when the script is
// verified or destroyed. Tests pass a failure handler that fails the test.
class ScriptedUi : public UiInteraction {
public:
    using FailureHandler = std::function<void(const QString&)>;
    using ModalHandler = std::function<int(QDialog&)>;

    enum class Kind { Message, FileOpen, Modal, StartProgram };

    struct Event {
        Kind kind;
        QString text;    // message text, file dialog filter, dialog object name, program
        QString caption; // message caption, file dialog start folder, program parameters
        MsgButtons buttons = MsgButtons::Ok;
        QString folder; // working folder of a started program
    };

    explicit ScriptedUi(FailureHandler onFailure = {});
    ~ScriptedUi() override;
    ScriptedUi(const ScriptedUi&) = delete;
    ScriptedUi& operator=(const ScriptedUi&) = delete;

    // A message box with exactly this text (any text when text is empty), answered so.
    ScriptedUi& ExpectMessage(const QString& text, MsgAnswer answer = MsgAnswer::Ok);
    // A file-open dialog; an empty path cancels it.
    ScriptedUi& ExpectFileOpen(const QString& chosenPath);
    // A nested modal dialog: handler gets the initialised dialog and returns the result.
    ScriptedUi& ExpectModal(ModalHandler handler);
    // A program start that succeeds or fails.
    ScriptedUi& ExpectStartProgram(bool succeeds = true);

    // Reports every expectation still pending and forgets them; true when none was.
    bool Verify();

    const QList<Event>& Events() const { return m_events; }
    QStringList MessageTexts() const;
    int BeepCount() const { return m_beeps; }
    QStringList Failures() const { return m_failures; }
    int PendingCount() const { return static_cast<int>(m_script.size()); }

    MsgAnswer MessageBox(QWidget* parent, const QString& text, const QString& caption,
                         MsgButtons buttons) override;
    bool GetOpenFileName(QWidget* parent, const FileOpenRequest& request,
                         QString& chosenPath) override;
    int RunModal(QDialog& dialog) override;
    bool StartProgram(const QString& program, const QString& parameters,
                      const QString& workingFolder) override;
    void Beep() override;

private:
    struct Step {
        Kind kind;
        QString text;
        MsgAnswer answer = MsgAnswer::Ok;
        bool succeeds = true;
        ModalHandler modal;
    };
    bool take(Kind kind, const QString& what, Step& step);
    void fail(const QString& message);

    FailureHandler m_onFailure;
    UiInteraction* m_previous = nullptr;
    QList<Step> m_script;
    QList<Event> m_events;
    QStringList m_failures;
    int m_beeps = 0;
};
