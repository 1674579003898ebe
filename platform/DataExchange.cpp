#include "platform/DataExchange.h"

#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "util/COrvUnitCnv.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTextEdit>
#include <QtDebug>

#include <algorithm>
#include <cmath>
#include <functional>

QString DataExchangeNumberMessage() {
    return LoadOrvString(StrId::EnterNumber);
}

void DataExchange::Fail(QWidget* control, const QString& message) {
    if (m_failed)
        return;
    m_failed = true;
    GetUi().MessageBox(m_root, message, QString(), MsgButtons::Ok);
    if (control)
        control->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(control))
        edit->selectAll();
}

void DataExchange::missing(const QString& id) {
    // A misspelt name would otherwise move no value without a word: the exchange fails.
    m_failed = true;
    qWarning().noquote() << QStringLiteral("data exchange: no control named \"%1\" below \"%2\"")
                                .arg(id, m_root ? m_root->objectName() : QString());
}

QString FormatFixed(double value, int decimals) {
    if (!std::isfinite(value))
        return QString::number(value);
    QString text = QString::asprintf("%.*f", decimals < 0 ? 6 : decimals, value);
    // -0.000 and friends read as zero
    bool zero = true;
    for (const QChar c : text)
        if (c.isDigit() && c != QLatin1Char('0'))
            zero = false;
    if (zero && text.startsWith(QLatin1Char('-')))
        text.remove(0, 1);
    return text;
}

bool ParseNumber(const QString& text, double& value) {
    bool ok = false;
    const double parsed = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(parsed))
        return false;
    value = parsed;
    return true;
}

namespace {

QWidget* textControl(DataExchange* pDX, const QString& id) {
    return pDX->Control<QWidget>(id);
}

QString readText(QWidget* control) {
    if (auto* edit = qobject_cast<QLineEdit*>(control))
        return edit->text();
    if (auto* edit = qobject_cast<QPlainTextEdit*>(control))
        return edit->toPlainText();
    if (auto* edit = qobject_cast<QTextEdit*>(control))
        return edit->toPlainText();
    if (auto* combo = qobject_cast<QComboBox*>(control))
        return combo->currentText();
    if (auto* label = qobject_cast<QLabel*>(control))
        return label->text();
    if (auto* button = qobject_cast<QAbstractButton*>(control))
        return button->text();
    return QString();
}

void writeText(QWidget* control, const QString& text) {
    if (auto* edit = qobject_cast<QLineEdit*>(control)) {
        if (edit->text() != text)
            edit->setText(text);
    } else if (auto* edit = qobject_cast<QPlainTextEdit*>(control)) {
        if (edit->toPlainText() != text)
            edit->setPlainText(text);
    } else if (auto* edit = qobject_cast<QTextEdit*>(control)) {
        if (edit->toPlainText() != text)
            edit->setPlainText(text);
    } else if (auto* combo = qobject_cast<QComboBox*>(control)) {
        if (combo->isEditable())
            combo->setEditText(text);
        else
            combo->setCurrentIndex(combo->findText(text, Qt::MatchFixedString));
    } else if (auto* label = qobject_cast<QLabel*>(control)) {
        label->setText(text);
    } else if (auto* button = qobject_cast<QAbstractButton*>(control)) {
        button->setText(text);
    }
}

void exchangeNumber(DataExchange* pDX, const QString& id, double& value,
                    const std::function<QString(double)>& show,
                    const std::function<double(double)>& store) {
    QWidget* control = textControl(pDX, id);
    if (!control)
        return;
    if (!pDX->m_bSaveAndValidate) {
        writeText(control, show(value));
        return;
    }
    const QString text = readText(control);
    // A text that still shows the field's value keeps the value: the display rounds it, and
    // reading the rounded text back would change a number nobody touched.
    if (std::isfinite(value) && text == show(value))
        return;
    double parsed = 0;
    if (!ParseNumber(text, parsed)) {
        pDX->Fail(control, DataExchangeNumberMessage());
        return;
    }
    value = store(parsed);
}

QList<QAbstractButton*> radioGroup(QRadioButton* first) {
    QList<QAbstractButton*> buttons;
    if (QButtonGroup* group = first->group()) {
        buttons = group->buttons();
        std::sort(buttons.begin(), buttons.end(), [group](QAbstractButton* a, QAbstractButton* b) {
            return group->id(a) < group->id(b);
        });
        return buttons;
    }
    QWidget* parent = first->parentWidget();
    bool started = false;
    for (QObject* child : parent ? parent->children() : QObjectList()) {
        auto* radio = qobject_cast<QRadioButton*>(child);
        if (!radio)
            continue;
        if (radio == first)
            started = true;
        if (started)
            buttons << radio;
    }
    return buttons;
}

} // namespace

void DDX_Text(DataExchange* pDX, const QString& id, QString& value) {
    QWidget* control = textControl(pDX, id);
    if (!control)
        return;
    if (pDX->m_bSaveAndValidate)
        value = readText(control);
    else
        writeText(control, value);
}

void DDX_Text(DataExchange* pDX, const QString& id, int& value) {
    QWidget* control = textControl(pDX, id);
    if (!control)
        return;
    if (!pDX->m_bSaveAndValidate) {
        writeText(control, QString::number(value));
        return;
    }
    bool ok = false;
    const int parsed = readText(control).trimmed().toInt(&ok);
    if (!ok) {
        pDX->Fail(control, LoadOrvString(StrId::EnterInteger));
        return;
    }
    value = parsed;
}

void DDX_Text(DataExchange* pDX, const QString& id, double& value) {
    exchangeNumber(
        pDX, id, value, [](double v) { return QString::number(v, 'g', 15); },
        [](double v) { return v; });
}

void DDX_FmtDouble(DataExchange* pDX, const QString& id, double& value, int format, int decimals) {
    if (format == DDX_FORMAT_ROTATION) {
        const COrvUnitCnv& cnv = StaticFormats::GetUnitCnv();
        exchangeNumber(
            pDX, id, value,
            [&](double v) {
                return FormatFixed(cnv.ToDisplay(COrvUnitCnv::RotationCategory, v), decimals);
            },
            [&](double v) { return cnv.FromDisplay(COrvUnitCnv::RotationCategory, v); });
        return;
    }
    exchangeNumber(
        pDX, id, value, [decimals](double v) { return FormatFixed(v, decimals); },
        [](double v) { return v; });
}

void DDX_Check(DataExchange* pDX, const QString& id, int& value) {
    auto* box = pDX->Control<QAbstractButton>(id);
    if (!box)
        return;
    auto* check = qobject_cast<QCheckBox*>(box);
    if (pDX->m_bSaveAndValidate) {
        if (check)
            value = check->checkState() == Qt::Checked            ? 1
                    : check->checkState() == Qt::PartiallyChecked ? 2
                                                                  : 0;
        else
            value = box->isChecked() ? 1 : 0;
        return;
    }
    if (check && value == 2) {
        check->setTristate(true);
        check->setCheckState(Qt::PartiallyChecked);
    } else {
        box->setChecked(value != 0);
    }
}

void DDX_bCheck(DataExchange* pDX, const QString& id, bool& value) {
    int state = value ? 1 : 0;
    DDX_Check(pDX, id, state);
    if (pDX->m_bSaveAndValidate && !pDX->Failed())
        value = state != 0;
}

void DDX_Radio(DataExchange* pDX, const QString& id, int& value) {
    auto* first = pDX->Control<QRadioButton>(id);
    if (!first)
        return;
    const QList<QAbstractButton*> buttons = radioGroup(first);
    if (pDX->m_bSaveAndValidate) {
        value = -1;
        for (int i = 0; i < buttons.size(); ++i)
            if (buttons[i]->isChecked())
                value = i;
        return;
    }
    for (int i = 0; i < buttons.size(); ++i) {
        const bool on = i == value;
        if (buttons[i]->isChecked() != on) {
            // auto-exclusive buttons refuse to be switched off one by one
            const bool exclusive = buttons[i]->autoExclusive();
            buttons[i]->setAutoExclusive(false);
            buttons[i]->setChecked(on);
            buttons[i]->setAutoExclusive(exclusive);
        }
    }
}

void DDX_CBIndex(DataExchange* pDX, const QString& id, int& value) {
    auto* combo = pDX->Control<QComboBox>(id);
    if (!combo)
        return;
    if (pDX->m_bSaveAndValidate)
        value = combo->currentIndex();
    else
        combo->setCurrentIndex(value >= 0 && value < combo->count() ? value : -1);
}

void DDX_CBString(DataExchange* pDX, const QString& id, QString& value) {
    auto* combo = pDX->Control<QComboBox>(id);
    if (!combo)
        return;
    if (pDX->m_bSaveAndValidate) {
        value = combo->currentText();
        return;
    }
    if (combo->isEditable()) {
        combo->setEditText(value);
        return;
    }
    int found = -1;
    for (int i = 0; i < combo->count() && found < 0; ++i)
        if (combo->itemText(i).startsWith(value, Qt::CaseInsensitive))
            found = i;
    if (found >= 0)
        combo->setCurrentIndex(found);
}
