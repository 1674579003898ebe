#pragma once

#include <QString>
#include <QWidget>

// One data exchange between a dialog's fields and its controls. Controls are found by
// their objectName below the root widget. Loading (save false) writes the fields into the
// controls; saving reads and validates the controls into the fields. A text that cannot
// be read stops the exchange: the person is told through the injected interface, the
// control gets the focus and UpdateData returns false.
class DataExchange {
public:
    DataExchange(QWidget* root, bool saveAndValidate)
        : m_root(root), m_bSaveAndValidate(saveAndValidate) {}

    QWidget* Root() const { return m_root; }
    bool Failed() const { return m_failed; }

    // The control of that name and type, or null: a missing control fails the exchange
    // (and is reported as a Qt warning), so a misspelt name never passes unnoticed.
    template <class T> T* Control(const QString& id) {
        if (m_failed)
            return nullptr;
        T* control = m_root ? m_root->findChild<T*>(id) : nullptr;
        if (!control)
            missing(id);
        return control;
    }
    // Refuses the exchange: shows the message, focuses the control.
    void Fail(QWidget* control, const QString& message);

    QWidget* m_root;
    bool m_bSaveAndValidate;

private:
    void missing(const QString& id);
    bool m_failed = false;
};

// The text shown when a numeric field holds no number.
QString DataExchangeNumberMessage();

// Edits (QLineEdit, QTextEdit, QPlainTextEdit), labels, combo boxes (their current text).
// Numbers: saving a text that still reads exactly as the field's value is shown keeps the
// value (the shown text may round it); any other text is read as a number.
void DDX_Text(DataExchange* pDX, const QString& id, QString& value);
void DDX_Text(DataExchange* pDX, const QString& id, int& value);
void DDX_Text(DataExchange* pDX, const QString& id, double& value);
// A double with a number format: code 1 a plain number, code 55 a datum transformation
// rotation shown through the rotation unit of the shared unit converter (shown = stored *
// factor, so the method's rotation sign applies); decimals after the point. Other codes
// are treated as 1.
void DDX_FmtDouble(DataExchange* pDX, const QString& id, double& value, int format, int decimals);
// Check boxes: 0 unchecked, 1 checked, 2 partly.
void DDX_Check(DataExchange* pDX, const QString& id, int& value);
void DDX_bCheck(DataExchange* pDX, const QString& id, bool& value);
// A radio group named by its first button: the index of the checked button, -1 for none.
// The group is the button's QButtonGroup in id order, else the radio buttons of the same
// parent from this one on.
void DDX_Radio(DataExchange* pDX, const QString& id, int& value);
// Combo box index (-1 none) and text of the selected entry (loading selects the entry
// that begins with the text, ignoring case).
void DDX_CBIndex(DataExchange* pDX, const QString& id, int& value);
void DDX_CBString(DataExchange* pDX, const QString& id, QString& value);

// Format code of DDX_FmtDouble for datum transformation rotations.
constexpr int DDX_FORMAT_PLAIN = 1;
constexpr int DDX_FORMAT_ROTATION = 55;

// Formats value with decimals after the point; never shows "-0.000".
QString FormatFixed(double value, int decimals);
// Reads a decimal number (blanks around it allowed); false for anything else.
bool ParseNumber(const QString& text, double& value);
