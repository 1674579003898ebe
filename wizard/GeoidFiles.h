#pragma once

#include <QString>

class QWidget;

// What the geoid model page, the post correction page and the editor share about height
// model methods and their files. Methods are named by their index into GeoidmodelTypeKeys
// (docs/geoid-methods.md); a stored model file is the file's own name, without its folder.
namespace GeoidFiles {

// The index of a method text: compared with each of the keys without regard to letter case,
// the last equal key wins; 0 when none is equal.
int MethodIndex(const QString& method);
// The key text of an index (empty outside the table).
QString MethodKey(int index);

// Whether a geoid method takes a model file, so that its "..." is enabled: 3, 6, 7, 14, 15,
// 16, 19, 20, 23, 24, 26, 27 and 28.
bool TakesModelFile(int index);

// A file dialog for the model file of one method. The filter is the description (a string
// table id) followed by the suffix ("|*.BIN||"); the dialog starts in the common data folder
// extended by the sub-folder (none: the common data folder itself).
struct FileDialogRule {
    int index;
    const char* defaultExtension; // "" for none
    int descriptionId;
    const char* filterSuffix;
    const char* subFolder; // below the common data folder, "" for none
};

// The file dialog of a geoid method: 14, 16, 20, 23, 24, 26, 27 and 28; null for the other
// methods (those with a model file are picked with GridSelDlg).
const FileDialogRule* GeoidFileDialog(int index);
// The file dialog of a post correction shift model: 25 and 29; null for the others. The
// United Kingdom model is asked for with the geoid model file's description, as it always was.
const FileDialogRule* PostFileDialog(int index);
// The same for the coordinate system editor, which asks for the United Kingdom model with the
// shift model's own description.
const FileDialogRule* EditorPostFileDialog(int index);

// The dialog's filter in the "Text|*.ext||" form.
QString Filter(const FileDialogRule& rule);
// Where the dialog starts: the common data folder (WzdUtility::GetCommonFolders) followed by
// the rule's sub-folder. When a folder of that name exists in another letter case it is
// started in, as the engine finds the model files there. Without a common data folder only the
// sub-folder is left.
QString StartFolder(const FileDialogRule& rule);

// Runs the rule's file dialog, preset to file. True when the person confirmed one: file then
// holds the chosen file's name without its folder. A cancelled dialog leaves file as it was.
bool AskModelFile(QWidget* parent, const FileDialogRule& rule, QString& file);

} // namespace GeoidFiles
