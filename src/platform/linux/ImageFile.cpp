#include "ImageFile.h"

#include "FileDescriptor.h"
#include "FileStatus.h"
#include "Image.h"

#include <QUrl>

#include <fcntl.h>

#include <cerrno>

namespace {

Error notAnImage()
{
    return {
        .domain = Image::errorDomain,
        .code = 1,
        .localizedDescription = QStringLiteral("The file is not an image"),
    };
}

} // namespace

Result<ImageFile> ImageFile::open(const QUrl &url)
{
    const QByteArray path = QFile::encodeName(url.toLocalFile());
    FileDescriptor descriptor(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!descriptor.isValid()) {
        return std::unexpected(Error::fromErrno(errno, Error::FileReadUnknown));
    }
    const auto status = FileStatus::ofDescriptor(descriptor.get());
    if (!status || !status->isRegularFile()) {
        return std::unexpected(notAnImage());
    }
    auto file = std::make_unique<QFile>();
    if (!file->open(descriptor.release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        return std::unexpected(notAnImage());
    }
    const auto format = recognizedImageFormat(file->peek(imageFormatLeadingBytes));
    if (!format) {
        return std::unexpected(notAnImage());
    }
    return ImageFile{.file = std::move(file), .path = path, .format = *format, .state = status->state()};
}
