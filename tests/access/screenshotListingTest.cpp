#include "screenshotListing.h"

#include "Bookmark.h"
#include "CapturedOutput.h"
#include "FileAccessManager.h"
#include "NotificationManager.h"
#include "Preferences.h"
#include "SecurityScopedAccess.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"
#include "waitForBackground.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stop_token>
#include <thread>

namespace {

const QList<SearchPathDirectory> everywhere = {
    SearchPathDirectory::Desktop, SearchPathDirectory::Pictures, SearchPathDirectory::Downloads};

QList<ScreenshotItem> load(const QList<SearchPathDirectory> &directories = everywhere)
{
    return screenshotListing::loadScreenshots(
        FileManager::defaultManager(), preferences::desktopFolderBookmark, directories);
}

QList<ScreenshotItem> scan(const QString &folder)
{
    return screenshotListing::scanDirectory(FileManager::defaultManager(), QUrl::fromLocalFile(folder));
}

QStringList names(const QList<ScreenshotItem> &items)
{
    QStringList list;
    for (const ScreenshotItem &item : items) {
        list.append(item.name());
    }
    return list;
}

QStringList sortedNames(const QList<ScreenshotItem> &items)
{
    QStringList list = names(items);
    list.sort();
    return list;
}

void bookmark(const QString &folder)
{
    const auto made = Bookmark::make(QUrl::fromLocalFile(folder), Bookmark::Origin::Automatic);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, made.value_or(QByteArray()));
}

} // namespace

class screenshotListingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aRecordTellsPathNameDateAndSize();
    void aFileWithoutACreationDateHasTheMomentOfTheListing();
    void recordsAreEqualWhenEverythingIs();
    void onlyScreenshotsAreListed();
    void hostileNamesAreListedAsTheyAre();
    void theNewestComesFirst();
    void filesOfOneDateAreAllThere();
    void aFolderIsListedOnce_data();
    void aFolderIsListedOnce();
    void theBookmarkedFolderIsListedToo();
    void aFolderThatCannotBeListedIsToldAndLeftOut();
    void aFolderThatGoesWhileItIsListedIsToldOnce();
    void aFolderThatCannotBeEnteredTellsOfEachFile();
    void aBookmarkThatCannotBeResolvedIsToldAndLeftOut();
    void aStaleBookmarkIsFollowedAndReplaced();
    void accessIsGivenBack();
    void theManagerListsInTheBackground();
    void anOwnerThatIsGoneIsNotCalled();

private:
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<CapturedOutput> m_output;
};

void screenshotListingTest::init()
{
    m_home = std::make_unique<TemporaryHome>();
    m_output = std::make_unique<CapturedOutput>();
}

void screenshotListingTest::cleanup()
{
    waitForBackground();
    SecurityScopedAccess::keep(std::nullopt);
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
    m_output.reset();
    m_home.reset();
}

void screenshotListingTest::aRecordTellsPathNameDateAndSize()
{
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    files::write(path, "12345");
    const QList<ScreenshotItem> items = scan(m_home->desktop());
    QCOMPARE(items.size(), 1);
    const ScreenshotItem &item = items.constFirst();
    QCOMPARE(item.id, path);
    QCOMPARE(item.name(), QStringLiteral("Screenshot 1.png"));
    QCOMPARE(item.url(), QUrl::fromLocalFile(path));
    QCOMPARE(item.fileSize, 5);
    QVERIFY(item.creationDate >= before && item.creationDate <= QDateTime::currentDateTimeUtc());
    // A file that was restored or copied is as old as what is in it.
    files::makeOlder(path, 3600);
    QVERIFY(scan(m_home->desktop()).constFirst().creationDate < before);
}

void screenshotListingTest::aFileWithoutACreationDateHasTheMomentOfTheListing()
{
    // No file system here leaves both of a file's times out.
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const ScreenshotItem item = screenshotListing::record(
        QStringLiteral("/folder/Screenshot.png"), {.creationDate = {}, .size = 7, .isRegularFile = true});
    QVERIFY(item.creationDate >= before);
    QVERIFY(item.creationDate <= QDateTime::currentDateTimeUtc());
    QCOMPARE(item.creationDate.timeSpec(), Qt::UTC);
    QCOMPARE(item.fileSize, 7);
}

void screenshotListingTest::recordsAreEqualWhenEverythingIs()
{
    files::write(m_home->desktop() + QStringLiteral("/Screenshot 1.png"));
    const ScreenshotItem item = scan(m_home->desktop()).constFirst();
    QCOMPARE(scan(m_home->desktop()).constFirst(), item);
    ScreenshotItem other = item;
    other.id += u'x';
    QVERIFY(other != item);
    other = item;
    other.creationDate = other.creationDate.addMSecs(1);
    QVERIFY(other != item);
    other = item;
    ++other.fileSize;
    QVERIFY(other != item);
}

void screenshotListingTest::onlyScreenshotsAreListed()
{
    const QString desktop = m_home->desktop();
    for (const QString &name :
         {QStringLiteral("Screenshot 1.png"), QStringLiteral(".Screenshot 2.png"),
          QStringLiteral("notes.txt"), QStringLiteral("holiday.jpg"), QStringLiteral("Screenshot 3.pdf")}) {
        files::write(desktop + u'/' + name);
    }
    files::makeFolder(desktop + QStringLiteral("/sub"));
    files::write(desktop + QStringLiteral("/sub/Screenshot 4.png"));
    const QByteArray invalid = QFile::encodeName(desktop) + "/Screenshot \xff.png";
    const int descriptor = ::open(invalid.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    QVERIFY(descriptor >= 0);
    ::close(descriptor);
    const QStringList found = names(scan(desktop));
    QCOMPARE(::unlink(invalid.constData()), 0);
    QCOMPARE(found, QStringList{QStringLiteral("Screenshot 1.png")});
    QVERIFY(m_output->lines().isEmpty());
}

void screenshotListingTest::hostileNamesAreListedAsTheyAre()
{
    const QStringList hostile = {
        QStringLiteral("Screenshot <b>&amp;%20#?.png"), QStringLiteral("Screenshot two\nlines.png"),
        QStringLiteral("Screenshot \u05E9\u05D5\u05DC.png"),
        QStringLiteral("Screenshot %1.png").arg(QString(200, u'x'))};
    for (const QString &name : hostile) {
        files::write(m_home->desktop() + u'/' + name);
    }
    const QList<ScreenshotItem> items = scan(m_home->desktop());
    QStringList expected = hostile;
    expected.sort();
    QCOMPARE(sortedNames(items), expected);
    QVERIFY(std::ranges::all_of(
        items, [](const ScreenshotItem &item) { return files::exists(item.url().toLocalFile()); }));
}

void screenshotListingTest::theNewestComesFirst()
{
    const QString first = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    const QString second = m_home->pictures() + QStringLiteral("/Screenshot 2.png");
    const QString third = m_home->downloads() + QStringLiteral("/Screenshot 3.png");
    for (const QString &path : {first, second, third}) {
        files::write(path);
    }
    files::makeOlder(first, 100);
    files::makeOlder(third, 50);
    QCOMPARE(
        names(load()), (QStringList{
                           QStringLiteral("Screenshot 2.png"), QStringLiteral("Screenshot 3.png"),
                           QStringLiteral("Screenshot 1.png")}));
}

void screenshotListingTest::filesOfOneDateAreAllThere()
{
    timespec moment[] = {{.tv_sec = 1'700'000'000, .tv_nsec = 0}, {.tv_sec = 1'700'000'000, .tv_nsec = 0}};
    for (int index = 0; index < 50; ++index) {
        const QString path = m_home->desktop() + QStringLiteral("/Screenshot %1.png").arg(index);
        files::write(path);
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), moment, 0), 0);
    }
    QStringList found = names(load());
    QCOMPARE(found.size(), 50);
    QCOMPARE(found.removeDuplicates(), 0);
}

void screenshotListingTest::aFolderIsListedOnce_data()
{
    QTest::addColumn<QList<SearchPathDirectory>>("directories");
    QTest::newRow("bookmarked and standard") << QList{SearchPathDirectory::Desktop};
    QTest::newRow("asked for twice") << QList{SearchPathDirectory::Desktop, SearchPathDirectory::Desktop};
    QTest::newRow("bookmarked alone") << QList<SearchPathDirectory>();
}

void screenshotListingTest::aFolderIsListedOnce()
{
    QFETCH(const QList<SearchPathDirectory>, directories);
    files::write(m_home->desktop() + QStringLiteral("/Screenshot 1.png"));
    bookmark(m_home->desktop());
    QCOMPARE(load(directories).size(), 1);
}

void screenshotListingTest::theBookmarkedFolderIsListedToo()
{
    const QString archive = m_home->path() + QStringLiteral("/Archive");
    files::makeFolder(archive);
    files::write(archive + QStringLiteral("/Screenshot 1.png"));
    files::write(m_home->desktop() + QStringLiteral("/Screenshot 2.png"));
    bookmark(archive);
    QCOMPARE(
        sortedNames(load()),
        (QStringList{QStringLiteral("Screenshot 1.png"), QStringLiteral("Screenshot 2.png")}));
}

void screenshotListingTest::aFolderThatCannotBeListedIsToldAndLeftOut()
{
    files::write(m_home->pictures() + QStringLiteral("/Screenshot 1.png"));
    QVERIFY(QDir().rmdir(m_home->desktop()));
    QCOMPARE(names(load()), QStringList{QStringLiteral("Screenshot 1.png")});
    QCOMPARE(
        m_output->lines(),
        QStringList{
            QStringLiteral("Error accessing directory ") + m_home->desktop() +
            QStringLiteral(": Error Domain=NSCocoaErrorDomain Code=4 \"No such file or directory\"")});
}

void screenshotListingTest::aFolderThatGoesWhileItIsListedIsToldOnce()
{
    const QString stays = QStringLiteral("Screenshot that stays.png");
    files::write(m_home->pictures() + u'/' + stays);
    constexpr qsizetype inFolder = 500;
    for (qsizetype number = 0; number < inFolder; ++number) {
        files::write(m_home->downloads() + QStringLiteral("/Screenshot %1.png").arg(number));
    }
    // Away before it is listed, between its names and their attributes, or after all.
    std::jthread mover([folder = QFile::encodeName(m_home->downloads())](const std::stop_token &stop) {
        const QByteArray elsewhere = folder + "-elsewhere";
        while (!stop.stop_requested()) {
            ::rename(folder.constData(), elsewhere.constData());
            ::rename(elsewhere.constData(), folder.constData());
        }
    });
    constexpr int rounds = 200;
    for (int round = 0; round < rounds; ++round) {
        const qsizetype linesBefore = m_output->lines().size();
        const QList<ScreenshotItem> items = load();
        const bool isGone = items.size() == 1;
        QVERIFY(isGone || items.size() == 1 + inFolder);
        QVERIFY(names(items).contains(stays));
        QCOMPARE(m_output->lines().size() - linesBefore, isGone ? 1 : 0);
    }
}

void screenshotListingTest::aFolderThatCannotBeEnteredTellsOfEachFile()
{
    if (::geteuid() == 0) {
        QSKIP("Root may enter every folder");
    }
    files::write(m_home->desktop() + QStringLiteral("/Screenshot 1.png"));
    const QByteArray folder = QFile::encodeName(m_home->desktop());
    QCOMPARE(::chmod(folder.constData(), 0400), 0);
    const QList<ScreenshotItem> items = load();
    QCOMPARE(::chmod(folder.constData(), 0700), 0);
    QVERIFY(items.isEmpty());
    QCOMPARE(
        m_output->lines(),
        QStringList{QStringLiteral("Error reading file attributes for Screenshot 1.png: Error "
                                   "Domain=NSCocoaErrorDomain Code=257 \"Permission denied\"")});
}

void screenshotListingTest::aBookmarkThatCannotBeResolvedIsToldAndLeftOut()
{
    files::write(m_home->desktop() + QStringLiteral("/Screenshot 1.png"));
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, "no bookmark");
    QCOMPARE(load().size(), 1);
    QCOMPARE(
        m_output->lines(), QStringList{QStringLiteral("Error using bookmark: Error Domain="
                                                      "DeskbroomBookmarkErrorDomain Code=1 \"The bookmark is "
                                                      "damaged\"")});
}

void screenshotListingTest::aStaleBookmarkIsFollowedAndReplaced()
{
    const QString archive = m_home->path() + QStringLiteral("/Archive");
    const QString renamed = m_home->path() + QStringLiteral("/Renamed");
    files::makeFolder(archive);
    files::write(archive + QStringLiteral("/Screenshot 1.png"));
    bookmark(archive);
    files::rename(archive, renamed);
    QCOMPARE(load().size(), 1);
    QCOMPARE(m_output->lines(), QStringList{QStringLiteral("Refreshed stale bookmark for: ") + renamed});
    QCOMPARE(load().constFirst().id, renamed + QStringLiteral("/Screenshot 1.png"));
    QCOMPARE(m_output->lines().size(), 1);
}

void screenshotListingTest::accessIsGivenBack()
{
    bookmark(m_home->desktop());
    QVERIFY(load().isEmpty());
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

void screenshotListingTest::theManagerListsInTheBackground()
{
    NotificationManager::shared();
    files::write(m_home->desktop() + QStringLiteral("/Screenshot 1.png"));
    const FileAccessManager manager;
    QObject owner;
    QList<ScreenshotItem> found;
    manager.loadScreenshots(
        everywhere, &owner, [&found](const QList<ScreenshotItem> &items) { found = items; });
    QVERIFY(found.isEmpty());
    QTRY_COMPARE(found.size(), 1);
}

void screenshotListingTest::anOwnerThatIsGoneIsNotCalled()
{
    const FileAccessManager manager;
    auto owner = std::make_unique<QObject>();
    bool isCalled = false;
    manager.loadScreenshots({}, owner.get(), [&isCalled](const QList<ScreenshotItem> &) { isCalled = true; });
    owner.reset();
    background::pool(BackgroundQueue::Listing).waitForDone();
    QCoreApplication::sendPostedEvents();
    QVERIFY(!isCalled);
}

QTEST_MAIN(screenshotListingTest)
#include "screenshotListingTest.moc"
