#include "FileAccessManager.h"

#include "Bookmark.h"
#include "CapturedOutput.h"
#include "NotificationCenter.h"
#include "NotificationManager.h"
#include "Preferences.h"
#include "RecordingNotificationServer.h"
#include "SecurityScopedAccess.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"
#include "storedBookmark.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

namespace {

constexpr int patience = 15'000;

QUrl fileUrl(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

void setMode(const QString &path, mode_t mode)
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

std::optional<QByteArray> currentBookmark()
{
    return UserDefaults::standard().data(preferences::desktopFolderBookmark);
}

QUrl bookmarkedFolder()
{
    return Bookmark::resolve(currentBookmark().value_or(QByteArray()))
        .value_or(Bookmark::ResolvedBookmark{})
        .url;
}

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::AllEntries).size();
}

QFileDialog *picker()
{
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QFileDialog *>(window); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

} // namespace

/// Managers that are made one after the other, as the program's runs are, with real folders, preferences and
/// a notification server that records.
class FileAccessManagerTest final : public QObject {
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
    void aPickedFolderIsTakenOver();
    void aPickedFolderKeepsTheRoleAfterARestart();
    void aRenamedPickedFolderKeepsTheRole();
    void aPickedFolderOnADriveThatIsAwayStaysPicked();
    void aPickedFolderThatRefusesIsTold();
    void aPickedFolderThatIsGoneIsTold();
    void hostileFolderNamesAreTakenOver_data();
    void hostileFolderNamesAreTakenOver();
    void validAccessNeedsABookmark();
    void validAccessCountsHiddenEntriesToo();
    void validAccessEndsWithTheFolder();
    void validAccessFollowsAFolderThatMovedWhileHeld();
    void validAccessNeedsPermission();
    void thePickerHasItsWords();
    void acceptingThePickerTakesTheFolderOver();
    void cancellingThePickerChangesNothing();
    void askingAgainReplacesThePicker();
    void ofSeveralPicksInARowTheLastCounts();
    void aPickIsNotOvertakenByARefreshOfTheFolderBefore();
    void aFolderInTheTrashIsNoLongerTheFolder();
    void aHundredGrantsLeakNothing();

private:
    void restart();

    void endWithoutStopping() { m_manager.reset(); }

    void pick(const QString &folder);
    [[nodiscard]] QString makeFolder(const QString &name) const;
    [[nodiscard]] bool isTold(const QString &title, const QString &body) const;

    const std::unique_ptr<TemporaryHome> m_home = std::make_unique<TemporaryHome>();
    std::unique_ptr<RecordingNotificationServer> m_server;
    std::unique_ptr<CapturedOutput> m_output;
    std::unique_ptr<FileAccessManager> m_manager;
    int m_grants = 0;
};

void FileAccessManagerTest::initTestCase()
{
    NotificationManager::shared();
    NotificationCenter::defaultCenter().addObserver(
        FileAccessManager::folderAccessGranted, this, [this](const ProcessNotification &notification) {
            QVERIFY(notification.userInfo.isEmpty());
            ++m_grants;
        });
}

void FileAccessManagerTest::init()
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

void FileAccessManagerTest::cleanup()
{
    m_manager.reset();
    for (const BackgroundQueue queue : {BackgroundQueue::Default, BackgroundQueue::Listing}) {
        background::pool(queue).waitForDone();
    }
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

void FileAccessManagerTest::restart()
{
    m_manager.reset();
    SecurityScopedAccess::keep(std::nullopt);
    m_output.reset();
    m_output = std::make_unique<CapturedOutput>();
    m_manager = std::make_unique<FileAccessManager>();
}

void FileAccessManagerTest::pick(const QString &folder)
{
    const int before = m_grants;
    m_manager->handleSelectedFolder(fileUrl(folder));
    QTRY_COMPARE_WITH_TIMEOUT(m_grants, before + 1, patience);
}

QString FileAccessManagerTest::makeFolder(const QString &name) const
{
    const QString path = m_home->path() + u'/' + name;
    files::makeFolder(path);
    return path;
}

bool FileAccessManagerTest::isTold(const QString &title, const QString &body) const
{
    const auto shown = m_server->shown();
    return std::ranges::any_of(shown, [&](const RecordingNotificationServer::Notification &notification) {
        return notification.title == title && notification.body == body;
    });
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

void FileAccessManagerTest::aPickedFolderIsTakenOver()
{
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    files::write(archive + QStringLiteral("/one"));
    const qsizetype before = m_output->lines().size();
    pick(archive);
    QCOMPARE(
        m_output->lines().sliced(before), (QStringList{
                                              QStringLiteral("Successfully created bookmark for: ") + archive,
                                              QStringLiteral("Persistent Desktop access stopped"),
                                              QStringLiteral("Persistent Desktop access started: ") + archive,
                                              QStringLiteral("Successfully accessed 1 files in ") + archive,
                                          }));
    QTRY_VERIFY(isTold(
        QStringLiteral("Access Granted"),
        QStringLiteral("Deskbroom now has access to detect screenshots in Archive.")));
    QCOMPARE(bookmarkedFolder(), fileUrl(archive));
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(archive));
    QCOMPARE(SecurityScopedAccess::activeCount(), 1);
    QCOMPARE(FileManager::defaultManager().urls(SearchPathDirectory::Desktop), QList{fileUrl(archive)});
    QVERIFY(FileManager::defaultManager().isDesktopElsewhere());
}

void FileAccessManagerTest::aPickedFolderKeepsTheRoleAfterARestart()
{
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    pick(archive);
    restart();
    QCOMPARE(
        m_output->lines().constFirst(), QStringLiteral("Requesting access to Desktop folder at: ") + archive);
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(archive));
    QCOMPARE(Bookmark::origin(*currentBookmark()), Bookmark::Origin::PickedByUser);
    // Until another is picked, which may be the Desktop.
    pick(m_home->desktop());
    QVERIFY(!FileManager::defaultManager().isDesktopElsewhere());
    restart();
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(m_home->desktop()));
}

void FileAccessManagerTest::aRenamedPickedFolderKeepsTheRole()
{
    restart();
    pick(makeFolder(QStringLiteral("Archive")));
    const QString renamed = m_home->path() + QStringLiteral("/Renamed");
    files::rename(m_home->path() + QStringLiteral("/Archive"), renamed);
    restart();
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(renamed));
    QCOMPARE(Bookmark::pickedFolder(*currentBookmark()), fileUrl(renamed));
    QVERIFY(m_output->contains(QStringLiteral("Successfully created bookmark for: ") + renamed));
}

void FileAccessManagerTest::aPickedFolderOnADriveThatIsAwayStaysPicked()
{
    restart();
    const QString drive = makeFolder(QStringLiteral("drive"));
    pick(makeFolder(QStringLiteral("drive/Archive")));
    const auto bookmark = currentBookmark();
    const QString away = m_home->pictures() + QStringLiteral("/away");
    // Nothing of the run that held it helps to find it.
    endWithoutStopping();
    SecurityScopedAccess::keep(std::nullopt);
    files::rename(drive, away);
    restart();
    QVERIFY(m_output->contains(QStringLiteral("Error accessing Desktop folder: Desktop folder not found")));
    QCOMPARE(currentBookmark(), bookmark);
    files::rename(away, drive);
    restart();
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(drive + QStringLiteral("/Archive")));
}

void FileAccessManagerTest::aPickedFolderThatRefusesIsTold()
{
    if (::geteuid() == 0) {
        QSKIP("Root may read every folder");
    }
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    setMode(archive, 0);
    m_manager->handleSelectedFolder(fileUrl(archive));
    QTRY_VERIFY_WITH_TIMEOUT(
        isTold(
            QStringLiteral("Access Failed"),
            QStringLiteral("Could not access the selected folder. Could not verify folder access")),
        patience);
    QVERIFY(m_output->contains(QStringLiteral("Could not start accessing security-scoped resource")));
    QVERIFY(m_output->contains(
        QStringLiteral("startAccessingSecurityScopedResource returned false for Desktop bookmark")));
    QCOMPARE(m_grants, 0);
    QVERIFY(!m_manager->persistentAccessUrl());
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

void FileAccessManagerTest::aPickedFolderThatIsGoneIsTold()
{
    restart();
    const auto bookmark = currentBookmark();
    m_manager->handleSelectedFolder(fileUrl(m_home->path() + QStringLiteral("/gone")));
    QTRY_VERIFY_WITH_TIMEOUT(
        isTold(
            QStringLiteral("Access Failed"),
            QStringLiteral("Could not access the selected folder. No such file or directory")),
        patience);
    QCOMPARE(
        m_output->lines().constLast(),
        QStringLiteral("Error creating bookmark: Error Domain=NSCocoaErrorDomain "
                       "Code=4 \"No such file or directory\""));
    QCOMPARE(currentBookmark(), bookmark);
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(m_home->desktop()));
    QCOMPARE(m_grants, 0);
}

void FileAccessManagerTest::hostileFolderNamesAreTakenOver_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("told");
    QTest::newRow("markup") << QStringLiteral("<b>&amp;%20#?") << QStringLiteral("&lt;b&gt;&amp;amp;%20#?");
    QTest::newRow("right to left") << QStringLiteral("\u05E9\u05D5\u05DC\u05D7\u05DF")
                                   << QStringLiteral("\u05E9\u05D5\u05DC\u05D7\u05DF");
    QTest::newRow("200 characters") << QString(200, u'x') << QString(200, u'x');
}

void FileAccessManagerTest::hostileFolderNamesAreTakenOver()
{
    QFETCH(const QString, name);
    QFETCH(const QString, told);
    restart();
    const QString folder = makeFolder(name);
    pick(folder);
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(folder));
    QTRY_VERIFY(isTold(
        QStringLiteral("Access Granted"),
        QStringLiteral("Deskbroom now has access to detect screenshots in ") + told + u'.'));
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

void FileAccessManagerTest::thePickerHasItsWords()
{
    restart();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    QCOMPARE(picker()->windowTitle(), QStringLiteral("Select Desktop Folder"));
    QCOMPARE(
        picker()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->text(),
        QStringLiteral("Grant Access"));
    const auto labels = picker()->findChildren<QLabel *>();
    QVERIFY(std::ranges::any_of(labels, [](const QLabel *label) {
        return label->text() ==
               QStringLiteral("Please select your Desktop folder to grant access for screenshot detection");
    }));
    QCOMPARE(picker()->directoryUrl(), fileUrl(m_home->desktop()));
}

void FileAccessManagerTest::acceptingThePickerTakesTheFolderOver()
{
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    auto *const field = picker()->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    field->setText(archive);
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_grants, 1, patience);
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(archive));
}

void FileAccessManagerTest::cancellingThePickerChangesNothing()
{
    restart();
    const QStringList lines = m_output->lines();
    const auto bookmark = currentBookmark();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    QTest::keyClick(picker(), Qt::Key_Escape);
    QTRY_VERIFY(picker() == nullptr);
    background::pool(BackgroundQueue::Default).waitForDone();
    QCOMPARE(m_output->lines(), lines);
    QCOMPARE(currentBookmark(), bookmark);
    QVERIFY(m_server->notifications().isEmpty());
    QCOMPARE(m_grants, 0);
}

void FileAccessManagerTest::askingAgainReplacesThePicker()
{
    restart();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    const QPointer<QFileDialog> first = picker();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull() && picker() != nullptr, patience);
}

void FileAccessManagerTest::ofSeveralPicksInARowTheLastCounts()
{
    restart();
    QString last;
    for (int index = 0; index < 10; ++index) {
        last = makeFolder(QStringLiteral("Archive %1").arg(index));
        m_manager->handleSelectedFolder(fileUrl(last));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_grants, 1, patience);
    background::pool(BackgroundQueue::Default).waitForDone();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_grants, 1);
    QCOMPARE(bookmarkedFolder(), fileUrl(last));
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(last));
    QTRY_VERIFY(isTold(
        QStringLiteral("Access Granted"),
        QStringLiteral("Deskbroom now has access to detect screenshots in Archive 9.")));
}

void FileAccessManagerTest::aPickIsNotOvertakenByARefreshOfTheFolderBefore()
{
    restart();
    const QByteArray before = currentBookmark().value_or(QByteArray());
    files::rename(m_home->desktop(), m_home->path() + QStringLiteral("/Renamed"));
    // Whoever resolves the old one now has read it before the pick.
    const QString archive = makeFolder(QStringLiteral("Archive"));
    pick(archive);
    const auto picked = currentBookmark();
    QVERIFY(storedBookmark::resolve(preferences::desktopFolderBookmark, before));
    QCOMPARE(currentBookmark(), picked);
    QCOMPARE(bookmarkedFolder(), fileUrl(archive));
}

void FileAccessManagerTest::aFolderInTheTrashIsNoLongerTheFolder()
{
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    pick(archive);
    files::makeFolder(m_home->trashedFiles());
    files::rename(archive, m_home->trashedFiles() + QStringLiteral("/Archive"));
    QVERIFY(!m_manager->hasValidAccess());
    QCOMPARE(FileManager::defaultManager().urls(SearchPathDirectory::Desktop), QList{fileUrl(archive)});
}

void FileAccessManagerTest::aHundredGrantsLeakNothing()
{
    restart();
    const QString folders[] = {makeFolder(QStringLiteral("One")), makeFolder(QStringLiteral("Two"))};
    pick(folders[0]);
    const qsizetype descriptors = openDescriptors();
    for (int grant = 1; grant <= 100; ++grant) {
        pick(folders[grant % 2]);
    }
    QCOMPARE(SecurityScopedAccess::activeCount(), 1);
    QCOMPARE(openDescriptors(), descriptors);
}

QTEST_MAIN(FileAccessManagerTest)
#include "FileAccessManagerTest.moc"
