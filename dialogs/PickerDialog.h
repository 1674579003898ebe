#pragma once

#include "dialogs/DialogOwner.h"
#include "platform/Dialog.h"

#include <QHash>
#include <QModelIndex>
#include <QStringList>

class OrvGeoDatabaseBase;
class PickerTree;
class PropertySheet;
class QLineEdit;
class QPushButton;
class QTextEdit;
class QTreeView;

// What the pickers share: the window that opened them (the editor or the wizard sheet, as
// a DialogOwner; none for a picker made with a parent only) or the database they were given,
// the tree with its filter field,
// the information pane and OK / Cancel. OK is offered while the current entry can be
// returned; with the filter empty that is always, as the pickers have always behaved.
class PickerDialog : public Dialog {
    Q_OBJECT
public:
    DialogOwner* GetOwner() const { return m_owner; }
    PickerTree* Tree() const { return m_tree; }

protected:
    PickerDialog(DialogOwner* owner, QWidget* parent);
    // A picker on a database of the caller's (borrowed; may be null), without an owner.
    PickerDialog(OrvGeoDatabaseBase* database, QWidget* parent);
    // The owner behind a wizard sheet (the sheet offers DialogOwner), else null.
    static DialogOwner* OwnerOfSheet(PropertySheet* sheet);
    // The parent a picker opened for a sheet gets: the one given, else the sheet.
    static QWidget* ParentForSheet(PropertySheet* sheet, QWidget* parent);

    // The owner's database, or the one given; null when there is none.
    OrvGeoDatabaseBase* Database() const;
    // Wires the controls of the layout; call once after setupUi.
    void BindControls(QLineEdit* filter, QTreeView* view, QTextEdit* pane, QPushButton* ok,
                      QPushButton* cancel);
    // The selection handler of the picker: the current entry changed (a source index of
    // the tree's model; invalid when none is current).
    virtual void OnSelChangedTree(const QModelIndex& sourceIndex) = 0;
    // Fills a one-level tree with names (and their EPSG codes), gives the tree the focus and
    // selects the top-level entry equal to preset ignoring case, else the first by name;
    // selecting runs OnSelChangedTree.
    void FillAndSelect(const QStringList& names, const QHash<QString, int>& codes,
                       const QString& preset);
    // Whether OK may return the current entry.
    virtual bool CanAccept(const QModelIndex& current) const;
    void UpdateOkButton();

private:
    DialogOwner* m_owner = nullptr;
    OrvGeoDatabaseBase* m_database = nullptr;
    PickerTree* m_tree = nullptr;
    QPushButton* m_ok = nullptr;
};
