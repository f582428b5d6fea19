#include "settingsFile.h"

#include "FileDescriptor.h"
#include "FileStatus.h"

#include <cerrno>

namespace {

constexpr qint64 largestSize = 1 << 20;

std::unexpected<Error> failure(int errorNumber)
{
    return std::unexpected(Error::fromErrno(errorNumber, Error::FileReadUnknown));
}

} // namespace

Result<QByteArray> settingsFile::read(const QByteArray &path)
{
    // Not QFile: its engine alone costs more than this read.
    const FileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!file.isValid() || ::fstat(file.get(), &status) != 0) {
        return failure(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return std::unexpected(Error{
            .domain = Error::cocoaDomain,
            .code = Error::FileReadUnknown,
            .localizedDescription = QStringLiteral("Not a regular file"),
        });
    }
    if (status.st_size > largestSize) {
        return failure(EFBIG);
    }
    QByteArray bytes(qsizetype(status.st_size), Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const auto count = ::read(file.get(), bytes.data() + length, size_t(bytes.size() - length));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return failure(errno);
        }
        if (count == 0) {
            break;
        }
        length += count;
    }
    bytes.truncate(length);
    return bytes;
}

QByteArray settingsFile::contents(const QString &path)
{
    return read(nativePath(path)).value_or(QByteArray());
}
