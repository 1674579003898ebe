#pragma once

#include <QLineEdit>
#include <QString>

class QKeyEvent;

// A single-line edit that holds its text to a mask. Each mask character is one position:
//   '#'  a digit        '?'  a letter        '+'  the sign characters + and - only
//   anything else: a literal, shown as it stands and never typed over.
// Empty input positions show the placeholder ('_' unless set). Without a mask the control is
// a plain edit.
//
// Every edit by the user (typing, deleting, pasting, dropping, undoing) is folded back into
// the mask at once: characters typed in addition overwrite those behind the caret, deleted
// input positions get the placeholder back and characters not valid for their position
// become the placeholder. Afterwards Backspace leaves the caret where it is, Delete moves it
// one to the right, and any other key moves it off a literal to the next input position.
//
// The digit and letter tests look only at the low byte of a typed character (U+0131 passes
// as the digit '1'); the low byte, not the typed character, is written, so the text always
// holds plain ASCII digits and letters where the mask asks for them and reads back as a
// number or an angle. The sign position compares the whole character.
//
// During a user edit textChanged() may fire twice, the last time with the text as typed
// before it was folded into the mask: listeners read text() or GetMaskedText() rather than
// the signal's argument.
class CMaskEdit : public QLineEdit {
    Q_OBJECT

public:
    // Virtual-key codes of the last key that change the caret rule.
    static constexpr unsigned kKeyBackspace = 8;
    static constexpr unsigned kKeyDelete = 46;
    static constexpr char kDefaultPlaceholder = '_';

    explicit CMaskEdit(QWidget* parent = nullptr);

    // Shown in empty input positions from the next SetMask, SetText or user edit on.
    void SetPlaceholder(char placeholder) { m_placeholder = placeholder; }
    char GetPlaceholder() const { return m_placeholder; }

    // Stores the mask and shows it with every input position empty; an empty mask makes the
    // control a plain edit and empties it.
    void SetMask(const QString& mask);
    QString GetMask() const { return m_mask; }
    QString GetMaskedText() const { return m_maskedText; }

    // With a mask: fills the input positions from the left with the characters of text,
    // literals not included. An invalid character is used up but leaves its position as it
    // was; positions beyond the end of text become empty. Without a mask: shows text as it is.
    void SetText(const QString& text);
    // With a mask: the characters at the input positions, placeholders included; without a
    // mask: the whole text.
    QString GetInputText() const;

    // Selects from start to end (the caret at end) and scrolls the caret into view.
    void SelectRange(int start, int end);

    // The virtual-key code of the last key pressed; 0 for a key without one of interest.
    unsigned GetLastKey() const { return m_lastKey; }

    // Whether a mask character is an input position ('#', '?', '+').
    static bool IsInputMaskChar(QChar maskChar);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void FoldUserEdit();
    // The character written at an input position for c, or a null QChar when c is not valid
    // there.
    QChar Accepted(int position, QChar c) const;
    QString EmptyMaskedText() const;
    void Show(const QString& text, int caret);
    static unsigned VirtualKeyOf(int qtKey);

    char m_placeholder = kDefaultPlaceholder;
    QString m_mask;
    QString m_maskedText;
    unsigned m_lastKey = 0;
    bool m_showing = false; // our own setText: not an edit by the user
};
