#include "dialogs/CMaskEdit.h"

#include <QKeyEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace {

constexpr char16_t kDigitMask = u'#';
constexpr char16_t kLetterMask = u'?';
constexpr char16_t kSignMask = u'+';
constexpr char16_t kLowByte = 0xFF;

// Virtual-key codes of the keys that are not letters or digits (those keep their upper-case
// ASCII code, as Qt's key codes do). Only Backspace and Delete change the caret rule; the
// others are listed so that no key is mistaken for them (Qt::Key_Period is 46, like Delete).
struct KeyCode {
    int qtKey;
    unsigned code;
};
constexpr KeyCode kKeyCodes[] = {
    {Qt::Key_Backspace, CMaskEdit::kKeyBackspace},
    {Qt::Key_Tab, 0x09},
    {Qt::Key_Return, 0x0D},
    {Qt::Key_Enter, 0x0D},
    {Qt::Key_Shift, 0x10},
    {Qt::Key_Control, 0x11},
    {Qt::Key_Alt, 0x12},
    {Qt::Key_Escape, 0x1B},
    {Qt::Key_Space, 0x20},
    {Qt::Key_PageUp, 0x21},
    {Qt::Key_PageDown, 0x22},
    {Qt::Key_End, 0x23},
    {Qt::Key_Home, 0x24},
    {Qt::Key_Left, 0x25},
    {Qt::Key_Up, 0x26},
    {Qt::Key_Right, 0x27},
    {Qt::Key_Down, 0x28},
    {Qt::Key_Insert, 0x2D},
    {Qt::Key_Delete, CMaskEdit::kKeyDelete},
    {Qt::Key_Plus, 0xBB},
    {Qt::Key_Comma, 0xBC},
    {Qt::Key_Minus, 0xBD},
    {Qt::Key_Period, 0xBE},
};

bool isAsciiDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool isAsciiLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

} // namespace

CMaskEdit::CMaskEdit(QWidget* parent) : QLineEdit(parent) {
    // textEdited comes only from the user, never from setText
    connect(this, &QLineEdit::textEdited, this, &CMaskEdit::FoldUserEdit);
}

bool CMaskEdit::IsInputMaskChar(QChar maskChar) {
    const char16_t c = maskChar.unicode();
    return c == kDigitMask || c == kLetterMask || c == kSignMask;
}

QString CMaskEdit::EmptyMaskedText() const {
    QString text = m_mask;
    for (QChar& c : text) {
        if (IsInputMaskChar(c))
            c = QLatin1Char(m_placeholder);
    }
    return text;
}

void CMaskEdit::SetMask(const QString& mask) {
    m_mask = mask;
    m_maskedText = EmptyMaskedText();
    Show(m_maskedText, 0);
}

void CMaskEdit::SetText(const QString& text) {
    if (m_mask.isEmpty()) {
        Show(text, text.size());
        return;
    }
    if (m_maskedText.size() != m_mask.size())
        m_maskedText = EmptyMaskedText();
    qsizetype next = 0;
    for (qsizetype i = 0; i < m_mask.size(); ++i) {
        if (!IsInputMaskChar(m_mask[i]))
            continue;
        if (next >= text.size()) {
            m_maskedText[i] = QLatin1Char(m_placeholder);
            continue;
        }
        const QChar written = Accepted(int(i), text[next++]);
        if (!written.isNull())
            m_maskedText[i] = written;
    }
    Show(m_maskedText, 0);
}

QString CMaskEdit::GetInputText() const {
    if (m_mask.isEmpty())
        return text();
    QString input;
    for (qsizetype i = 0; i < m_mask.size() && i < m_maskedText.size(); ++i) {
        if (IsInputMaskChar(m_mask[i]))
            input += m_maskedText[i];
    }
    return input;
}

void CMaskEdit::SelectRange(int start, int end) {
    const int length = int(text().size());
    start = std::clamp(start, 0, length);
    end = std::clamp(end, 0, length);
    if (start == end)
        setCursorPosition(end);
    else
        setSelection(start, end - start); // the caret lands on end and is scrolled to
}

QChar CMaskEdit::Accepted(int position, QChar c) const {
    if (position < 0 || position >= m_mask.size())
        return {};
    // the digit and letter tests see the low byte only
    const char16_t low = c.unicode() & kLowByte;
    switch (m_mask[position].unicode()) {
    case kDigitMask:
        return isAsciiDigit(low) ? QChar(low) : QChar();
    case kLetterMask:
        return isAsciiLetter(low) ? QChar(low) : QChar();
    case kSignMask:
        return c == QLatin1Char('+') || c == QLatin1Char('-') ? c : QChar();
    default:
        return {};
    }
}

void CMaskEdit::FoldUserEdit() {
    if (m_showing || m_mask.isEmpty())
        return;
    QString shown = text();
    if (shown == m_maskedText)
        return;

    const qsizetype maskLength = m_mask.size();
    qsizetype caret = hasSelectedText() ? selectionStart() : cursorPosition();
    caret = std::clamp<qsizetype>(caret, 0, shown.size());
    qsizetype missing = maskLength - shown.size();
    if (missing < 0) {
        // typed in addition: overwrite as many characters behind the caret
        caret = std::min(caret, shown.size() + missing);
        shown.remove(caret, -missing);
        missing = 0;
    }

    const QChar placeholder = QLatin1Char(m_placeholder);
    QString masked = m_mask;
    qsizetype read = 0;
    for (qsizetype i = 0; i < maskLength; ++i) {
        const bool input = IsInputMaskChar(m_mask[i]);
        if (i >= caret && i < caret + missing) {
            // deleted by the user: an input position empties, a literal stays
            if (input)
                masked[i] = placeholder;
            continue;
        }
        if (input) {
            const QChar written = read < shown.size() ? Accepted(int(i), shown[read]) : QChar();
            masked[i] = written.isNull() ? placeholder : written;
        }
        ++read;
    }
    m_maskedText = masked;

    if (m_lastKey == kKeyDelete) {
        ++caret;
    } else if (m_lastKey != kKeyBackspace) {
        while (caret < maskLength && !IsInputMaskChar(m_mask[caret]))
            ++caret;
    }
    Show(m_maskedText, int(std::min(caret, maskLength)));
}

void CMaskEdit::Show(const QString& text, int caret) {
    const QScopedValueRollback<bool> showing(m_showing, true);
    setText(text);
    setCursorPosition(caret); // also scrolls the caret into view
}

unsigned CMaskEdit::VirtualKeyOf(int qtKey) {
    if ((qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) || (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z))
        return unsigned(qtKey);
    const auto* found = std::find_if(std::begin(kKeyCodes), std::end(kKeyCodes),
                                     [qtKey](const KeyCode& k) { return k.qtKey == qtKey; });
    return found == std::end(kKeyCodes) ? 0 : found->code;
}

void CMaskEdit::keyPressEvent(QKeyEvent* event) {
    m_lastKey = VirtualKeyOf(event->key());
    QLineEdit::keyPressEvent(event);
}
