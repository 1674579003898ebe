#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage13;
}

// Post correction page: constant offsets in Easting, Northing and Z (in the system unit) and
// optionally a shift model, a method with its file, added to the coordinates the new system
// computes. The page hands itself over on Back as well as on Next, so what was typed here is
// kept whichever way the person leaves; with "Apply Post Correction" unchecked it hands over
// zero offsets and no model, whatever the edits show. An offset that is no number is refused
// while the box is checked (the page stays, the text kept); while it is unchecked the offsets
// are not used, and such a text is replaced by the last number.
class WIZPage13 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage13(GeoWizard* sheet);
    ~WIZPage13() override;

    bool GetApply() const { return m_apply; }
    double GetEastingOffset() const { return m_easting; }
    double GetNorthingOffset() const { return m_northing; }
    double GetZOffset() const { return m_z; }
    // The selected entry of the method list, "--None--" for no shift model.
    QString GetMethod() const { return m_method; }
    // The shift model file's own name, without its folder.
    QString GetFile() const { return m_file; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardBack() override;
    int OnWizardNext() override;

    // Handlers: "Apply Post Correction" clicked; the method list's selection changed; "...".
    void OnApplyPostCorrection();
    void OnSelChangeMethod();
    void OnBrowseFile();

private:
    void FillMethodList();
    // Brings back what the system being built holds, when the correction is on there and the
    // box was already checked.
    void Reload();
    // Hands the page to the static data; kStay when an offset is refused.
    int HandOver();

    std::unique_ptr<Ui::WIZPage13> m_ui;
    bool m_apply = false;
    double m_easting = 0.0;
    double m_northing = 0.0;
    double m_z = 0.0;
    QString m_unit;
    QString m_method;
    QString m_file;
};
