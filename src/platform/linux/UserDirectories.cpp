#include "UserDirectories.h"

#include "settingsFile.h"

#include <QDir>
#include <QFile>

namespace {

/// The value of a line `key="value"` with its quotes; empty if the line is about something else.
QByteArrayView quotedValue(QByteArrayView line, QByteArrayView key)
{
    line = line.trimmed();
    if (!line.startsWith(key)) {
        return {};
    }
    line = line.sliced(key.size()).trimmed();
    return line.startsWith('=') ? line.sliced(1).trimmed() : QByteArrayView();
}

/// What stands between the quotes, with a backslash taking the character behind it as it is; empty without
/// quotes.
QByteArray unquoted(QByteArrayView value)
{
    QByteArray text;
    if (!value.startsWith('"')) {
        return text;
    }
    for (qsizetype i = 1; i < value.size() && value[i] != '"'; ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
        }
        text.append(value[i]);
    }
    return text;
}

/// Empty for a value that the format doesn't allow: it must be absolute or begin with `$HOME`.
QString absolutePath(QByteArrayView value)
{
    constexpr QByteArrayView quotedHome = "\"$HOME";
    QByteArray text = unquoted(value);
    if (value.startsWith(quotedHome)) {
        const QByteArray inHome = text.sliced(quotedHome.size() - 1);
        text = inHome.isEmpty() || inHome.startsWith('/') ? QFile::encodeName(QDir::homePath()) + inHome
                                                          : QByteArray();
    }
    return text.startsWith('/') ? QDir::cleanPath(QFile::decodeName(text)) : QString();
}

} // namespace

QString configurationFolder()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    return QDir::isAbsolutePath(configured) ? configured : QDir::homePath() + QStringLiteral("/.config");
}

std::optional<QString> configuredUserDirectory(QByteArrayView key)
{
    std::optional<QString> path;
    const QByteArray bytes =
        settingsFile::contents(configurationFolder() + QStringLiteral("/user-dirs.dirs"));
    for (qsizetype begin = 0; begin < bytes.size();) {
        const qsizetype found = bytes.indexOf('\n', begin);
        const qsizetype end = found < 0 ? bytes.size() : found;
        // The last entry counts, as in a shell script, which the file also is.
        const QString entry =
            absolutePath(quotedValue(QByteArrayView(bytes).sliced(begin, end - begin), key));
        if (!entry.isEmpty()) {
            path = entry;
        }
        begin = end + 1;
    }
    return path;
}

QString userDirectory(QByteArrayView key, const QString &defaultName)
{
    if (auto path = configuredUserDirectory(key)) {
        return *std::move(path);
    }
    return QDir::cleanPath(QDir::homePath() + u'/' + defaultName);
}
