#include "Bookmark.h"
#include "CapturedOutput.h"
#include "Preferences.h"
#include "ScreenshotWatcher.h"
#include "ScreenshotWatcherFixture.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace {

void bookmark(const QString &folder, Bookmark::Origin origin)
{
    const auto made = Bookmark::make(QUrl::fromLocalFile(folder), origin);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, made.value_or(QByteArray()));
}

} // namespace

/// Which folders a watcher watches, by the stored bookmark. Each test has a home of its own.
class ScreenshotWatcherBookmarkTest final : public ScreenshotWatcherFixture {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void withABookmarkOnlyItsFolderIsWatched();
    void aStaleBookmarkFallsBackSilently();
    void aBookmarkCountsFromTheNextTickOn();
    void aFolderThatTookTheBookmarkedOnesPlaceIsWatchedAmongTheOthers();
    void aPickedFolderThatIsRenamedIsWatchedOn();
    void aBookmarkThatDoesNotResolveIsPrintedOnEveryTick();
};

void ScreenshotWatcherBookmarkTest::init()
{
    makeHome();
}

void ScreenshotWatcherBookmarkTest::cleanup()
{
    removeHome();
}

void ScreenshotWatcherBookmarkTest::withABookmarkOnlyItsFolderIsWatched()
{
    bookmark(m_home->desktop(), Bookmark::Origin::Automatic);
    startWatching();
    files::write(m_home->pictures() + QStringLiteral("/Screenshot 1.png"));
    files::write(m_home->downloads() + QStringLiteral("/Screenshot 1.png"));
    awaitTicks(2);
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherBookmarkTest::aStaleBookmarkFallsBackSilently()
{
    const QString folder = m_home->path() + QStringLiteral("/Shots");
    files::makeFolder(folder);
    const auto bookmark = Bookmark::make(QUrl::fromLocalFile(folder), Bookmark::Origin::PickedByUser);
    QVERIFY(bookmark);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, *bookmark);
    files::rename(folder, m_home->path() + QStringLiteral("/Renamed"));

    const CapturedOutput output;
    startWatching();
    const QString path = m_home->pictures() + QStringLiteral("/Screenshot 1.png");
    files::write(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
    QCOMPARE(output.lines(), QStringList());
    QCOMPARE(UserDefaults::standard().data(preferences::desktopFolderBookmark), *bookmark);
}

void ScreenshotWatcherBookmarkTest::aBookmarkCountsFromTheNextTickOn()
{
    const QString folder = m_home->path() + QStringLiteral("/Shots");
    files::makeFolder(folder);
    startWatching();
    QSignalSpy scans(m_watcher.get(), &ScreenshotWatcher::didApplyScan);
    bookmark(folder, Bookmark::Origin::PickedByUser);
    QVERIFY(scans.wait(patience));
    const QString path = folder + QStringLiteral("/Screenshot 1.png");
    files::write(path);
    files::write(desktopFile(QStringLiteral("Screenshot 1.png")));
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
    // Another one in its place, by a bookmark that nobody picked.
    bookmark(m_home->desktop(), Bookmark::Origin::Automatic);
    awaitTicks(1);
    const QString other = desktopFile(QStringLiteral("Screenshot 2.png"));
    files::write(other);
    QTRY_VERIFY_WITH_TIMEOUT(m_recorder->reports.contains(other), patience);
}

void ScreenshotWatcherBookmarkTest::aFolderThatTookTheBookmarkedOnesPlaceIsWatchedAmongTheOthers()
{
    bookmark(m_home->desktop(), Bookmark::Origin::Automatic);
    startWatching();
    files::rename(m_home->desktop(), m_home->path() + QStringLiteral("/old"));
    files::makeFolder(m_home->desktop());
    const CapturedOutput output;
    awaitTicks(1);
    const QStringList paths = {
        desktopFile(QStringLiteral("Screenshot 1.png")),
        m_home->pictures() + QStringLiteral("/Screenshot 1.png")};
    for (const QString &path : paths) {
        files::write(path);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports.size(), 2, patience);
    QVERIFY(std::ranges::all_of(
        paths, [this](const QString &path) { return m_recorder->reports.contains(path); }));
    QCOMPARE(output.lines(), QStringList());
}

void ScreenshotWatcherBookmarkTest::aPickedFolderThatIsRenamedIsWatchedOn()
{
    const QString folder = m_home->path() + QStringLiteral("/Shots");
    const QString renamed = m_home->path() + QStringLiteral("/Renamed");
    files::makeFolder(folder);
    bookmark(folder, Bookmark::Origin::PickedByUser);
    startWatching();
    QSignalSpy scans(m_watcher.get(), &ScreenshotWatcher::didApplyScan);
    files::rename(folder, renamed);
    QVERIFY(scans.wait(patience));
    // It has the role of the Desktop, whatever its name.
    const QString path = renamed + QStringLiteral("/Screenshot 1.png");
    files::write(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
}

void ScreenshotWatcherBookmarkTest::aBookmarkThatDoesNotResolveIsPrintedOnEveryTick()
{
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, "not a bookmark");
    const auto error = Bookmark::resolve("not a bookmark");
    QVERIFY(!error);
    const QString line = QStringLiteral("Could not resolve bookmark: ") + error.error().localizedDescription;

    const CapturedOutput output;
    startWatching();
    QCOMPARE(output.count(line), 1);
    awaitTicks(1);
    QTRY_COMPARE_GE_WITH_TIMEOUT(output.count(line), 3, patience);
}

QTEST_GUILESS_MAIN(ScreenshotWatcherBookmarkTest)
#include "ScreenshotWatcherBookmarkTest.moc"
