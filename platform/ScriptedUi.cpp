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

QString buttonsName(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::Ok:
        return QStringLiteral("OK");
    case MsgButtons::OkCancel:
        return QStringLiteral("OK/Cancel");
    case MsgButtons::YesNo:
        return QStringLiteral("Yes/No");
    }
    return QString();
}

QString describeEvent(const ScriptedUi::Event& event) {
    QString out = QStringLiteral("%1 \"%2\"").arg(kindName(event.kind), event.text);
    if (event.kind == ScriptedUi::Kind::Message)
        out +=
            QStringLiteral(" (caption \"%1\", %2)").arg(event.caption, buttonsName(event.buttons));
    else if (!event.caption.isEmpty())
        out += QStringLiteral(" (\"%1\")").arg(event.caption);
    return out;
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
    Step step(Kind::Message, text);
    step.answer = answer;
    m_script.append(step);
    return *this;
}

ScriptedUi& ScriptedUi::ExpectMessage(const QString& text, const QString& caption,
                                      MsgButtons buttons, MsgAnswer answer) {
    Step step(Kind::Message, text);
    step.second = caption;
    step.buttons = buttons;
    step.answer = answer;
    m_script.append(step);
    return *this;
}

ScriptedUi& ScriptedUi::ExpectFileOpen(const QString& filter, const QString& startFolder,
                                       const QString& chosenPath) {
    Step step(Kind::FileOpen, filter);
    step.second = startFolder;
    step.chosenPath = chosenPath;
    m_script.append(step);
    return *this;
}

ScriptedUi& ScriptedUi::ExpectModal(const QString& className, ModalHandler handler) {
    Step step(Kind::Modal, className);
    step.modal = std::move(handler);
    m_script.append(step);
    return *this;
}

ScriptedUi& ScriptedUi::ExpectStartProgram(const QString& program, const QString& parameters,
                                           bool succeeds) {
    Step step(Kind::StartProgram, program);
    step.second = parameters;
    step.succeeds = succeeds;
    m_script.append(step);
    return *this;
}

QString ScriptedUi::describe(const Step& step) const {
    QString out = kindName(step.kind);
    if (!step.text.isEmpty())
        out += QStringLiteral(" \"%1\"").arg(step.text);
    if (step.second)
        out += QStringLiteral(" (\"%1\")").arg(*step.second);
    if (step.buttons)
        out += QStringLiteral(" with %1").arg(buttonsName(*step.buttons));
    return out;
}

bool ScriptedUi::Verify() {
    const bool clean = m_script.isEmpty();
    for (const Step& step : m_script)
        fail(QStringLiteral("expected %1 never came").arg(describe(step)));
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

std::optional<ScriptedUi::Step> ScriptedUi::take(const Event& event) {
    m_events.append(event);
    if (m_script.isEmpty()) {
        fail(QStringLiteral("unexpected %1").arg(describeEvent(event)));
        return std::nullopt;
    }
    const Step& next = m_script.constFirst();
    if (next.kind != event.kind) {
        fail(QStringLiteral("unexpected %1 where the %2 was expected")
                 .arg(describeEvent(event), describe(next)));
        return std::nullopt;
    }
    const bool anyText = event.kind == Kind::Message && next.text.isEmpty();
    const bool matches = (anyText || next.text == event.text) &&
                         (!next.second || *next.second == event.caption) &&
                         (!next.buttons || *next.buttons == event.buttons);
    if (!matches) {
        fail(QStringLiteral("%1 came where the %2 was expected")
                 .arg(describeEvent(event), describe(next)));
        m_script.removeFirst();
        return std::nullopt;
    }
    return m_script.takeFirst();
}

MsgAnswer ScriptedUi::MessageBox(QWidget*, const QString& text, const QString& caption,
                                 MsgButtons buttons) {
    const auto step = take(Event{Kind::Message, text, caption, buttons, {}});
    if (!step)
        return buttons == MsgButtons::Ok      ? MsgAnswer::Ok
               : buttons == MsgButtons::YesNo ? MsgAnswer::No
                                              : MsgAnswer::Cancel;
    return step->answer;
}

bool ScriptedUi::GetOpenFileName(QWidget*, const FileOpenRequest& request, QString& chosenPath) {
    const auto step =
        take(Event{Kind::FileOpen, request.filter, request.startFolder, MsgButtons::Ok, {}});
    if (!step || step->chosenPath.isEmpty())
        return false;
    chosenPath = step->chosenPath;
    return true;
}

int ScriptedUi::RunModal(QDialog& dialog) {
    const auto step = take(Event{Kind::Modal,
                                 QString::fromLatin1(dialog.metaObject()->className()),
                                 dialog.windowTitle(),
                                 MsgButtons::Ok,
                                 {}});
    if (!step)
        return QDialog::Rejected;
    if (auto* own = qobject_cast<Dialog*>(&dialog))
        own->EnsureInitialised();
    else if (auto* sheet = qobject_cast<PropertySheet*>(&dialog))
        sheet->EnsureInitialised();
    return step->modal ? step->modal(dialog) : int(QDialog::Rejected);
}

bool ScriptedUi::StartProgram(const QString& program, const QString& parameters,
                              const QString& workingFolder) {
    const auto step =
        take(Event{Kind::StartProgram, program, parameters, MsgButtons::Ok, workingFolder});
    return step && step->succeeds;
}

void ScriptedUi::Beep() {
    ++m_beeps;
}
