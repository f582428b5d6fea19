#include "OpenFolder.h"

#include "FileDescriptor.h"
#include "FileStatus.h"

#include <cerrno>
#include <utility>

Result<OpenFolder> OpenFolder::open(const QString &path)
{
    FileDescriptor descriptor(::open(nativePath(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.isValid()) {
        return std::unexpected(Error::fromErrno(errno, Error::FileReadUnknown));
    }
    return OpenFolder(descriptor.release());
}

OpenFolder::OpenFolder(OpenFolder &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

OpenFolder::~OpenFolder()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

Result<FileAttributes> OpenFolder::attributesOfItem(QStringView name) const
{
    // As file names are everywhere in this program: UTF-8.
    const auto status = FileStatus::ofEntry(m_descriptor, name.toUtf8().constData());
    if (!status) {
        return std::unexpected(status.error());
    }
    return status->attributes();
}
