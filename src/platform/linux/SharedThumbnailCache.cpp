#include "SharedThumbnailCache.h"

#include "FileStatus.h"
#include "fileUri.h"

#include <QCryptographicHash>
#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>

namespace {

struct SizeClass {
    const char *folder;
    int side;
};

constexpr std::array sizeClasses = {
    SizeClass{"normal", 128},
    SizeClass{"large", 256},
    SizeClass{"x-large", 512},
    SizeClass{"xx-large", 1024},
};

QByteArray cacheRoot()
{
    QByteArray cacheHome = qgetenv("XDG_CACHE_HOME");
    if (!cacheHome.startsWith('/')) {
        const QByteArray home = qgetenv("HOME");
        if (!home.startsWith('/')) {
            return {};
        }
        cacheHome = home + "/.cache";
    }
    return canonicalPath(cacheHome + "/thumbnails");
}

/// Nothing is inside an empty path: that of a folder that isn't there.
bool isInside(const QByteArray &path, const QByteArray &folder)
{
    return !folder.isEmpty() && path.startsWith(folder) && path.size() > folder.size() &&
           path.at(folder.size()) == '/';
}

/// Without symbolic links; empty if there is no such file.
QByteArray realPath(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(
        ::realpath(path.constData(), nullptr), &std::free);
    return {resolved.get()};
}

} // namespace

SharedThumbnailCache::SharedThumbnailCache(const QByteArray &path)
{
    const QByteArray root = cacheRoot();
    if (!path.startsWith('/') || root.isEmpty() || isInside(canonicalPath(path), root)) {
        return;
    }
    m_root = root;
    m_path = path;
    m_uri = fileUri(path);
    m_name = QCryptographicHash::hash(m_uri, QCryptographicHash::Md5).toHex() + ".png";
}

std::optional<int> SharedThumbnailCache::entrySide(int maximumPixelSize)
{
    const auto *const found = std::ranges::find_if(
        sizeClasses, [maximumPixelSize](SizeClass sizeClass) { return sizeClass.side >= maximumPixelSize; });
    return found != sizeClasses.end() ? std::optional(found->side) : std::nullopt;
}

std::optional<QImage> SharedThumbnailCache::thumbnail(const FileState &state, int maximumPixelSize) const
{
    if (m_root.isEmpty()) {
        return std::nullopt;
    }
    for (const auto &[folder, side] : sizeClasses) {
        if (side >= maximumPixelSize) {
            auto image = sharedThumbnailEntry::read(
                entryPath(folder), side, {.uri = m_uri, .state = state}, maximumPixelSize);
            if (image) {
                return image;
            }
        }
    }
    return std::nullopt;
}

bool SharedThumbnailCache::mayHold(const FileState &state) const
{
    // Of the clock that the file system's stamps are from, which lags behind the exact one.
    timespec now = {};
    if (::clock_gettime(CLOCK_REALTIME_COARSE, &now) != 0) {
        return false;
    }
    const std::chrono::nanoseconds time =
        std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
    const auto age = time - std::chrono::nanoseconds(state.modifiedNs);
    return !m_root.isEmpty() && age >= sharedThumbnailEntry::timestampGranularity &&
           !isInside(realPath(m_path), realPath(m_root));
}

void SharedThumbnailCache::store(
    const QImage &thumbnail, int entrySide, const FileState &state,
    const sharedThumbnailEntry::ImageProperties &properties) const
{
    const auto *const sizeClass = std::ranges::find(sizeClasses, entrySide, &SizeClass::side);
    const auto now = FileStatus::ofTarget(QFile::decodeName(m_path));
    if (sizeClass != sizeClasses.end() && now && now->state() == state) {
        sharedThumbnailEntry::write(
            entryPath(sizeClass->folder), thumbnail, {.uri = m_uri, .state = state}, properties);
    }
}

void SharedThumbnailCache::removeAll() const
{
    if (!m_root.isEmpty()) {
        for (const SizeClass &sizeClass : sizeClasses) {
            ::unlink(entryPath(sizeClass.folder).constData());
        }
    }
}

QByteArray SharedThumbnailCache::entryPath(const char *folder) const
{
    return m_root + '/' + folder + '/' + m_name;
}
