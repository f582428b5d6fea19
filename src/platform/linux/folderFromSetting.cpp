#include "folderFromSetting.h"

#include <QDir>
#include <QUrl>

QString folderFromSetting(const QString &value)
{
    QString path = value;
    if (value == u'~' || value.startsWith(QLatin1String("~/"))) {
        path = QDir::homePath() + QStringView(value).sliced(1);
    } else if (!value.startsWith(u'/')) {
        const QUrl url(value);
        const bool isHere = url.isLocalFile() && (url.host().isEmpty() || url.host() == u"localhost");
        path = isHere ? url.path() : QString();
    }
    // No folder has a null character in its name; system calls would take the path's first half.
    return path.startsWith(u'/') && !path.contains(QChar::Null) ? QDir::cleanPath(path) : QString();
}
