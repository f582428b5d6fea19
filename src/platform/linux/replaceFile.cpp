#include "replaceFile.h"

#include "FileDescriptor.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

/// Another thread or program may be making the same folder.
bool isFolderMade(const QByteArray &path)
{
    constexpr mode_t ownerOnly = 0700;
    return ::mkdir(path.constData(), ownerOnly) == 0 || errno == EEXIST;
}

bool makeFolder(const QByteArray &path)
{
    if (isFolderMade(path)) {
        return true;
    }
    const qsizetype slash = path.lastIndexOf('/');
    return errno == ENOENT && slash > 0 && makeFolder(path.first(slash)) && isFolderMade(path);
}

bool write(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), size_t(bytes.size()));
        if (count > 0) {
            bytes = bytes.sliced(count);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool finish(int descriptor, const FileReplacement &replacement)
{
    const bool hasMode =
        replacement.mode == FileReplacement::ownerOnly || ::fchmod(descriptor, replacement.mode) == 0;
    return hasMode &&
           (replacement.durability == FileReplacement::Durability::MayBeLost || ::fsync(descriptor) == 0);
}

std::unexpected<Error> failure(int errorNumber)
{
    return std::unexpected(Error::fromErrno(errorNumber, Error::FileWriteUnknown));
}

} // namespace

Result<void>
replaceFile(const QByteArray &path, const QByteArray &contents, const FileReplacement &replacement)
{
    const QByteArray nameTemplate = QByteArray(path).append(".XXXXXX");
    QByteArray temporary = nameTemplate;
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isValid() && errno == ENOENT && makeFolder(path.first(path.lastIndexOf('/')))) {
        temporary = nameTemplate;
        file = FileDescriptor(::mkostemp(temporary.data(), O_CLOEXEC));
    }
    if (!file.isValid()) {
        return failure(errno);
    }
    if (write(file.get(), contents) && finish(file.get(), replacement) &&
        ::rename(temporary.constData(), path.constData()) == 0) {
        return {};
    }
    const int errorNumber = errno;
    ::unlink(temporary.constData());
    return failure(errorNumber);
}
