#include "configurationFile.h"

#include "FileDescriptor.h"
#include "FileStatus.h"

#include <QStandardPaths>

QStringList configurationFile::places(const QString &relativePath)
{
    QStringList paths = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString &path : paths) {
        path += u'/' + relativePath;
    }
    return paths;
}

QByteArray configurationFile::contents(const QString &path)
{
    // A FIFO opens at once this way, and is then seen for what it is.
    const FileDescriptor file(::open(nativePath(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isValid()) {
        return {};
    }
    const Result<FileStatus> status = FileStatus::ofDescriptor(file.get());
    if (!status || !status->isRegularFile() || status->size > mostBytes) {
        return {};
    }
    QByteArray bytes(status->size, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const auto count = ::read(file.get(), bytes.data() + length, size_t(bytes.size() - length));
        if (count <= 0) {
            break;
        }
        length += count;
    }
    bytes.truncate(length);
    return bytes;
}
