#pragma once

#include <QString>
#include <QStringList>

// Renders every dialog the program can show to PNG files in folder, offscreen. dataSource
// selects the database the dialogs open. Returns the files written; error gets a reason
// when nothing could be rendered.
QStringList RenderScreenshots(const QString& folder, const QString& dataSource, QString& error);
