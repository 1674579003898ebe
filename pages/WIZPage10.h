#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage10;
}

// Geoid model page: whether and how heights are corrected by a geoid model. The method comes
// from the library's geoid model keys, its file from a file dialog or the grid file picker, and
// for the vertical datum transformation (method 7) a chart datum. Changing the method clears
// the file and the chart datum. The values go to the static data only on Next and are read back
// from it on every activation, so the page shows what was handed over: a method chosen but not
// handed over (the person went Back) is not shown again, the page then shows "--None--".
class WIZPage10 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage10(GeoWizard* sheet);
    ~WIZPage10() override;

    // Empty for "--None--".
    QString GetMethod() const { return m_method; }
    // The file's own name, without its folder.
    QString GetFile() const { return m_file; }
    QString GetChartDatum() const { return m_chartDatum; }
    bool GetGeoidOn() const { return m_geoidOn; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // Handlers: the method list's selection changed; "..."; the chart datum list's selection
    // changed.
    void OnSelChangeMethod();
    void OnBrowseFile();
    void OnSelChangeChartDatum();

private:
    void FillMethodList();
    // "..." follows the method: enabled for the methods that take a model file.
    void ShowFileButton();
    // The chart datum row shows for method 7 with a file, preset to the chart datum.
    void ShowChartDatumRow();

    std::unique_ptr<Ui::WIZPage10> m_ui;
    QString m_method;
    QString m_file;
    QString m_chartDatum;
    bool m_geoidOn = false;
};
