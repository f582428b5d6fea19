#include "folderFromSetting.h"

#include <QDir>
#include <QUrl>

std::optional<QString> folderFromSetting(const std::optional<QString> &setting)
{
    if (!setting || setting->isEmpty()) {
        return std::nullopt;
    }
    QString path = *setting;
    if (path == u'~' || path.startsWith(QLatin1String("~/"))) {
        path.replace(0, 1, QDir::homePath());
    } else if (!path.startsWith(u'/')) {
        const QUrl url(path);
        const bool isHere = url.isLocalFile() && (url.host().isEmpty() || url.host() == u"localhost");
        path = isHere ? url.path() : QString();
    }
    // No folder has a null character in its name; system calls would take the path's first half.
    return path.startsWith(u'/') && !path.contains(QChar::Null) ? QDir::cleanPath(path) : QString();
}
