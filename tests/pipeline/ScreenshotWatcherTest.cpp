#include "ScreenshotWatcher.h"

#include "Bookmark.h"
#include "CapturedOutput.h"
#include "FileManager.h"
#include "Preferences.h"
#include "ScreenshotWatcherFixture.h"
#include "SecurityScopedAccess.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int tickMilliseconds = 2000;
} // namespace

/// Each test has a home of its own and a real watcher on it, seeded before the test begins where it says so.
class ScreenshotWatcherTest final : public ScreenshotWatcherFixture {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void whatIsThereAtTheStartIsNeverReported();
    void aNewScreenshotIsReportedOnce();
    void theStandardFoldersAreWatchedTogether();
    void equalNamesInTwoFoldersAreTwoScreenshots();
    void aFolderThatHasTwoRolesIsWatchedOnce();
    void aFileElevenSecondsOldIsNotReported();
    void aFileNineSecondsOldIsReportedOnce();
    void aRenamedOldScreenshotIsNotReported();
    void aFileThatCameBackIsNewAgain();
    void aHiddenFileIsNeverSeen();
    void aNameThatIsNotUtf8IsPassedOver();
    void aFolderWithoutPermissionIsSkippedSilently();
    void aMissingFolderIsSkippedSilently();
    void anotherListingErrorIsPrintedOnEveryTick();
    void aFolderThatVanishesAndReturnsReportsNothingOld();
    void aFileThatIsStillBeingWrittenWaitsForItsEnd();
    void aThousandScreenshotsAtOnceAreAllReported();
    void scansThatOverlapReportAFileOnce();
    void scansThatHangDontKeepTheNextWatcherFromWatching();
    void aDestroyedWatcherReportsNothing();
    void aGoneDelegateIsNotCalled();
    void anUnchangedFolderIsNotListedAgain();
    void accessIsGivenBackAfterEachScan();
};

void ScreenshotWatcherTest::init()
{
    makeHome();
}

void ScreenshotWatcherTest::cleanup()
{
    removeHome();
}

void ScreenshotWatcherTest::whatIsThereAtTheStartIsNeverReported()
{
    files::write(desktopFile(QStringLiteral("Screenshot 1.png")));
    startWatching();
    QCOMPARE(m_watcher->lastKnownScreenshots(), QSet({desktopFile(QStringLiteral("Screenshot 1.png"))}));
    awaitTicks(2);
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherTest::aNewScreenshotIsReportedOnce()
{
    startWatching();
    const QString path = desktopFile(QStringLiteral("Screenshot_2024-05-01_10-11-12.png"));
    files::write(path);
    files::write(desktopFile(QStringLiteral("holiday.png")));
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
    awaitTicks(1);
    QCOMPARE(m_recorder->reports, QStringList(path));
}

void ScreenshotWatcherTest::theStandardFoldersAreWatchedTogether()
{
    startWatching();
    const QString name = QStringLiteral("/Screenshot 1.png");
    const QSet<QString> expected = {
        m_home->desktop() + name, m_home->pictures() + name, m_home->downloads() + name};
    for (const QString &path : expected) {
        files::write(path);
    }
    QTRY_COMPARE_WITH_TIMEOUT(
        QSet<QString>(m_recorder->reports.cbegin(), m_recorder->reports.cend()), expected, patience);
}

void ScreenshotWatcherTest::equalNamesInTwoFoldersAreTwoScreenshots()
{
    files::write(m_home->pictures() + QStringLiteral("/Screenshot 1.png"));
    startWatching();
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    files::write(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
}

void ScreenshotWatcherTest::aFolderThatHasTwoRolesIsWatchedOnce()
{
    // Where this desktop's capture tool saves is the Pictures folder.
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    startWatching();
    const QStringList paths = {
        m_home->pictures() + QStringLiteral("/Screenshot 1.png"),
        m_home->downloads() + QStringLiteral("/Screenshot 1.png")};
    for (const QString &path : paths) {
        files::write(path);
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_recorder->reports.size() >= paths.size(), patience);
    QCOMPARE(m_recorder->reports, paths);
}

void ScreenshotWatcherTest::aFileElevenSecondsOldIsNotReported()
{
    startWatching();
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    const QString elsewhere = m_home->path() + QStringLiteral("/Screenshot 1.png");
    files::write(elsewhere);
    files::makeOlder(elsewhere, 11);
    files::rename(elsewhere, path);
    QTRY_VERIFY_WITH_TIMEOUT(m_watcher->lastKnownScreenshots().contains(path), patience);
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherTest::aFileNineSecondsOldIsReportedOnce()
{
    // A tick may come two seconds after the file: so that it is nine seconds old then, wait for a tick and
    // bring it in right after.
    startWatching();
    awaitTicks(1);
    QSignalSpy applied(m_watcher.get(), &ScreenshotWatcher::didApplyScan);
    QVERIFY(applied.wait(patience)); // the marker's removal
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    const QString elsewhere = m_home->path() + QStringLiteral("/Screenshot 1.png");
    files::write(elsewhere);
    files::makeOlder(elsewhere, 9 - tickMilliseconds / 1000);
    files::rename(elsewhere, path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
    awaitTicks(1);
    QCOMPARE(m_recorder->reports, QStringList(path));
}

void ScreenshotWatcherTest::aRenamedOldScreenshotIsNotReported()
{
    startWatching();
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    files::write(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
    files::makeOlder(path, 11);
    const QString renamed = desktopFile(QStringLiteral("Screenshot 2.png"));
    files::rename(path, renamed);
    QTRY_COMPARE_WITH_TIMEOUT(m_watcher->lastKnownScreenshots(), QSet({renamed}), patience);
    QCOMPARE(m_recorder->reports, QStringList(path));
}

void ScreenshotWatcherTest::aFileThatCameBackIsNewAgain()
{
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    files::write(path);
    startWatching();
    files::remove(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_watcher->lastKnownScreenshots(), QSet<QString>(), patience);
    files::write(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
}

void ScreenshotWatcherTest::aHiddenFileIsNeverSeen()
{
    startWatching();
    files::write(desktopFile(QStringLiteral(".Screenshot 1.png")));
    files::write(desktopFile(QStringLiteral(".flameshot.png")));
    awaitTicks(1);
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherTest::aNameThatIsNotUtf8IsPassedOver()
{
    startWatching();
    const CapturedOutput output;
    const QByteArray path = desktopFile(QStringLiteral("Screenshot ")).toUtf8() + "\xFF\xFE.png";
    const int descriptor = ::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    QVERIFY(descriptor >= 0);
    ::close(descriptor);
    awaitTicks(1);
    // The toolkit can't name it, so it couldn't remove the home either.
    QCOMPARE(::unlink(path.constData()), 0);
    QCOMPARE(m_recorder->reports, QStringList());
    QCOMPARE(output.lines(), QStringList());
}

void ScreenshotWatcherTest::aFolderWithoutPermissionIsSkippedSilently()
{
    if (::geteuid() == 0) {
        QSKIP("Nothing is forbidden to root");
    }
    files::write(m_home->pictures() + QStringLiteral("/Screenshot 1.png"));
    QVERIFY(::chmod(m_home->pictures().toUtf8().constData(), 0) == 0);
    const CapturedOutput output;
    startWatching();
    awaitTicks(1);
    ::chmod(m_home->pictures().toUtf8().constData(), 0700);
    QCOMPARE(output.lines(), QStringList());
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherTest::aMissingFolderIsSkippedSilently()
{
    files::remove(m_home->pictures());
    files::remove(m_home->downloads());
    files::write(m_home->downloads(), "a file where a folder should be");
    const CapturedOutput output;
    startWatching();
    awaitTicks(1);
    QCOMPARE(output.lines(), QStringList());
}

void ScreenshotWatcherTest::anotherListingErrorIsPrintedOnEveryTick()
{
    // A link to itself: too many levels of symbolic links, an error without a code of its own.
    const QByteArray pictures = m_home->pictures().toUtf8();
    files::remove(m_home->pictures());
    QVERIFY(::symlink(pictures.constData(), pictures.constData()) == 0);
    const auto error = FileManager::defaultManager().directoryState(m_home->pictures());
    QVERIFY(!error);
    const QString line = QStringLiteral("Warning: Could not access directory ") + m_home->pictures() +
                         QStringLiteral(": ") + error.error().localizedDescription;

    const CapturedOutput output;
    startWatching();
    QCOMPARE(output.lines(), QStringList(line));
    QTRY_COMPARE_GE_WITH_TIMEOUT(output.count(line), 3, patience);
}

void ScreenshotWatcherTest::aFolderThatVanishesAndReturnsReportsNothingOld()
{
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    files::write(path);
    files::makeOlder(path, 60);
    startWatching();
    QVERIFY(m_watcher->lastKnownScreenshots().contains(path));
    const QString away = m_home->path() + QStringLiteral("/away");
    files::rename(m_home->desktop(), away);
    QTRY_COMPARE_WITH_TIMEOUT(m_watcher->lastKnownScreenshots(), QSet<QString>(), patience);
    files::rename(away, m_home->desktop());
    QTRY_VERIFY_WITH_TIMEOUT(m_watcher->lastKnownScreenshots().contains(path), patience);
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherTest::aFileThatIsStillBeingWrittenWaitsForItsEnd()
{
    startWatching();
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    QFile writer(path);
    QVERIFY(writer.open(QIODevice::WriteOnly));
    writer.write("the beginning");
    writer.flush();
    // A tick passes; the writer belongs to this process, but its lease test runs on a descriptor of its own.
    awaitTicks(1);
    QCOMPARE(m_recorder->reports, QStringList());
    writer.close();
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
}

void ScreenshotWatcherTest::aThousandScreenshotsAtOnceAreAllReported()
{
    startWatching();
    QSet<QString> expected;
    for (int i = 0; i < 1000; ++i) {
        const QString path = desktopFile(QStringLiteral("Screenshot %1.png").arg(i));
        files::write(path);
        expected.insert(path);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports.size(), 1000, patience);
    QCOMPARE(QSet<QString>(m_recorder->reports.cbegin(), m_recorder->reports.cend()), expected);
}

void ScreenshotWatcherTest::scansThatOverlapReportAFileOnce()
{
    startWatching();
    // Both threads of the scans' queue are kept busy until several ticks wait, all with the same baseline.
    QThreadPool &pool = background::pool(BackgroundQueue::Scan);
    QSemaphore release;
    for (int i = 0; i < pool.maxThreadCount(); ++i) {
        pool.start([&release] { release.acquire(); });
    }
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    QElapsedTimer waiting;
    waiting.start();
    QTRY_VERIFY_WITH_TIMEOUT(waiting.elapsed() > 2 * tickMilliseconds + tickMilliseconds / 4, patience);
    files::write(path);
    release.release(pool.maxThreadCount());
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
    awaitTicks(1);
    QCOMPARE(m_recorder->reports, QStringList(path));
}

void ScreenshotWatcherTest::scansThatHangDontKeepTheNextWatcherFromWatching()
{
    startWatching();
    m_watcher.reset();
    QThreadPool &pool = background::pool(BackgroundQueue::Scan);
    pool.waitForDone();
    const int hanging = pool.maxThreadCount();
    QSemaphore release;
    const auto released = qScopeGuard([&] {
        release.release(hanging);
        pool.waitForDone();
    });
    for (int i = 0; i < hanging; ++i) {
        pool.start([&release] { release.acquire(); });
    }
    startWatching();
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    files::write(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->reports, QStringList(path), patience);
}

void ScreenshotWatcherTest::aDestroyedWatcherReportsNothing()
{
    startWatching();
    files::write(desktopFile(QStringLiteral("Screenshot 1.png")));
    m_watcher.reset();
    startWatching();
    awaitTicks(2);
    QCOMPARE(m_recorder->reports, QStringList());
}

void ScreenshotWatcherTest::aGoneDelegateIsNotCalled()
{
    startWatching();
    m_recorder.reset();
    const QString path = desktopFile(QStringLiteral("Screenshot 1.png"));
    files::write(path);
    QTRY_VERIFY_WITH_TIMEOUT(m_watcher->lastKnownScreenshots().contains(path), patience);
}

void ScreenshotWatcherTest::anUnchangedFolderIsNotListedAgain()
{
    files::write(desktopFile(QStringLiteral("Screenshot 1.png")));
    const FileManager &fileManager = FileManager::defaultManager();
    const QUrl desktop = QUrl::fromLocalFile(m_home->desktop());
    // Until two seconds have passed since the folder changed, a listing may miss what comes in the same tick
    // of the file system's clock.
    std::optional<FolderScan> scan = ScreenshotWatcher::scanDirectory(fileManager, desktop, nullptr);
    QVERIFY(scan);
    QVERIFY(!scan->state.listingIsComplete);
    const auto becomesComplete = [&] {
        scan = ScreenshotWatcher::scanDirectory(fileManager, desktop, &*scan);
        return scan->state.listingIsComplete;
    };
    QTRY_VERIFY_WITH_TIMEOUT(becomesComplete(), patience);
    const auto again = ScreenshotWatcher::scanDirectory(fileManager, desktop, &*scan);
    QVERIFY(again && again->isTakenOverFrom(*scan));

    files::write(desktopFile(QStringLiteral("Screenshot 2.png")));
    const auto changed = ScreenshotWatcher::scanDirectory(fileManager, desktop, &*scan);
    QVERIFY(changed);
    QCOMPARE(changed->paths.size(), 2);
}

void ScreenshotWatcherTest::accessIsGivenBackAfterEachScan()
{
    const auto bookmark = Bookmark::make(QUrl::fromLocalFile(m_home->desktop()), Bookmark::Origin::Automatic);
    QVERIFY(bookmark);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, *bookmark);
    for (int i = 0; i < 100; ++i) {
        const auto scan = ScreenshotWatcher::collectScreenshotPaths(FileManager::defaultManager(), {});
        QCOMPARE(scan.folders.size(), 1);
    }
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

QTEST_GUILESS_MAIN(ScreenshotWatcherTest)
#include "ScreenshotWatcherTest.moc"
