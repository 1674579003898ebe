#pragma once

#include <QString>

// Names and numbers of the editor that are data, not messages: list entries and the stored
// model names the editor shows under another name.
namespace EditorTexts {

// The label scheme of the UTM layout (the other layouts use the method id).
constexpr int kUtmLabelScheme = 5;
// A tab in the unit line stands for this many blanks.
constexpr int kTabStopBlanks = 4;

// The list entry for "no model".
inline QString None() {
    return QStringLiteral("--None--");
}
// A grid model stored under its older name is shown under the list's name.
inline QString StoredGridModelName() {
    return QStringLiteral("Grid Model Geoid Model");
}
inline QString GridModelName() {
    return QStringLiteral("Grid Model(Satellite coordinates)");
}
// A stored post model "OSTN02" is shown as "OSTN" with the geoid model file.
inline QString StoredOstnName() {
    return QStringLiteral("OSTN02");
}

// The three stored Ordnance Survey geoid models are shown as the method "OSGM" with the
// file of their area; any other name is left as it is.
void MapOsgm02(QString& method, QString& file);

} // namespace EditorTexts
