#include "platform/PropertySheet.h"

#include "platform/UiInteraction.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

PropertySheet::PropertySheet(const QString& caption, QWidget* parent, unsigned selectPage)
    : QDialog(parent), m_startIndex(static_cast<int>(selectPage)) {
    setObjectName(QStringLiteral("propertySheet"));
    setWindowTitle(caption);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    // Pages start at the sheet's top left, so that a page and the sheet share the origin
    // the banner is painted in.
    m_stack = new QStackedWidget(this);
    m_stack->setObjectName(QStringLiteral("pages"));
    layout->addWidget(m_stack, 1);

    auto* line = new QFrame(this);
    line->setObjectName(QStringLiteral("buttonSeparator"));
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(line);

    auto* buttons = new QHBoxLayout();
    buttons->setContentsMargins(7, 7, 7, 7);
    buttons->setSpacing(6);
    auto makeButton = [this, buttons](const char* name, const QString& text) {
        auto* button = new QPushButton(text, this);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        buttons->addWidget(button);
        return button;
    };
    buttons->addStretch(1);
    m_back = makeButton("wizBack", tr("< Back"));
    m_next = makeButton("wizNext", tr("Next >"));
    m_finish = makeButton("wizFinish", tr("Finish"));
    buttons->addSpacing(8);
    m_cancel = makeButton("wizCancel", tr("Cancel"));
    m_help = makeButton("wizHelp", tr("Help"));
    layout->addLayout(buttons);

    m_next->setDefault(true);
    m_finish->hide();
    m_help->hide();

    connect(m_back, &QPushButton::clicked, this, [this] { OnWizBack(); });
    connect(m_next, &QPushButton::clicked, this, [this] { OnWizNext(); });
    connect(m_finish, &QPushButton::clicked, this, [this] { OnWizFinish(); });
    connect(m_cancel, &QPushButton::clicked, this, [this] { OnWizCancel(); });

    applyButtons(m_buttons);
}

PropertySheet::~PropertySheet() {
    // The pages belong to whoever made them: take them out of the widget tree before
    // QWidget's destructor would delete them as children.
    for (PropertyPage* page : std::as_const(m_pages))
        release(page);
    m_pages.clear();
}

void PropertySheet::release(PropertyPage* page) {
    m_stack->removeWidget(page);
    page->m_sheet = nullptr;
    page->hide();
    page->setParent(nullptr);
}

void PropertySheet::AddPage(PropertyPage* page) {
    if (!page || m_pages.contains(page))
        return;
    if (page->m_sheet && page->m_sheet != this)
        page->m_sheet->RemovePage(page);
    page->m_sheet = this;
    m_pages.append(page);
    m_stack->addWidget(page);
}

void PropertySheet::RemovePage(int index) {
    if (index < 0 || index >= m_pages.size())
        return;
    PropertyPage* page = m_pages.takeAt(index);
    if (m_active == page)
        m_active = nullptr;
    release(page);
}

void PropertySheet::RemovePage(PropertyPage* page) {
    RemovePage(GetPageIndex(page));
}

void PropertySheet::detachPage(PropertyPage* page) {
    const int index = GetPageIndex(page);
    if (index >= 0)
        m_pages.removeAt(index);
    if (m_active == page)
        m_active = nullptr;
}

PropertyPage* PropertySheet::GetPage(int index) const {
    return index >= 0 && index < m_pages.size() ? m_pages[index] : nullptr;
}

int PropertySheet::GetPageIndex(const PropertyPage* page) const {
    for (int i = 0; i < m_pages.size(); ++i)
        if (m_pages[i] == page)
            return i;
    return -1;
}

int PropertySheet::GetActiveIndex() const {
    if (!m_initialised)
        return m_startIndex;
    return GetPageIndex(m_active);
}

bool PropertySheet::SetActivePage(int index) {
    if (!m_initialised) {
        if (index < 0)
            return false;
        m_startIndex = index;
        return true;
    }
    return activate(index, true);
}

bool PropertySheet::SetActivePage(PropertyPage* page) {
    const int index = GetPageIndex(page);
    return index >= 0 && SetActivePage(index);
}

bool PropertySheet::activate(int index, bool killOld) {
    if (m_pages.isEmpty() || index < 0)
        return false;
    if (index >= m_pages.size())
        index = static_cast<int>(m_pages.size()) - 1;
    PropertyPage* page = m_pages[index];
    if (killOld && m_active && !m_active->OnKillActive())
        return false;
    page->EnsureInitialised();
    // the page may have changed the list while initialising
    if (GetPageIndex(page) < 0)
        return false;
    if (!page->OnSetActive())
        return false;
    if (GetPageIndex(page) < 0)
        return false;
    m_active = page;
    m_stack->setCurrentWidget(page);
    updateHelp();
    return true;
}

void PropertySheet::SetWizardButtons(unsigned flags) {
    QMetaObject::invokeMethod(
        this, [this, flags] { applyButtons(flags); }, Qt::QueuedConnection);
}

void PropertySheet::applyButtons(unsigned flags) {
    m_buttons = flags;
    m_back->setEnabled(flags & PSWIZB_BACK);
    const bool finish = flags & PSWIZB_FINISH;
    m_next->setVisible(!finish);
    m_next->setEnabled(flags & PSWIZB_NEXT);
    m_finish->setVisible(finish);
    m_finish->setEnabled(finish);
    (finish ? m_finish : m_next)->setDefault(true);
}

void PropertySheet::updateHelp() {
    m_help->setVisible(m_active && m_active->HasHelp());
}

int PropertySheet::DoModal() {
    return GetUi().RunModal(*this);
}

int PropertySheet::EnsureInitialised() {
    if (m_initRunning)
        return m_initResult;
    m_initRunning = true;
    m_initResult = OnInitDialog();
    return m_initResult;
}

int PropertySheet::OnInitDialog() {
    m_initialised = true;
    if (!m_pages.isEmpty())
        activate(std::min(m_startIndex, static_cast<int>(m_pages.size()) - 1), false);
    return 1;
}

bool PropertySheet::DefaultBack() {
    if (!m_active)
        return false;
    const int index = GetActiveIndex();
    const int result = m_active->OnWizardBack();
    if (result == PropertyPage::kStay || !m_active)
        return false;
    const int target = result > 0 ? result : index - 1;
    if (target < 0)
        return false;
    return activate(target, true);
}

bool PropertySheet::DefaultNext() {
    if (!m_active)
        return false;
    const int index = GetActiveIndex();
    const int result = m_active->OnWizardNext();
    if (result == PropertyPage::kStay || !m_active)
        return false;
    const int target = result > 0 ? result : index + 1;
    if (target >= m_pages.size())
        return false;
    return activate(target, true);
}

bool PropertySheet::DefaultFinish() {
    if (m_active && !m_active->OnWizardFinish())
        return false;
    m_closing = true;
    done(ID_WIZFINISH);
    m_closing = false;
    return true;
}

void PropertySheet::OnWizBack() {
    DefaultBack();
}

void PropertySheet::OnWizNext() {
    DefaultNext();
}

void PropertySheet::OnWizFinish() {
    DefaultFinish();
}

void PropertySheet::OnWizCancel() {
    if (m_active && !m_active->OnQueryCancel())
        return;
    m_closing = true;
    done(QDialog::Rejected);
    m_closing = false;
}

void PropertySheet::showEvent(QShowEvent* event) {
    EnsureInitialised();
    QDialog::showEvent(event);
}

void PropertySheet::reject() {
    if (m_closing)
        QDialog::reject();
    else
        OnWizCancel();
}
