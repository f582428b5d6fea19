#include "RecordingPrograms.h"

#include "files.h"

#include <QDir>
#include <QFile>

RecordingPrograms::RecordingPrograms(const QString &home) : m_home(home)
{
    files::makeFolder(folder());
    qputenv("PATH", folder().toUtf8());
}

RecordingPrograms::~RecordingPrograms()
{
    qputenv("PATH", m_pathBefore);
    QDir(folder()).removeRecursively();
    QFile::remove(log());
}

void RecordingPrograms::install(const QString &name, const QByteArray &pages) const
{
    const QString path = folder() + u'/' + name;
    const QByteArray log = this->log().toUtf8();
    files::write(
        path, "#!/bin/sh\nif [ \"$1\" = --list ]; then\n" + pages +
                  "\nexit\nfi\nprintf '%s|' \"${0##*/}\" \"$@\" > " + log + ".new\necho >> " + log +
                  ".new\n/bin/mv " + log + ".new " + log + "\n");
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QByteArray RecordingPrograms::started() const
{
    QFile file(log());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
