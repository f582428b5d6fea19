#include "startDetached.h"

#include "print.h"
#include "processEnvironment.h"
#include "startupId.h"

#include <QDir>
#include <QProcess>

namespace {

/// What this program itself was started with says when that was: with it, the other's window would stay
/// behind all that the user has touched since.
QProcessEnvironment environment()
{
    QProcessEnvironment environment = processEnvironment::forChildren();
    environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
    environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
    if (const QString id = startupId(); !id.isEmpty()) {
        environment.insert(QStringLiteral("DESKTOP_STARTUP_ID"), id);
    }
    return environment;
}

} // namespace

bool startDetached(const QString &program, const QStringList &arguments, const QString &reason)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setProcessEnvironment(environment());
    process.setWorkingDirectory(QDir::homePath());
    // Standard output is for our own lines.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (process.startDetached()) {
        return true;
    }
    print(reason + program + QStringLiteral(": ") + process.errorString());
    return false;
}
