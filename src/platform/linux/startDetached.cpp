#include "startDetached.h"

#include "print.h"
#include "processEnvironment.h"

#include <QDir>
#include <QProcess>

bool startDetached(const QString &program, const QStringList &arguments, const QString &reason)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setProcessEnvironment(processEnvironment::forChildren());
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
