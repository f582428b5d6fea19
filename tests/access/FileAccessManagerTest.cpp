#include "FileAccessFixture.h"

#include <QCryptographicHash>
#include <QDir>

#include <unistd.h>

/// What a manager does by itself, from its making on.
class FileAccessManagerTest final : public FileAccessFixture {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aListableDesktopGetsABookmarkAndHeldAccess();
    void withABookmarkItIsMadeAnewAndStartingAgainDoesNothing();
    void aDesktopThatCannotBeLocatedIsTold();
    void aDesktopThatCannotBeListedIsTold_data();
    void aDesktopThatCannotBeListedIsTold();
    void aDesktopThatCannotBeEnteredIsNotHeld();
    void withoutABookmarkStartingDoesNothingAndPrintsNothing();
    void aDamagedBookmarkIsReplacedWhereTheDesktopCanBeListed();
    void aDamagedBookmarkHoldsNothingWhereItCannot();
    void aBookmarkOfANewerVersionHoldsNothing();
    void aStaleBookmarkGrantsAccessAndIsReplaced();
    void stoppingIsPrintedEachTime();
    void validAccessNeedsABookmark();
    void validAccessCountsHiddenEntriesToo();
    void validAccessEndsWithTheFolder();
    void validAccessFollowsAFolderThatMovedWhileHeld();
    void validAccessNeedsPermission();
};

void FileAccessManagerTest::initTestCase()
{
    prepare();
}

void FileAccessManagerTest::init()
{
    makeHome();
}

void FileAccessManagerTest::cleanup()
{
    removeHome();
}

void FileAccessManagerTest::aListableDesktopGetsABookmarkAndHeldAccess()
{
    restart();
    const QString desktop = m_home->desktop();
    QCOMPARE(
        m_output->lines(), (QStringList{
                               QStringLiteral("Requesting access to Desktop folder at: ") + desktop,
                               QStringLiteral("Desktop folder access granted"),
                               QStringLiteral("Successfully created bookmark for: ") + desktop,
                               QStringLiteral("Persistent Desktop access stopped"),
                               QStringLiteral("Persistent Desktop access started: ") + desktop,
                           }));
    QCOMPARE(bookmarkedFolder(), fileUrl(desktop));
    QCOMPARE(Bookmark::origin(*currentBookmark()), Bookmark::Origin::Automatic);
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(desktop));
    QCOMPARE(SecurityScopedAccess::keptUrl(), fileUrl(desktop));
    QVERIFY(m_server->notifications().isEmpty());
}

void FileAccessManagerTest::withABookmarkItIsMadeAnewAndStartingAgainDoesNothing()
{
    restart();
    // Another folder of the same name, so that a bookmark that wasn't made anew would be stale.
    files::rename(m_home->desktop(), m_home->pictures() + QStringLiteral("/old"));
    files::makeFolder(m_home->desktop());
    restart();
    const auto resolved = Bookmark::resolve(*currentBookmark());
    QVERIFY(resolved && !resolved->isStale);
    const qsizetype before = m_output->lines().size();
    m_manager->startPersistentAccess();
    QCOMPARE(m_output->lines().size(), before);
    QCOMPARE(m_output->count(QStringLiteral("Persistent Desktop access started: ") + m_home->desktop()), 1);
}

void FileAccessManagerTest::aDesktopThatCannotBeLocatedIsTold()
{
    files::makeFolder(m_home->path() + QStringLiteral("/.config"));
    files::write(m_home->path() + QStringLiteral("/.config/user-dirs.dirs"), "XDG_DESKTOP_DIR=\"$HOME\"\n");
    restart();
    QCOMPARE(m_output->lines(), QStringList{QStringLiteral("Error: Could not locate Desktop directory")});
    QTRY_VERIFY(isTold(
        QStringLiteral("Access Failed"),
        QStringLiteral("Could not access the selected folder. Could not locate Desktop directory")));
    QVERIFY(!currentBookmark());
}

void FileAccessManagerTest::aDesktopThatCannotBeListedIsTold_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("message");
    const QString notFound = QStringLiteral("Desktop folder not found");
    QTest::newRow("missing") << QStringLiteral("missing") << notFound;
    QTest::newRow("a file") << QStringLiteral("file") << notFound;
    QTest::newRow("a link that leads nowhere") << QStringLiteral("dangling") << notFound;
    QTest::newRow("a link to itself")
        << QStringLiteral("loop") << QStringLiteral("File system error: Too many levels of symbolic links");
    QTest::newRow("unreadable") << QStringLiteral("unreadable")
                                << QStringLiteral(
                                       "Permission denied - please grant folder access in System Settings");
}

void FileAccessManagerTest::aDesktopThatCannotBeListedIsTold()
{
    QFETCH(const QString, kind);
    QFETCH(const QString, message);
    const QString desktop = m_home->desktop();
    if (kind == QStringLiteral("unreadable")) {
        if (::geteuid() == 0) {
            QSKIP("Root may read every folder");
        }
        setMode(desktop, 0);
    } else {
        QVERIFY(QDir().rmdir(desktop));
    }
    if (kind == QStringLiteral("file")) {
        files::write(desktop);
    } else if (kind == QStringLiteral("dangling")) {
        QVERIFY(QFile::link(m_home->path() + QStringLiteral("/nowhere"), desktop));
    } else if (kind == QStringLiteral("loop")) {
        QVERIFY(QFile::link(desktop, desktop));
    }
    restart();
    QCOMPARE(
        m_output->lines(), (QStringList{
                               QStringLiteral("Requesting access to Desktop folder at: ") + desktop,
                               QStringLiteral("Error accessing Desktop folder: ") + message,
                           }));
    QTRY_VERIFY(isTold(
        QStringLiteral("Desktop Folder Access Required"),
        QStringLiteral("Deskbroom needs access to your Desktop folder. Click to open System Settings.")));
    QVERIFY(!currentBookmark());
    QVERIFY(!m_manager->persistentAccessUrl());
}

void FileAccessManagerTest::aDesktopThatCannotBeEnteredIsNotHeld()
{
    if (::geteuid() == 0) {
        QSKIP("Root may enter every folder");
    }
    setMode(m_home->desktop(), 0400);
    restart();
    // Each of the two starts finds it so.
    QCOMPARE(
        m_output->count(
            QStringLiteral("startAccessingSecurityScopedResource returned false for Desktop bookmark")),
        2);
    QVERIFY(currentBookmark());
    QVERIFY(!m_manager->persistentAccessUrl());
}

void FileAccessManagerTest::withoutABookmarkStartingDoesNothingAndPrintsNothing()
{
    QVERIFY(QDir().rmdir(m_home->desktop()));
    restart();
    const QStringList before = m_output->lines();
    m_manager->startPersistentAccess();
    QCOMPARE(m_output->lines(), before);
    QVERIFY(!m_manager->persistentAccessUrl());
}

void FileAccessManagerTest::aDamagedBookmarkIsReplacedWhereTheDesktopCanBeListed()
{
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, "no bookmark");
    restart();
    QCOMPARE(bookmarkedFolder(), fileUrl(m_home->desktop()));
    QVERIFY(m_manager->persistentAccessUrl());
}

void FileAccessManagerTest::aDamagedBookmarkHoldsNothingWhereItCannot()
{
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, "no bookmark");
    QVERIFY(QDir().rmdir(m_home->desktop()));
    restart();
    QCOMPARE(
        m_output->lines().constLast(),
        QStringLiteral("Failed to start persistent Desktop access: Error Domain=DeskbroomBookmarkErrorDomain "
                       "Code=1 \"The bookmark is damaged\""));
    QVERIFY(!m_manager->persistentAccessUrl());
    QVERIFY(!m_manager->hasValidAccess());
}

void FileAccessManagerTest::aBookmarkOfANewerVersionHoldsNothing()
{
    QByteArray content = Bookmark::make(fileUrl(m_home->desktop()), Bookmark::Origin::Automatic)->chopped(32);
    content[5] = 2;
    const QByteArray newer = content + QCryptographicHash::hash(content, QCryptographicHash::Sha256);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, newer);
    QVERIFY(QDir().rmdir(m_home->desktop()));
    restart();
    QVERIFY(m_output->lines().constLast().contains(QStringLiteral("Code=2")));
    QVERIFY(!m_manager->persistentAccessUrl());
    QCOMPARE(currentBookmark(), newer);
}

void FileAccessManagerTest::aStaleBookmarkGrantsAccessAndIsReplaced()
{
    restart();
    const QString renamed = m_home->path() + QStringLiteral("/Schreibtisch");
    files::rename(m_home->desktop(), renamed);
    restart();
    QCOMPARE(
        m_output->lines(), (QStringList{
                               QStringLiteral("Requesting access to Desktop folder at: ") + m_home->desktop(),
                               QStringLiteral("Error accessing Desktop folder: Desktop folder not found"),
                               QStringLiteral("Refreshed stale bookmark for: ") + renamed,
                               QStringLiteral("Persistent Desktop access started: ") + renamed,
                           }));
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(renamed));
    const auto resolved = Bookmark::resolve(*currentBookmark());
    QVERIFY(resolved && !resolved->isStale);
    QCOMPARE(resolved->url, fileUrl(renamed));
}

void FileAccessManagerTest::stoppingIsPrintedEachTime()
{
    restart();
    m_manager->stopPersistentAccess();
    QVERIFY(!m_manager->persistentAccessUrl());
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
    m_manager->stopPersistentAccess();
    QCOMPARE(m_output->count(QStringLiteral("Persistent Desktop access stopped")), 3);
}

void FileAccessManagerTest::validAccessNeedsABookmark()
{
    QVERIFY(QDir().rmdir(m_home->desktop()));
    restart();
    const QStringList before = m_output->lines();
    QVERIFY(!m_manager->hasValidAccess());
    QCOMPARE(m_output->lines(), before);
}

void FileAccessManagerTest::validAccessCountsHiddenEntriesToo()
{
    files::write(m_home->desktop() + QStringLiteral("/.hidden"));
    files::write(m_home->desktop() + QStringLiteral("/shown"));
    restart();
    QVERIFY(m_manager->hasValidAccess());
    QCOMPARE(
        m_output->lines().constLast(),
        QStringLiteral("Successfully accessed 2 files in ") + m_home->desktop());
    QCOMPARE(SecurityScopedAccess::activeCount(), 1);
}

void FileAccessManagerTest::validAccessEndsWithTheFolder()
{
    restart();
    QVERIFY(QDir().rmdir(m_home->desktop()));
    QVERIFY(!m_manager->hasValidAccess());
    QCOMPARE(
        m_output->lines().constLast(),
        QStringLiteral("Error verifying access: Error Domain=NSCocoaErrorDomain "
                       "Code=4 \"No such file or directory\""));
}

void FileAccessManagerTest::validAccessFollowsAFolderThatMovedWhileHeld()
{
    restart();
    const QString moved = m_home->pictures() + QStringLiteral("/moved");
    files::rename(m_home->desktop(), moved);
    QVERIFY(m_manager->hasValidAccess());
    QVERIFY(m_output->contains(QStringLiteral("Refreshed stale bookmark for: ") + moved));
    QCOMPARE(bookmarkedFolder(), fileUrl(moved));
}

void FileAccessManagerTest::validAccessNeedsPermission()
{
    if (::geteuid() == 0) {
        QSKIP("Root may read every folder");
    }
    restart();
    setMode(m_home->desktop(), 0100);
    QVERIFY(!m_manager->hasValidAccess());
    QCOMPARE(
        m_output->lines().constLast(), QStringLiteral("Could not start accessing security-scoped resource"));
}

QTEST_MAIN(FileAccessManagerTest)
#include "FileAccessManagerTest.moc"
