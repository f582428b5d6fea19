#include "sharedThumbnailEntry.h"

#include "FileDescriptor.h"
#include "FileStatus.h"
#include "PngHeader.h"
#include "encodedPng.h"
#include "pngTexts.h"
#include "pngThumbnail.h"
#include "replaceFile.h"
#include "thumbnailSize.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <tuple>

namespace {

using Texts = QHash<QByteArray, QByteArray>;

/// Several times what the pixels of the largest entry take unpacked.
constexpr qint64 largestFile = qint64(16) * 1024 * 1024;

QByteArray seconds(qint64 nanoseconds)
{
    return QByteArray::number(
        qint64(std::chrono::floor<std::chrono::seconds>(std::chrono::nanoseconds(nanoseconds)).count()));
}

/// Whether the entry was made of the file as it is. Its modification time alone, which has seconds, doesn't
/// tell of a change within the same one; the size mostly does. Many programs leave it out: of theirs those
/// count that were written when the second was certainly over.
bool isOf(const Texts &texts, const FileState &entry, const sharedThumbnailEntry::Subject &subject)
{
    if (texts.value("Thumb::URI") != subject.uri ||
        texts.value("Thumb::MTime") != seconds(subject.state.modifiedNs)) {
        return false;
    }
    const auto size = texts.constFind("Thumb::Size");
    return size != texts.cend() ? *size == QByteArray::number(subject.state.size)
                                : entry.modifiedNs - subject.state.modifiedNs >=
                                      sharedThumbnailEntry::timestampGranularity.count();
}

/// Whether an image of this size, in a class of that side, becomes an entry like that. Programs round in
/// different ways.
bool isScaledTo(QSize entry, QSize image, int side)
{
    const QSize difference = thumbnailSize(image, side) - entry;
    return !image.isEmpty() && std::abs(difference.width()) <= 1 && std::abs(difference.height()) <= 1;
}

/// The size of a thumbnail that is made of an entry; none if the entry is too small for it. The image's own
/// size makes it exact, and tells of a small entry that there is no more of it.
std::optional<QSize> targetSize(QSize entry, const Texts &texts, int side, int maximumPixelSize)
{
    // What is claimed here is believed only where the entry bears it out.
    QSize image(texts.value("Thumb::Image::Width").toInt(), texts.value("Thumb::Image::Height").toInt());
    if (!isScaledTo(entry, image, side)) {
        image.transpose(); // as it was stored, before it was turned upright
    }
    if (!isScaledTo(entry, image, side)) {
        image = {};
    }
    if (std::max(entry.width(), entry.height()) >= maximumPixelSize) {
        return thumbnailSize(image.isEmpty() ? entry : image, maximumPixelSize).boundedTo(entry);
    }
    return image == entry ? std::optional(entry) : std::nullopt;
}

} // namespace

std::optional<QImage>
sharedThumbnailEntry::read(const QByteArray &path, int side, const Subject &subject, int maximumPixelSize)
{
    const FileDescriptor entry(
        ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC));
    if (!entry.isValid()) {
        return std::nullopt;
    }
    const auto status = FileStatus::ofDescriptor(entry.get());
    if (!status || !status->isRegularFile() || status->size > largestFile) {
        return std::nullopt;
    }
    const auto header = PngHeader::ofFile(entry.get());
    if (!header || header->isInterlaced || std::max(header->size.width(), header->size.height()) > side) {
        return std::nullopt;
    }
    const auto texts = pngTexts(entry.get());
    if (!texts || !isOf(*texts, status->state(), subject)) {
        return std::nullopt;
    }
    const auto size = targetSize(header->size, *texts, side, maximumPixelSize);
    return size ? scaledPng(entry.get(), *size) : std::nullopt;
}

void sharedThumbnailEntry::write(
    const QByteArray &path, const QImage &thumbnail, const Subject &subject,
    const ImageProperties &properties)
{
    // Where the cache can't be written, nothing is said.
    std::ignore = replaceFile(
        path, encodedPng(
                  thumbnail, {
                                 {"Thumb::URI", subject.uri},
                                 {"Thumb::MTime", seconds(subject.state.modifiedNs)},
                                 {"Thumb::Size", QByteArray::number(subject.state.size)},
                                 {"Thumb::Mimetype", mimeType(properties.format).toLatin1()},
                                 {"Thumb::Image::Width", QByteArray::number(properties.size.width())},
                                 {"Thumb::Image::Height", QByteArray::number(properties.size.height())},
                                 {"Software", "Deskbroom"},
                             }));
}
