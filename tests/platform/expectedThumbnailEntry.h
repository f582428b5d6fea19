#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QList>
#include <QPair>
#include <QString>

#include <gio/gio.h>
#include <sys/stat.h>

#include <memory>

// What a file's entry in the shared thumbnail cache is called and says, worked out without the program's
// code.

inline struct stat statusOf(const QString &path)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        qFatal("There is no %s", qPrintable(path));
    }
    return status;
}

inline QByteArray gioUri(const QString &path)
{
    const std::unique_ptr<char, decltype(&g_free)> uri(
        g_filename_to_uri(QFile::encodeName(path).constData(), nullptr, nullptr), &g_free);
    return {uri.get()};
}

inline QString entryName(const QString &path)
{
    return QString::fromLatin1(QCryptographicHash::hash(gioUri(path), QCryptographicHash::Md5).toHex()) +
           QStringLiteral(".png");
}

inline QByteArray modified(const QString &path)
{
    return QByteArray::number(qint64(statusOf(path).st_mtime));
}

using Texts = QList<QPair<QByteArray, QByteArray>>;

/// What every entry of the file says, and `more`.
inline Texts texts(const QString &path, const Texts &more = {})
{
    return Texts{{"Thumb::URI", gioUri(path)}, {"Thumb::MTime", modified(path)}} + more;
}
