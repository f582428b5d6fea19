#pragma once

#include "DecodedThumbnail.h"

#include <QImage>
#include <QMutex>
#include <QSemaphore>
#include <QStringList>

/// Decodes nothing: writes down what it is asked for, and answers an image of the asked size when it is let.
/// Its colour tells which decode it is of.
class RecordingDecoder final {
public:
    ThumbnailDecoder decoder()
    {
        return [this](const QString &path, int maximumPixelSize) {
            qsizetype number = 0;
            {
                const QMutexLocker locker(&m_mutex);
                // The analyzer takes the captured `this` for null.
                m_begun.append(path);
                number = m_begun.size();
            }
            (path.contains(QStringLiteral("/hung/")) ? m_mount : m_permits).acquire();
            if (path.contains(QStringLiteral("unreadable"))) {
                return DecodedThumbnail{};
            }
            QImage image(maximumPixelSize, 1, QImage::Format_RGB32);
            image.fill(color(number));
            return DecodedThumbnail{.image = image, .fileState = FileState{.size = 1}};
        };
    }

    /// Of the images of the decode that began as the first, the second...
    static QRgb color(qsizetype number) { return qRgb(0, 0, static_cast<int>(number)); }

    void let(int count) { m_permits.release(count); }

    void letAll() { let(1'000'000); }

    void reviveMount() { m_mount.release(1000); }

    QStringList begun() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_begun;
    }

private:
    mutable QMutex m_mutex;
    QStringList m_begun;
    QSemaphore m_permits;
    QSemaphore m_mount;
};
