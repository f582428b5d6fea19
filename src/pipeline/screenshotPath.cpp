#include "screenshotPath.h"

#include "isScreenshot.h"

#include <QStringBuilder>

#include <algorithm>

std::optional<QString> screenshotPath(const QString &prefix, QByteArrayView name)
{
    if (!hasScreenshotExtension(name) || !QUtf8StringView(name).isValidUtf8()) {
        return std::nullopt;
    }
    const bool isAscii = std::ranges::all_of(name, [](char byte) { return byte >= 0; });
    QString path =
        isAscii ? QString(prefix + QLatin1String(name)) : QString(prefix + QString::fromUtf8(name));
    if (!isScreenshot(QStringView(path).sliced(prefix.size()))) {
        return std::nullopt;
    }
    return path;
}
