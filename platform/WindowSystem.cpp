#include "platform/WindowSystem.h"

#include <QtGlobal>

bool HasWindowSystem() {
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return true;
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}
