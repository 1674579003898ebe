#include "dialogs/PickerDialog.h"

#include "dialogs/InformationPane.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "platform/PropertySheet.h"

#include <QPushButton>
#include <QTextEdit>
#include <QTreeView>

PickerDialog::PickerDialog(DialogOwner* owner, QWidget* parent) : Dialog(parent), m_owner(owner) {}

PickerDialog::PickerDialog(OrvGeoDatabaseBase* database, QWidget* parent)
    : Dialog(parent), m_database(database) {}

DialogOwner* PickerDialog::OwnerOfSheet(PropertySheet* sheet) {
    return dynamic_cast<DialogOwner*>(sheet);
}

QWidget* PickerDialog::ParentForSheet(PropertySheet* sheet, QWidget* parent) {
    return parent ? parent : sheet;
}

OrvGeoDatabaseBase* PickerDialog::Database() const {
    return m_owner ? m_owner->GetGeoDatabase() : m_database;
}

void PickerDialog::BindControls(QLineEdit* filter, QTreeView* view, QTextEdit* pane,
                                QPushButton* ok, QPushButton* cancel) {
    m_tree = new PickerTree(filter, view, this);
    m_ok = ok;
    PrepareInformationPane(pane);
    connect(m_tree, &PickerTree::CurrentChanged, this, [this](const QModelIndex& current) {
        OnSelChangedTree(current);
        UpdateOkButton();
    });
    connect(m_tree, &PickerTree::FilterApplied, this, &PickerDialog::UpdateOkButton);
    connect(ok, &QPushButton::clicked, this, [this] { accept(); });
    connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
}

void PickerDialog::FillAndSelect(const QStringList& names, const QHash<QString, int>& codes,
                                 const QString& preset) {
    m_tree->SetEntries(EntriesOf(names, codes));
    m_tree->View()->setFocus();
    QModelIndex item = m_tree->Model().FindTopLevel(preset);
    if (!item.isValid())
        item = m_tree->FirstShown();
    m_tree->Select(item);
}

bool PickerDialog::CanAccept(const QModelIndex& current) const {
    return current.isValid() || !m_tree->Proxy().IsFiltering();
}

void PickerDialog::UpdateOkButton() {
    if (m_ok && m_tree)
        m_ok->setEnabled(CanAccept(m_tree->Current()));
}
