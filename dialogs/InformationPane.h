#pragma once

class QTextEdit;

// Sets up a read-only pane for the library's information texts: they indent with tabs, so
// the tab stops are kept narrow (a few characters) to leave the room for the values.
void PrepareInformationPane(QTextEdit* pane);
