#include "TemporaryFolder.h"

#include "names.h"

#include <QDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

TemporaryFolder::TemporaryFolder() : m_folder(QDir::currentPath() + QStringLiteral("/bench-XXXXXX"))
{
}

QString TemporaryFolder::makeFilled(const QString &name, int count, int stride) const
{
    const QString folder = path() + u'/' + name;
    QDir().mkpath(folder);
    for (int i = 0; i < count; ++i) {
        const QString file = folder + u'/' + (i % stride == 0 ? screenshotName(i) : otherName(i));
        ::close(::open(file.toUtf8().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
    return folder;
}

void TemporaryFolder::becomeHome() const
{
    qputenv("HOME", path().toUtf8());
    qputenv("XDG_CONFIG_HOME", path().toUtf8() + "/.config");
    qputenv("XDG_DATA_HOME", path().toUtf8() + "/.local/share");
}
