#pragma once

#include "ImageSource.h"
#include "TemporaryHome.h"
#include "TestImages.h"
#include "expectedThumbnailEntry.h"
#include "files.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>
#include <QUrl>

/// The colours tell whether a thumbnail was made of the file or of an entry.
inline const QColor ofFile = Qt::black;
inline const QColor ofEntry = Qt::green;

inline QImage plain(QSize size, QColor color = ofEntry)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// What the tests of the shared thumbnail cache share: a home with files old enough for it, and its entries.
class SharedThumbnailCacheFixture : public QObject {
protected:
    static constexpr int request = 240;

    void emptyHome() const
    {
        qputenv("XDG_CACHE_HOME", QFile::encodeName(m_home.path() + QStringLiteral("/.cache")));
        QDir(m_home.path() + QStringLiteral("/.cache")).removeRecursively();
        QDir desktop(m_home.desktop());
        desktop.removeRecursively();
        files::makeFolder(m_home.desktop());
    }

    [[nodiscard]] QString root() const { return m_home.path() + QStringLiteral("/.cache/thumbnails"); }

    [[nodiscard]] QString entry(const QString &path, const QString &folder = QStringLiteral("large")) const
    {
        return root() + u'/' + folder + u'/' + entryName(path);
    }

    /// Black, 1200 × 900, and so old that it may have an entry.
    [[nodiscard]] QString oldFile(const QString &name = QStringLiteral("shot.png")) const
    {
        return oldFile(name, testImages::blackPng({1200, 900}));
    }

    [[nodiscard]] QString oldFile(const QString &name, const QByteArray &bytes) const
    {
        const QString path = m_home.desktop() + u'/' + name;
        testImages::writeFile(path, bytes);
        files::makeOlder(path, 100);
        return path;
    }

    void writeEntry(
        const QString &path, const QByteArray &bytes, const QString &folder = QStringLiteral("large")) const
    {
        files::makeFolder(root() + u'/' + folder);
        testImages::writeFile(entry(path, folder), bytes);
    }

    static QImage thumbnail(const QString &path, int maximumPixelSize = request)
    {
        const auto source = ImageSource::create(QUrl::fromLocalFile(path));
        return source ? source->sharedThumbnail(maximumPixelSize).value_or(QImage()) : QImage();
    }

    static QColor color(const QImage &image)
    {
        return image.isNull() ? QColor() : image.pixelColor(image.rect().center());
    }

    [[nodiscard]] qsizetype entryCount() const
    {
        qsizetype count = 0;
        for (const QString &folder : QDir(root()).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            count += QDir(root() + u'/' + folder)
                         .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden)
                         .size();
        }
        return count;
    }

    TemporaryHome m_home;
};
