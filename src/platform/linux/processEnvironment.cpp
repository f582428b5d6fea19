#include "processEnvironment.h"

#include <vector>

namespace {

/// A variable as it was before we set it; a null value if it wasn't set.
struct Original {
    const char *name;
    QByteArray value;
};

std::vector<Original> &originals()
{
    static std::vector<Original> variables;
    return variables;
}

void set(const char *name, const char *value)
{
    originals().push_back({.name = name, .value = qgetenv(name)});
    qputenv(name, value);
}

} // namespace

void processEnvironment::prepare()
{
    // Only an X11 window can be put under the panel, and only an X11 client may set the clipboard unasked:
    // where there is an X server beside Wayland, that is the one to use.
    if (!qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        set("QT_QPA_PLATFORM", "xcb");
    }
    // GIO moves files to the Trash for us and needs none of its modules for it. Left alone, it loads the
    // desktop's virtual file systems with the first deletion: a bus connection and a thread of their own.
    set("GIO_MODULE_DIR", "/dev/null");
}

QProcessEnvironment processEnvironment::forChildren()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const Original &original : originals()) {
        const QString name = QString::fromLatin1(original.name);
        if (original.value.isNull()) {
            environment.remove(name);
        } else {
            environment.insert(name, QString::fromLocal8Bit(original.value));
        }
    }
    return environment;
}
