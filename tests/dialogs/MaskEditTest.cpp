#include "dialogs/CMaskEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// A shown masked edit on "##.##".
struct MaskEdit : ::testing::Test {
    MaskEdit() {
        edit.SetMask(QStringLiteral("##.##"));
        edit.show();
    }

    // types a character that has no key of its own
    void typeCharacter(char16_t c) {
        QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_unknown, QString(QChar(c)),
                            Qt::NoModifier);
    }
    void typeAt(int position, const QString& keys) {
        edit.SelectRange(position, position);
        QTest::keyClicks(&edit, keys);
    }
    void keyAt(int position, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        edit.SelectRange(position, position);
        QTest::keyClick(&edit, key, modifiers);
    }

    CMaskEdit edit;
};

} // namespace

TEST_F(MaskEdit, TypingFillsInputPositionsAndSkipsLiterals) {
    EXPECT_EQ(edit.text(), QStringLiteral("__.__"));
    typeAt(0, QStringLiteral("1"));
    EXPECT_EQ(edit.text(), QStringLiteral("1_.__"));
    EXPECT_EQ(edit.cursorPosition(), 1);
    QTest::keyClick(&edit, Qt::Key_2);
    EXPECT_EQ(edit.text(), QStringLiteral("12.__"));
    EXPECT_EQ(edit.cursorPosition(), 3); // behind the point, on the third input position
    QTest::keyClicks(&edit, QStringLiteral("345"));
    EXPECT_EQ(edit.text(), QStringLiteral("12.34")); // nothing beyond the mask
    EXPECT_EQ(edit.cursorPosition(), 5);

    // the period is no Delete key: the caret stays behind what was typed
    typeAt(3, QStringLiteral("."));
    EXPECT_EQ(edit.text(), QStringLiteral("12._4"));
    EXPECT_EQ(edit.cursorPosition(), 4);
}

TEST_F(MaskEdit, BackspaceKeepsTheCaretDeleteMovesItRight) {
    edit.SetText(QStringLiteral("1234"));
    keyAt(4, Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), QStringLiteral("12._4"));
    EXPECT_EQ(edit.cursorPosition(), 3);
    QTest::keyClick(&edit, Qt::Key_Backspace); // over the literal: it stays
    EXPECT_EQ(edit.text(), QStringLiteral("12._4"));
    EXPECT_EQ(edit.cursorPosition(), 2);

    keyAt(0, Qt::Key_Delete);
    EXPECT_EQ(edit.text(), QStringLiteral("_2._4"));
    EXPECT_EQ(edit.cursorPosition(), 1);
}

TEST_F(MaskEdit, InvalidCharactersBecomeThePlaceholder) {
    typeAt(0, QStringLiteral("a"));
    EXPECT_EQ(edit.text(), QStringLiteral("__.__"));

    edit.SetPlaceholder('*');
    edit.SetMask(QStringLiteral("+##?"));
    EXPECT_EQ(edit.text(), QStringLiteral("****"));
    QTest::keyClicks(&edit, QStringLiteral("-12N"));
    EXPECT_EQ(edit.text(), QStringLiteral("-12N"));
    typeAt(0, QStringLiteral("5"));
    typeAt(3, QStringLiteral("7"));
    EXPECT_EQ(edit.text(), QStringLiteral("*12*"));
}

TEST_F(MaskEdit, SetTextFillsInputPositionsOnly) {
    edit.SetText(QStringLiteral("1"));
    EXPECT_EQ(edit.text(), QStringLiteral("1_.__"));

    // an invalid character is used up and keeps what its position held
    edit.SetText(QStringLiteral("1234"));
    edit.SetText(QStringLiteral("9x5"));
    EXPECT_EQ(edit.text(), QStringLiteral("92.5_"));

    // placeholders are part of the input text, literals are not
    edit.SetMask(edit.GetMask());
    edit.SetText(QStringLiteral("1_3"));
    EXPECT_EQ(edit.GetInputText(), QStringLiteral("1_3_"));
    EXPECT_EQ(edit.GetMaskedText(), QStringLiteral("1_.3_"));
}

TEST_F(MaskEdit, OnlyTheLowByteOfADigitOrLetterIsTested) {
    // U+0131 has the low byte of '1'; its low byte is what the edit keeps
    edit.SelectRange(0, 0);
    typeCharacter(u'\u0131');
    EXPECT_EQ(edit.text(), QStringLiteral("1_.__"));
    // U+0661 is a digit, but its low byte is 'a'
    typeCharacter(u'\u0661');
    EXPECT_EQ(edit.text(), QStringLiteral("1_.__"));
    edit.SetText(QStringLiteral("\u0132\u0133"));
    EXPECT_EQ(edit.GetInputText(), QStringLiteral("23__"));

    edit.SetMask(QStringLiteral("?+"));
    typeCharacter(u'\u0141'); // low byte 'A'
    typeCharacter(u'\u012B'); // low byte '+', but a sign must be + or - itself
    EXPECT_EQ(edit.text(), QStringLiteral("A_"));
}

TEST_F(MaskEdit, PastedAndOverlongTextIsCutToTheMask) {
    QApplication::clipboard()->setText(QStringLiteral("123456789"));
    keyAt(0, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), QStringLiteral("12.45"));
    EXPECT_EQ(edit.cursorPosition(), 5);

    // typing over a selection empties the rest of it
    edit.SetText(QStringLiteral("1234"));
    edit.SelectRange(1, 4);
    QTest::keyClick(&edit, Qt::Key_9);
    EXPECT_EQ(edit.text(), QStringLiteral("19._4"));

    // a text longer than the mask put in behind the edit's back; a caret out of range
    edit.setText(QStringLiteral("1234567"));
    typeAt(7, QStringLiteral("8"));
    EXPECT_EQ(edit.text(), QStringLiteral("12.45"));
    edit.SelectRange(-3, 99);
    EXPECT_EQ(edit.selectedText(), QStringLiteral("12.45"));
}

TEST_F(MaskEdit, WithoutAMaskItIsAPlainEdit) {
    edit.SetMask(QString());
    EXPECT_TRUE(edit.text().isEmpty());
    QTest::keyClicks(&edit, QStringLiteral("a1.-"));
    EXPECT_EQ(edit.GetInputText(), QStringLiteral("a1.-"));

    // a mask of literals only takes nothing
    edit.SetMask(QStringLiteral("--"));
    typeAt(0, QStringLiteral("12"));
    EXPECT_EQ(edit.text(), QStringLiteral("--"));
    EXPECT_TRUE(edit.GetInputText().isEmpty());
}
