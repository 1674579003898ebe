#include "pages/WizardPage.h"

#include "resources/StringTable.h"
#include "wizard/GeoWizard.h"

#include <QLabel>
#include <QPainter>

namespace {
// The page templates measure 362 x 209 dialog units.
constexpr int kPageWidth = 543;
constexpr int kPageHeight = 340;
constexpr int kPageNumberWidth = 120;
} // namespace

WizardPage::WizardPage(GeoWizard* sheet, const QString& name, int titleId, unsigned buttons)
    : m_sheet(sheet), m_title(titleId ? LoadOrvString(titleId) : QString()), m_buttons(buttons) {
    setObjectName(name);
    setMinimumSize(kPageWidth, kPageHeight);

    // the template's placeholder until the page is painted
    m_pageNumberText = QStringLiteral("2 of 3");
    m_pageNumber = new QLabel(m_pageNumberText, this);
    m_pageNumber->setObjectName(QStringLiteral("pageNumber"));
    m_pageNumber->setAlignment(Qt::AlignRight | Qt::AlignTop);

    m_content = new QWidget(this);
    m_content->setObjectName(QStringLiteral("content"));
}

bool WizardPage::OnSetActive() {
    if (m_sheet)
        m_sheet->SetWizardButtons(m_buttons);
    return PropertyPage::OnSetActive();
}

void WizardPage::paintEvent(QPaintEvent*) {
    if (!m_sheet)
        return;
    if (!m_title.isEmpty()) {
        QPainter dc(this);
        m_sheet->OnPaint(dc, m_title);
    }
    // Only the page number is pushed here: a child control's repaint repaints the page
    // below it, and pushing every field would overwrite what is being typed.
    m_pageNumberText = m_sheet->DisplayPageNumber(this);
    m_pageNumber->setText(m_pageNumberText);
}

void WizardPage::resizeEvent(QResizeEvent* event) {
    PropertyPage::resizeEvent(event);
    m_pageNumber->setGeometry(width() - kPageNumberWidth - 4, 1, kPageNumberWidth, 16);
    m_content->setGeometry(0, kBannerHeight + 2, width(), height() - kBannerHeight - 2);
}
