#include "dialogs/InformationPane.h"

#include <QFontMetrics>
#include <QTextEdit>

namespace {
constexpr int kTabStopCharacters = 3;
} // namespace

void PrepareInformationPane(QTextEdit* pane) {
    pane->setReadOnly(true);
    pane->setTabStopDistance(QFontMetrics(pane->font()).averageCharWidth() * kTabStopCharacters);
}
