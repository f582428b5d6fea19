#pragma once

#include "CapturedOutput.h"
#include "FileAccessManager.h"
#include "NotificationManager.h"
#include "ScreenshotGalleryViewModel.h"
#include "TemporaryHome.h"
#include "files.h"
#include "waitForBackground.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>

/// How long a test waits for what happens in the background, in milliseconds.
inline constexpr int patience = 30'000;

/// A home with real folders, preferences and a Trash, and the program's own folder access in it. One for all
/// tests of a program: folder access is shared, and GLib asks only once where the Trash is.
class GalleryHome final {
public:
    GalleryHome()
    {
        makeFolders();
        NotificationManager::shared();
        FileAccessManager::shared();
        waitForBackground();
    }

    [[nodiscard]] const TemporaryHome &home() const { return m_home; }

    [[nodiscard]] QString trashed(const QString &name) const { return m_home.trashedFiles() + u'/' + name; }

    /// Makes a file; the higher the number the older.
    [[nodiscard]] QString makeScreenshot(int number, const QString &folder) const
    {
        const QString path = folder + QStringLiteral("/Screenshot %1.png").arg(number);
        files::write(path);
        files::makeOlder(path, number * 60);
        return path;
    }

    [[nodiscard]] QString makeScreenshot(int number) const
    {
        return makeScreenshot(number, m_home.desktop());
    }

    /// Screenshots 1 to `count` on the Desktop.
    void makeScreenshots(int count) const
    {
        for (int number = 1; number <= count; ++number) {
            std::ignore = makeScreenshot(number);
        }
    }

    /// Ends what a test has left under way, and empties the folders and the Trash.
    void clear() const
    {
        waitForBackground();
        QCoreApplication::sendPostedEvents();
        for (const QString &folder : folders()) {
            QFile::setPermissions(
                folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
            for (const QString &name : QDir(folder).entryList(QDir::Files | QDir::System)) {
                files::remove(folder + u'/' + name);
            }
        }
        QDir(m_home.path() + QStringLiteral("/.local/share/Trash")).removeRecursively();
    }

private:
    [[nodiscard]] QStringList folders() const
    {
        return {m_home.desktop(), m_home.pictures(), m_home.downloads()};
    }

    void makeFolders() const
    {
        for (const QString &folder : folders()) {
            files::makeFolder(folder);
        }
    }

    TemporaryHome m_home;
};

inline QStringList names(const QList<ScreenshotItem> &items)
{
    QStringList list;
    for (const ScreenshotItem &item : items) {
        list.append(item.name());
    }
    return list;
}

/// `Screenshot FIRST.png` and so on.
inline QStringList numbered(int first, int last)
{
    QStringList list;
    for (int number = first; number <= last; ++number) {
        list.append(QStringLiteral("Screenshot %1.png").arg(number));
    }
    return list;
}

/// Ends when the model's first listing has been published.
inline void load(ScreenshotGalleryViewModel &model)
{
    model.loadScreenshots();
    QTRY_VERIFY_WITH_TIMEOUT(!model.isLoading(), patience);
}

inline void loadMore(ScreenshotGalleryViewModel &model)
{
    model.loadMore();
    QTRY_VERIFY_WITH_TIMEOUT(!model.isLoadingMore(), patience);
}

inline QSet<QString> ids(const QList<ScreenshotItem> &items)
{
    QSet<QString> set;
    for (const ScreenshotItem &item : items) {
        set.insert(item.id);
    }
    return set;
}

inline void select(ScreenshotGalleryViewModel &model, const QList<qsizetype> &positions)
{
    model.setSelectionMode(true);
    for (const qsizetype position : positions) {
        model.toggleSelection(model.displayedScreenshots().at(position));
    }
}
