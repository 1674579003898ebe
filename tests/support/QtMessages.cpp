#include "QtMessages.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {
QtWarningsExpected* g_expected = nullptr;

// Said by Qt's offscreen platform whenever a window is shown; not a fault of the code under
// test.
bool isOffscreenPlatformNotice(const QString& message) {
    return message == QLatin1String("This plugin does not support propagateSizeHints()");
}
QtMessageHandler g_previous = nullptr;

void checkMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg) {
        if (g_previous)
            g_previous(type, context, message);
        return;
    }
    if (isOffscreenPlatformNotice(message) || QtWarningsExpected::Absorb(message))
        return;
    std::fprintf(stderr, "Qt warning during a test: %s\n", qPrintable(message));
    ADD_FAILURE() << "Qt warning: " << message.toStdString();
}
} // namespace

void InstallQtMessageCheck() {
    g_previous = qInstallMessageHandler(checkMessage);
}

QtWarningsExpected::QtWarningsExpected(const QString& textContained)
    : m_text(textContained), m_outer(g_expected) {
    g_expected = this;
}

QtWarningsExpected::~QtWarningsExpected() {
    g_expected = m_outer;
}

bool QtWarningsExpected::Absorb(const QString& message) {
    for (QtWarningsExpected* e = g_expected; e; e = e->m_outer) {
        if (message.contains(e->m_text)) {
            e->m_seen << message;
            return true;
        }
    }
    return false;
}
