#pragma once

#include "Bookmark.h"
#include "CapturedOutput.h"
#include "FileAccessManager.h"
#include "NotificationCenter.h"
#include "NotificationManager.h"
#include "Preferences.h"
#include "RecordingNotificationServer.h"
#include "SecurityScopedAccess.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"
#include "waitForBackground.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>

/// What the tests of folder access share: managers that are made one after the other, as the program's runs
/// are, with real folders, preferences and a notification server that records.
class FileAccessFixture : public QObject {
protected:
    static constexpr int patience = 15'000;

    [[nodiscard]] static QUrl fileUrl(const QString &path) { return QUrl::fromLocalFile(path); }

    static void setMode(const QString &path, mode_t mode)
    {
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    [[nodiscard]] static std::optional<QByteArray> currentBookmark()
    {
        return UserDefaults::standard().data(preferences::desktopFolderBookmark);
    }

    [[nodiscard]] static QUrl bookmarkedFolder()
    {
        return Bookmark::resolve(currentBookmark().value_or(QByteArray()))
            .value_or(Bookmark::ResolvedBookmark{})
            .url;
    }

    void prepare()
    {
        NotificationManager::shared();
        NotificationCenter::defaultCenter().addObserver(
            FileAccessManager::folderAccessGranted, this, [this](const ProcessNotification &notification) {
                QVERIFY(notification.userInfo.isEmpty());
                ++m_grants;
            });
    }

    void makeHome()
    {
        for (const QString &folder : {m_home->desktop(), m_home->pictures(), m_home->downloads()}) {
            files::makeFolder(folder);
        }
        m_grants = 0;
        m_server.reset();
        m_server =
            std::make_unique<RecordingNotificationServer>(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
        m_output = std::make_unique<CapturedOutput>();
    }

    void removeHome()
    {
        endManager();
        waitForBackground();
        QCoreApplication::processEvents();
        SecurityScopedAccess::keep(std::nullopt);
        QCOMPARE(SecurityScopedAccess::activeCount(), 0);
        m_output.reset();
        const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        for (const QFileInfo &item : QDir(m_home->path()).entryInfoList(everything)) {
            if (item.isDir() && !item.isSymLink()) {
                setMode(item.filePath(), 0700);
                QVERIFY(QDir(item.filePath()).removeRecursively());
            } else {
                QVERIFY(QFile::remove(item.filePath()));
            }
        }
    }

    /// The next run: what the one before has printed is forgotten.
    void restart()
    {
        endManager();
        SecurityScopedAccess::keep(std::nullopt);
        m_output.reset();
        m_output = std::make_unique<CapturedOutput>();
        m_manager = std::make_unique<FileAccessManager>();
    }

    /// Without giving back the access that it holds. The process's manager is there for as long as a question
    /// about its folder is under way, and so is a test's.
    void endManager()
    {
        background::pool(BackgroundQueue::Listing).waitForDone();
        m_manager.reset();
    }

    void pick(const QString &folder)
    {
        const int before = m_grants;
        m_manager->handleSelectedFolder(fileUrl(folder));
        QTRY_COMPARE_WITH_TIMEOUT(m_grants, before + 1, patience);
    }

    [[nodiscard]] QString makeFolder(const QString &name) const
    {
        const QString path = m_home->path() + u'/' + name;
        files::makeFolder(path);
        return path;
    }

    [[nodiscard]] bool isTold(const QString &title, const QString &body) const
    {
        const auto shown = m_server->shown();
        return std::ranges::any_of(shown, [&](const RecordingNotificationServer::Notification &notification) {
            return notification.title == title && notification.body == body;
        });
    }

    const std::unique_ptr<TemporaryHome> m_home = std::make_unique<TemporaryHome>();
    std::unique_ptr<RecordingNotificationServer> m_server;
    std::unique_ptr<CapturedOutput> m_output;
    std::unique_ptr<FileAccessManager> m_manager;
    int m_grants = 0;
};
