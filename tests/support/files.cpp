#include "files.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

void require(bool isDone, const char *what, const QString &path)
{
    if (!isDone) {
        qFatal("Can't %s %s", what, qPrintable(path));
    }
}

} // namespace

void files::write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size(), "write", path);
}

void files::makeOlder(const QString &path, int seconds)
{
    QFile file(path);
    require(file.open(QIODevice::ReadWrite), "open", path);
    const QDateTime time = QDateTime::currentDateTime().addSecs(-seconds);
    require(file.setFileTime(time, QFileDevice::FileModificationTime), "change the time of", path);
}

void files::makeFolder(const QString &path)
{
    require(QDir().mkpath(path), "make", path);
}

void files::rename(const QString &from, const QString &to)
{
    require(QFile::rename(from, to), "rename", from);
}

void files::remove(const QString &path)
{
    const bool isFolder = QFileInfo(path).isDir() && !QFileInfo(path).isSymLink();
    require(isFolder ? QDir(path).removeRecursively() : QFile::remove(path), "remove", path);
}

bool files::exists(const QString &path)
{
    const QFileInfo information(path);
    return information.exists() || information.isSymLink();
}
