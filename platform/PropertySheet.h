#pragma once

#include "platform/PropertyPage.h"

#include <QDialog>
#include <QList>

class QPushButton;
class QStackedWidget;

// A property sheet in wizard mode: an ordered list of pages that may be changed at any
// time (pages are added and removed by index; the sheet never owns them: a page shows as a
// child of the sheet while it is in it, and a removed page, or every page when the sheet
// goes, is a parentless hidden widget again, to be destroyed by its maker), one active page,
// and the buttons Back, Next, Finish, Cancel (and Help for pages that have help). Button
// requests are posted: they take effect when control returns to the event loop, in the
// order made, so the later request of one handler wins.
class PropertySheet : public QDialog {
    Q_OBJECT
public:
    // Wizard-button flags.
    static constexpr unsigned PSWIZB_BACK = 1;
    static constexpr unsigned PSWIZB_NEXT = 2;
    static constexpr unsigned PSWIZB_FINISH = 4;
    // Result of a sheet closed with Finish (Cancel gives QDialog::Rejected).
    static constexpr int ID_WIZFINISH = 12325;

    PropertySheet(const QString& caption, QWidget* parent = nullptr, unsigned selectPage = 0);
    ~PropertySheet() override;

    void SetWizardMode() { m_wizardMode = true; }
    bool IsWizardMode() const { return m_wizardMode; }

    void AddPage(PropertyPage* page);
    // Removes the page at index (nothing for an index outside the list). Removing the
    // active page leaves the sheet without an active page until one is set.
    void RemovePage(int index);
    void RemovePage(PropertyPage* page);
    int GetPageCount() const { return static_cast<int>(m_pages.size()); }
    PropertyPage* GetPage(int index) const;
    // -1 when the page is not in the sheet.
    int GetPageIndex(const PropertyPage* page) const;
    PropertyPage* GetActivePage() const { return m_active; }
    // -1 without an active page (before initialisation: the page to start with).
    int GetActiveIndex() const;
    // Makes the page at index active (after OnKillActive of the one before). Before the
    // sheet is initialised it only chooses the first page. An index past the end activates
    // the last page; false when there is no page or a handler refused.
    bool SetActivePage(int index);
    bool SetActivePage(PropertyPage* page);

    // Posts a wizard-button request (PSWIZB_* flags).
    void SetWizardButtons(unsigned flags);
    // The flags in effect (after posted requests have been processed).
    unsigned GetWizardButtons() const { return m_buttons; }

    // Runs the sheet modally through the injected interface.
    int DoModal();
    // Runs OnInitDialog unless it ran already (showing the sheet does it too) and returns
    // its result.
    int EnsureInitialised();
    bool IsInitialised() const { return m_initialised; }

    // What the buttons do; the defaults ask the active page and move.
    virtual void OnWizBack();
    virtual void OnWizNext();
    virtual void OnWizFinish();
    virtual void OnWizCancel();

    QPushButton* BackButton() const { return m_back; }
    QPushButton* NextButton() const { return m_next; }
    QPushButton* FinishButton() const { return m_finish; }
    QPushButton* CancelButton() const { return m_cancel; }
    QPushButton* HelpButton() const { return m_help; }

protected:
    // Base initialisation: initialises and activates the first page; returns nonzero.
    virtual int OnInitDialog();
    bool DefaultBack();
    bool DefaultNext();
    bool DefaultFinish();

    void showEvent(QShowEvent* event) override;
    void reject() override;

private:
    friend class PropertyPage;
    void detachPage(PropertyPage* page);
    // Takes a page out of the sheet's widget tree without deleting it.
    void release(PropertyPage* page);
    bool activate(int index, bool killOld);
    void applyButtons(unsigned flags);
    void updateHelp();

    QList<PropertyPage*> m_pages;
    PropertyPage* m_active = nullptr;
    int m_startIndex = 0;
    bool m_wizardMode = false;
    bool m_initialised = false;
    bool m_initRunning = false; // OnInitDialog has been called (it runs once)
    int m_initResult = 1;
    bool m_closing = false;
    unsigned m_buttons = PSWIZB_BACK | PSWIZB_NEXT;

    QStackedWidget* m_stack = nullptr;
    QPushButton* m_back = nullptr;
    QPushButton* m_next = nullptr;
    QPushButton* m_finish = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_help = nullptr;
};
