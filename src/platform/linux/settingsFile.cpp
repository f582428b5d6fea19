#include "settingsFile.h"

#include "FileDescriptor.h"
#include "FileStatus.h"

#include <cerrno>

namespace {

constexpr qint64 largestSize = 1 << 20;

bool isHeaderOf(QByteArrayView line, QByteArrayView header)
{
    if (!line.startsWith(header)) {
        return false;
    }
    const QByteArrayView rest = line.sliced(header.size());
    return rest.isEmpty() || rest.startsWith("[$");
}

} // namespace

QByteArray settingsFile::contents(const QString &path)
{
    // Not QFile: its engine alone costs more than this read.
    const FileDescriptor file(
        ::open(nativePath(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isValid()) {
        return {};
    }
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > largestSize) {
        return {};
    }
    QByteArray bytes(qsizetype(status.st_size), Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const auto count = ::read(file.get(), bytes.data() + length, size_t(bytes.size() - length));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        length += count;
    }
    bytes.truncate(length);
    return bytes;
}

void settingsFile::visitEntries(QByteArrayView contents, QByteArrayView header, EntryVisitor visitor)
{
    bool isInGroup = header.isEmpty();
    for (qsizetype begin = 0; begin < contents.size();) {
        const qsizetype found = contents.indexOf('\n', begin);
        const qsizetype end = found < 0 ? contents.size() : found;
        const QByteArrayView line = contents.sliced(begin, end - begin).trimmed();
        begin = end + 1;
        if (line.startsWith('[')) {
            isInGroup = !header.isEmpty() && isHeaderOf(line, header);
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (isInGroup && equals > 0 && !line.startsWith('#') && !line.startsWith(';')) {
            visitor(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
}
