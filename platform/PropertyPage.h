#pragma once

#include "platform/DataExchange.h"

#include <QWidget>

class PropertySheet;

// One page of a PropertySheet. The sheet calls OnInitDialog once, before the page is first
// activated; OnSetActive each time it becomes the active page; OnKillActive before it is
// left (the default validates the page's data); the wizard handlers when Back, Next or
// Finish is pressed on it.
class PropertyPage : public QWidget {
    Q_OBJECT
public:
    // Results of OnWizardBack and OnWizardNext: move on, or keep the page.
    static constexpr int kMove = 0;
    static constexpr int kStay = -1;

    explicit PropertyPage(QWidget* parent = nullptr);
    ~PropertyPage() override;

    // The sheet that holds the page, or null while it is in none.
    PropertySheet* GetParentSheet() const { return m_sheet; }

    bool UpdateData(bool saveAndValidate = true);
    bool IsInitialised() const { return m_initialised; }
    // Runs OnInitDialog unless it ran already.
    void EnsureInitialised();

    // The has-help flag: whether the sheet offers Help while the page is active.
    void SetHasHelp(bool hasHelp) { m_hasHelp = hasHelp; }
    bool HasHelp() const { return m_hasHelp; }

    // Default: load the fields into the controls; true.
    virtual bool OnInitDialog();
    virtual void DoDataExchange(DataExchange* pDX);
    // False refuses the activation.
    virtual bool OnSetActive();
    // False keeps the page (default: UpdateData(true)).
    virtual bool OnKillActive();
    // kMove, kStay, or a positive index of the page to go to.
    virtual int OnWizardBack();
    virtual int OnWizardNext();
    // False keeps the sheet open.
    virtual bool OnWizardFinish();
    // False keeps the sheet open when Cancel is pressed.
    virtual bool OnQueryCancel();

private:
    friend class PropertySheet;
    PropertySheet* m_sheet = nullptr;
    bool m_initialised = false;
    bool m_hasHelp = true;
};
