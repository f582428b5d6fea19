#include "processEnvironment.h"

#include <optional>

namespace {

/// The environment that the program was started with, once it is prepared.
std::optional<QProcessEnvironment> &original()
{
    static auto *const environment = new std::optional<QProcessEnvironment>;
    return *environment;
}

} // namespace

void processEnvironment::prepare()
{
    original() = QProcessEnvironment::systemEnvironment();
    // Only an X11 window can be put under the panel, and only an X11 client may set the clipboard unasked:
    // where there is an X server beside Wayland, that is the one to use.
    if (!qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    // GIO moves files to the Trash for us and needs none of its modules for it. Left alone, it loads the
    // desktop's virtual file systems with the first deletion: a bus connection and a thread of their own.
    qputenv("GIO_MODULE_DIR", "/dev/null");
}

QProcessEnvironment processEnvironment::forChildren()
{
    // Not the present one: it may be changing in another thread.
    const auto &known = original();
    return known ? *known : QProcessEnvironment::systemEnvironment();
}
