#include "replaceFile.h"

#include "FileDescriptor.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

bool makeFolder(const QByteArray &path)
{
    constexpr mode_t ownerOnly = 0700;
    if (::mkdir(path.constData(), ownerOnly) == 0 || errno == EEXIST) {
        return true;
    }
    const qsizetype slash = path.lastIndexOf('/');
    return errno == ENOENT && slash > 0 && makeFolder(path.first(slash)) &&
           ::mkdir(path.constData(), ownerOnly) == 0;
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

} // namespace

bool replaceFile(const QByteArray &path, const QByteArray &contents)
{
    const QByteArray nameTemplate = QByteArray(path).append(".XXXXXX");
    QByteArray temporary = nameTemplate;
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isValid() && errno == ENOENT && makeFolder(path.first(path.lastIndexOf('/')))) {
        temporary = nameTemplate;
        file = FileDescriptor(::mkostemp(temporary.data(), O_CLOEXEC));
    }
    if (!file.isValid()) {
        return false;
    }
    if (write(file.get(), contents) && ::rename(temporary.constData(), path.constData()) == 0) {
        return true;
    }
    ::unlink(temporary.constData());
    return false;
}
