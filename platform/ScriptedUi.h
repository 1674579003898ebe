#pragma once

#include "platform/UiInteraction.h"

#include <QDialog>
#include <QList>
#include <QStringList>

#include <functional>
#include <optional>

// A UiInteraction for tests: installs itself while it lives, records every text shown and
// answers from a script. Each expectation names what it expects: a message box its text
// (and, when given, caption and buttons), a nested dialog its class, a file dialog its filter
// and start folder, a program start its program and parameters. Expectations are consumed
// in order; a dialog that was not expected, or one that differs from the next expectation,
// is reported as a failure (and answered with Cancel/No), and so is every expectation still
// pending when the script is verified or destroyed. Tests pass a failure handler that fails
// the test.
class ScriptedUi : public UiInteraction {
public:
    using FailureHandler = std::function<void(const QString&)>;
    using ModalHandler = std::function<int(QDialog&)>;

    enum class Kind { Message, FileOpen, Modal, StartProgram };

    struct Event {
        Kind kind;
        QString text;    // message text, file dialog filter, dialog class, program
        QString caption; // message caption, file dialog start folder, dialog title, parameters
        MsgButtons buttons = MsgButtons::Ok;
        QString folder; // working folder of a started program
    };

    explicit ScriptedUi(FailureHandler onFailure = {});
    ~ScriptedUi() override;
    ScriptedUi(const ScriptedUi&) = delete;
    ScriptedUi& operator=(const ScriptedUi&) = delete;

    // A message box with exactly this text (any text when text is empty), answered so.
    ScriptedUi& ExpectMessage(const QString& text, MsgAnswer answer = MsgAnswer::Ok);
    // The same, also checking the caption and the buttons offered.
    ScriptedUi& ExpectMessage(const QString& text, const QString& caption, MsgButtons buttons,
                              MsgAnswer answer);
    // A file-open dialog with this filter (dialog form, "Text|*.ext||") starting in this
    // folder; an empty chosen path cancels it.
    ScriptedUi& ExpectFileOpen(const QString& filter, const QString& startFolder,
                               const QString& chosenPath);
    // A nested modal dialog of exactly this class (its metaObject's class name): the handler
    // gets the initialised dialog and returns the result.
    ScriptedUi& ExpectModal(const QString& className, ModalHandler handler);
    // The same with the class as a type: the handler takes a D&.
    template <class D, class F> ScriptedUi& ExpectModal(F handler) {
        static_assert(QtPrivate::HasQ_OBJECT_Macro<D>::Value,
                      "a dialog named by its class needs Q_OBJECT");
        return ExpectModal(
            QString::fromLatin1(D::staticMetaObject.className()),
            [handler](QDialog& dialog) -> int { return handler(static_cast<D&>(dialog)); });
    }
    // A start of exactly this program with exactly these parameters; succeeds or fails.
    ScriptedUi& ExpectStartProgram(const QString& program, const QString& parameters,
                                   bool succeeds = true);

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
        Step(Kind k, const QString& t) : kind(k), text(t) {}
        Kind kind;
        QString text;                      // what the event's text must be (empty: any text
                                           // for a message)
        std::optional<QString> second;     // what the event's caption must be, when checked
        std::optional<MsgButtons> buttons; // the buttons a message must offer, when checked
        MsgAnswer answer = MsgAnswer::Ok;
        bool succeeds = true;
        QString chosenPath;
        ModalHandler modal;
    };
    // The next step when it is of this kind and matches the event; else reports and drops
    // a mismatching step of the same kind.
    std::optional<Step> take(const Event& event);
    QString describe(const Step& step) const;
    void fail(const QString& message);

    FailureHandler m_onFailure;
    UiInteraction* m_previous = nullptr;
    QList<Step> m_script;
    QList<Event> m_events;
    QStringList m_failures;
    int m_beeps = 0;
};
