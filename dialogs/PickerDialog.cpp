#include "dialogs/PickerDialog.h"

#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "platform/PropertySheet.h"

#include <QFontMetrics>
#include <QPushButton>
#include <QTextEdit>

namespace {
// Information texts indent with tabs; four average characters keep them compact.
constexpr int kTabStopCharacters = 4;
} // namespace

PickerDialog::PickerDialog(DialogOwner* owner, QWidget* parent) : Dialog(parent), m_owner(owner) {}

DialogOwner* PickerDialog::OwnerOfSheet(PropertySheet* sheet) {
    return dynamic_cast<DialogOwner*>(sheet);
}

QWidget* PickerDialog::ParentForSheet(PropertySheet* sheet, QWidget* parent) {
    return parent ? parent : sheet;
}

OrvGeoDatabaseBase* PickerDialog::Database() const {
    return m_owner ? m_owner->GetGeoDatabase() : nullptr;
}

void PickerDialog::BindControls(QLineEdit* filter, QTreeView* view, QTextEdit* pane,
                                QPushButton* ok, QPushButton* cancel) {
    m_tree = new PickerTree(filter, view, this);
    m_ok = ok;
    pane->setTabStopDistance(QFontMetrics(pane->font()).averageCharWidth() * kTabStopCharacters);
    connect(m_tree, &PickerTree::CurrentChanged, this, [this](const QModelIndex& current) {
        OnSelChangedTree(current);
        UpdateOkButton();
    });
    connect(ok, &QPushButton::clicked, this, [this] { accept(); });
    connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
}

bool PickerDialog::CanAccept(const QModelIndex& current) const {
    return current.isValid() || !m_tree->Proxy().IsFiltering();
}

void PickerDialog::UpdateOkButton() {
    if (m_ok && m_tree)
        m_ok->setEnabled(CanAccept(m_tree->Current()));
}
