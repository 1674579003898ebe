// The masked numeric edit: a mask, a text set by the program and keys typed by the person.
// Whatever arrives, the text keeps the mask's length and its literals.
#include "FuzzInput.h"

#include "dialogs/CMaskEdit.h"

#include <QApplication>
#include <QKeyEvent>

namespace {

CMaskEdit* Edit() {
    static CMaskEdit* edit = new CMaskEdit;
    return edit;
}

void CheckMask(const CMaskEdit& edit) {
    const QString mask = edit.GetMask();
    if (mask.isEmpty())
        return;
    const QString text = edit.GetMaskedText();
    FuzzInput::Check(text.size() == mask.size(), "the text lost the mask's length");
    for (qsizetype i = 0; i < mask.size(); ++i) {
        if (!CMaskEdit::IsInputMaskChar(mask[i]))
            FuzzInput::Check(text[i] == mask[i], "a literal was typed over");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: Qt cannot take its application apart in the exit handlers.
    new QApplication(*argc, *argv);
    Edit();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Three parts split at the first two NUL characters: mask, text, keys.
    const QString input = FuzzInput::Text(data, size);
    const QStringList parts = input.split(QChar(0));
    CMaskEdit* edit = Edit();
    edit->SetMask(parts.value(0).left(64));
    CheckMask(*edit);
    edit->SetText(parts.value(1));
    CheckMask(*edit);
    const QString keys = parts.value(2).left(64);
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const char16_t c = keys[i].unicode();
        int key = 0;
        QString typed;
        switch (c % 8) {
        case 0:
            key = Qt::Key_Backspace;
            break;
        case 1:
            key = Qt::Key_Delete;
            break;
        case 2:
            key = (c & 16) ? Qt::Key_Left : Qt::Key_Right;
            break;
        case 3:
            edit->SelectRange(int(c % 13) - 2, int(c % 11) - 1);
            continue;
        default:
            typed = QString(QChar(char16_t(c >> 3)));
            key = typed[0].isLetterOrNumber() ? int(typed[0].toUpper().unicode()) : Qt::Key_unknown;
        }
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, typed);
        QApplication::sendEvent(edit, &press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, typed);
        QApplication::sendEvent(edit, &release);
        CheckMask(*edit);
    }
    edit->GetInputText();
    return 0;
}
