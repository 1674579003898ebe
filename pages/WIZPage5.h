#pragma once

#include "api/GeoTypes.h"
#include "pages/WizardPage.h"
#include "wizard/DtfInfo.h"

#include <array>
#include <memory>

class QLabel;
class QLineEdit;

namespace Ui {
class WIZPage5;
}

// Datum transformation parameters page: name, method, the fifteen values and the description
// of the transformation from the satellite datum to the local datum. It is filled from the
// transformation chosen before (or as a new one) once per choice: the sheet's init flag keeps
// the person's edits when the page is visited again. Next checks the name against the
// pre-defined and user-defined transformations and hands everything to the static data.
//
// Values are held as the library holds them (rotations in the position-vector sign); the
// method's rotation sign, set on the shared unit converter, shows the rotations and their
// rates in the method's own convention.
class WIZPage5 : public WizardPage {
    Q_OBJECT
public:
    static constexpr int kValueCount = 15;
    // Labels of the value rows in use: shifts, scale, rotations, the rate heading, the epoch.
    static constexpr int kLabelCount = 9;

    explicit WIZPage5(GeoWizard* sheet);
    ~WIZPage5() override;

    QString GetName() const { return m_name; }
    QString GetDescription() const { return m_description; }
    QString GetMethodName() const { return m_methodName; }
    int GetMethodIndex() const { return m_methodIndex; }
    const DtfValues& GetValues() const { return m_values; }
    unsigned char GetOptionByte() const { return m_option; }
    const std::array<double, 2>& GetTrailingValues() const { return m_trailing; }
    const DtfInfo& GetSnapshot() const { return m_snapshot; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // A method the person chose in the combo (its index in the method list).
    void OnSelchangeMethod(int index);
    // Every change of the name.
    void OnChangeName();

private:
    // By the sheet's datum transformation option: the selected transformation, or a new one.
    void InitFields();
    // The transformation the sheet selected, with its method layout.
    void LoadSelectedDtf();
    // A new transformation from scratch: the first method, every value 0.
    void StartNewDtf();
    // Shows the values of a method and sets its rotation sign (methods 0-4; others change
    // nothing).
    void ApplyMethodLayout(int methodIndex);
    void ShowValueCount(int count);
    void SelectMethodEntry(int index);
    // False (after its message) when the name may not be used for these values.
    bool CheckName();
    // Reads the controls; the name without blanks around it.
    bool ReadControls();

    std::unique_ptr<Ui::WIZPage5> m_ui;
    std::array<QLabel*, kLabelCount> m_labels{};
    std::array<QLineEdit*, kValueCount> m_edits{};

    QString m_name;
    QString m_description;
    QString m_methodName;
    int m_methodIndex = 0;
    DtfValues m_values{};
    DtfInfo m_snapshot;
    unsigned char m_option = 0;         // carried to the static data unchanged
    std::array<double, 2> m_further{};  // loaded, neither shown nor handed on
    std::array<double, 2> m_trailing{}; // carried to the static data unchanged
};
