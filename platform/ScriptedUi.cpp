#include "platform/ScriptedUi.h"

#include "platform/Dialog.h"
#include "platform/PropertySheet.h"

#include <QDialog>
#include <QtDebug>

namespace {
QString kindName(ScriptedUi::Kind kind) {
    switch (kind) {
    case ScriptedUi::Kind::Message:
        return QStringLiteral("message box");
    case ScriptedUi::Kind::FileOpen:
        return QStringLiteral("file-open dialog");
    case ScriptedUi::Kind::Modal:
        return QStringLiteral("modal dialog");
    case ScriptedUi::Kind::StartProgram:
        return QStringLiteral("program start");
    }
    return QString();
}
} // namespace

ScriptedUi::ScriptedUi(FailureHandler onFailure) : m_onFailure(std::move(onFailure)) {
    m_previous = SetUi(this);
}

ScriptedUi::~ScriptedUi() {
    Verify();
    SetUi(m_previous);
}

ScriptedUi& ScriptedUi::ExpectMessage(const QString& text, MsgAnswer answer) {
    m_script.append(Step{Kind::Message, text, answer, true, {}});
    return *this;
}

ScriptedUi& ScriptedUi::ExpectFileOpen(const QString& chosenPath) {
    m_script.append(Step{Kind::FileOpen, chosenPath, MsgAnswer::Ok, true, {}});
    return *this;
}

ScriptedUi& ScriptedUi::ExpectModal(ModalHandler handler) {
    m_script.append(Step{Kind::Modal, QString(), MsgAnswer::Ok, true, std::move(handler)});
    return *this;
}

ScriptedUi& ScriptedUi::ExpectStartProgram(bool succeeds) {
    m_script.append(Step{Kind::StartProgram, QString(), MsgAnswer::Ok, succeeds, {}});
    return *this;
}

bool ScriptedUi::Verify() {
    const bool clean = m_script.isEmpty();
    for (const Step& step : m_script) {
        QString what = kindName(step.kind);
        if (step.kind == Kind::Message && !step.text.isEmpty())
            what += QStringLiteral(" \"%1\"").arg(step.text);
        fail(QStringLiteral("expected %1 never came").arg(what));
    }
    m_script.clear();
    return clean;
}

QStringList ScriptedUi::MessageTexts() const {
    QStringList out;
    for (const Event& event : m_events)
        if (event.kind == Kind::Message)
            out << event.text;
    return out;
}

void ScriptedUi::fail(const QString& message) {
    m_failures << message;
    if (m_onFailure)
        m_onFailure(message);
    else
        qWarning().noquote() << "ScriptedUi:" << message;
}

bool ScriptedUi::take(Kind kind, const QString& what, Step& step) {
    if (m_script.isEmpty()) {
        fail(QStringLiteral("unexpected %1: %2").arg(kindName(kind), what));
        return false;
    }
    const Step& next = m_script.constFirst();
    if (next.kind != kind) {
        fail(QStringLiteral("unexpected %1 (%2) where a %3 was expected")
                 .arg(kindName(kind), what, kindName(next.kind)));
        return false;
    }
    if (kind == Kind::Message && !next.text.isEmpty() && next.text != what) {
        fail(QStringLiteral("message \"%1\" shown where \"%2\" was expected").arg(what, next.text));
        m_script.removeFirst();
        return false;
    }
    step = m_script.takeFirst();
    return true;
}

MsgAnswer ScriptedUi::MessageBox(QWidget*, const QString& text, const QString& caption,
                                 MsgButtons buttons) {
    m_events.append(Event{Kind::Message, text, caption, buttons, {}});
    Step step;
    if (!take(Kind::Message, text, step))
        return buttons == MsgButtons::Ok      ? MsgAnswer::Ok
               : buttons == MsgButtons::YesNo ? MsgAnswer::No
                                              : MsgAnswer::Cancel;
    return step.answer;
}

bool ScriptedUi::GetOpenFileName(QWidget*, const FileOpenRequest& request, QString& chosenPath) {
    m_events.append(Event{Kind::FileOpen, request.filter, request.startFolder, MsgButtons::Ok, {}});
    Step step;
    if (!take(Kind::FileOpen, request.filter, step) || step.text.isEmpty())
        return false;
    chosenPath = step.text;
    return true;
}

int ScriptedUi::RunModal(QDialog& dialog) {
    m_events.append(
        Event{Kind::Modal, dialog.objectName(), dialog.windowTitle(), MsgButtons::Ok, {}});
    Step step;
    if (!take(Kind::Modal, dialog.objectName(), step))
        return QDialog::Rejected;
    if (auto* own = qobject_cast<Dialog*>(&dialog))
        own->EnsureInitialised();
    else if (auto* sheet = qobject_cast<PropertySheet*>(&dialog))
        sheet->EnsureInitialised();
    return step.modal ? step.modal(dialog) : int(QDialog::Rejected);
}

bool ScriptedUi::StartProgram(const QString& program, const QString& parameters,
                              const QString& workingFolder) {
    m_events.append(Event{Kind::StartProgram, program, parameters, MsgButtons::Ok, workingFolder});
    Step step;
    if (!take(Kind::StartProgram, program, step))
        return false;
    return step.succeeds;
}

void ScriptedUi::Beep() {
    ++m_beeps;
}
