#pragma once

#include "platform/Dialog.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace Ui {
class GridSelDlg;
}

// Picks a geoid model file for the geoid methods that list their files instead of opening
// a file dialog: the geoid and grid models of the terrain model data, the models of the
// vertical datum transformation and the Swedish and Norwegian height models. The caller
// reads GetFile() only after OK.
class GridSelDlg : public Dialog {
    Q_OBJECT
public:
    // typeIndex: index into GeoidmodelTypeKeys; file: the current file.
    GridSelDlg(int typeIndex, const QString& file, QWidget* parent = nullptr);
    ~GridSelDlg() override;

    int GetTypeIndex() const { return m_typeIndex; }
    // The current file until an entry is selected, then that entry's text.
    QString GetFile() const { return m_file; }

    bool OnInitDialog() override;

private:
    // The entries for the type index, from the folders of WzdUtility::GetCommonFolders.
    QStringList ListEntries() const;
    void OnSelChange();

    std::unique_ptr<Ui::GridSelDlg> m_ui;
    int m_typeIndex;
    QString m_file;
};
