#include "ScreenshotManager.h"
#include "Bookmark.h"
#include "CapturedOutput.h"
#include "GioLeak.h"
#include "NotificationCenter.h"
#include "Preferences.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "files.h"
#include "runInBackground.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <limits>

namespace {

constexpr int patience = 15'000;

} // namespace

/// Real files and the real Trash of a temporary home.
class ScreenshotManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aDeletedScreenshotIsInTheTrash();
    void aDelayOfZeroDeletesOnTheNextTurn();
    void aNegativeDelayDeletesOnTheNextTurn();
    void theDelayIsPrintedWithItsPlural_data();
    void theDelayIsPrintedWithItsPlural();
    void schedulingAgainReplacesTheFirstSchedule();
    void aCancelledDeletionKeepsTheFile();
    void cancellingNothingDoesNothing();
    void deletingAtOnceClearsThePendingDeletion();
    void deletingAtOnceTrashesTheFileOnlyOnce();
    void aMissingFileIsPrintedAndPosted();
    void aFileInUseIsPrintedAndPosted();
    void aForbiddenFolderIsPrintedAndPosted();
    void whatLiesAtThePathIsDeletedEvenIfReplaced();
    void aSymbolicLinkIsDeletedAndNotItsTarget();
    void hostileNamesAreDeletedAndPrintedOnOneLine_data();
    void hostileNamesAreDeletedAndPrintedOnOneLine();
    void aReleasedManagerDeletesNothing();
    void anOverflowingDelayStopsTheProgram();
    void theClipboardSwitchIsReadOnce();
    void anImageIsCopiedWithItsOwnBytes();
    void aFileThatIsNoImageLeavesTheClipboard();
    void aCopyGoesOnWithoutItsBookmark();

private:
    [[nodiscard]] QString makeScreenshot(const QString &name = QStringLiteral("Screenshot 1.png")) const;

    [[nodiscard]] QString trashed(const QString &name) const { return m_home->trashedFiles() + u'/' + name; }

    /// One for all tests: GLib asks only once where the Trash is.
    const std::unique_ptr<TemporaryHome> m_home = std::make_unique<TemporaryHome>();
    std::unique_ptr<CapturedOutput> m_output;
    std::unique_ptr<ScreenshotManager> m_manager;
    std::unique_ptr<QObject> m_observer;
    QList<QVariantMap> m_failures;
};

void ScreenshotManagerTest::init()
{
    files::makeFolder(m_home->desktop());
    m_manager = std::make_unique<ScreenshotManager>();
    m_observer = std::make_unique<QObject>();
    m_failures.clear();
    NotificationCenter::defaultCenter().addObserver(
        ScreenshotManager::screenshotDeletionFailed, m_observer.get(),
        [this](const ProcessNotification &notification) { m_failures.append(notification.userInfo); });
    m_output = std::make_unique<CapturedOutput>();
}

void ScreenshotManagerTest::cleanup()
{
    background::pool(BackgroundQueue::Default).waitForDone();
    m_output.reset();
    m_manager.reset();
    m_observer.reset();
    for (const QString &folder :
         {QStringLiteral("/Desktop"), QStringLiteral("/.local/share/Trash"),
          QStringLiteral("/.config/Deskbroom")}) {
        QDir(m_home->path() + folder).removeRecursively();
    }
}

QString ScreenshotManagerTest::makeScreenshot(const QString &name) const
{
    const QString path = m_home->desktop() + u'/' + name;
    files::write(path);
    return path;
}

void ScreenshotManagerTest::aDeletedScreenshotIsInTheTrash()
{
    const QString path = makeScreenshot();
    m_manager->performDeletion(path);
    QTRY_VERIFY_WITH_TIMEOUT(
        m_output->contains(QStringLiteral("Screenshot moved to Trash: Screenshot 1.png")), patience);
    QVERIFY(!files::exists(path));
    QVERIFY(files::exists(trashed(QStringLiteral("Screenshot 1.png"))));
    QCOMPARE(m_failures.size(), 0);
}

void ScreenshotManagerTest::aDelayOfZeroDeletesOnTheNextTurn()
{
    const QString path = makeScreenshot();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(path, 0);
    QVERIFY(m_manager->hasPendingDeletion(path));
    QVERIFY(files::exists(path));
    QCOMPARE(
        m_output->lines(), QStringList(QStringLiteral("Scheduled deletion of Screenshot 1.png in 0 minute")));
    QVERIFY(finished.wait(patience));
    QVERIFY(!m_manager->hasPendingDeletion(path));
    QVERIFY(files::exists(trashed(QStringLiteral("Screenshot 1.png"))));
}

void ScreenshotManagerTest::aNegativeDelayDeletesOnTheNextTurn()
{
    const QString path = makeScreenshot();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(path, -5);
    QVERIFY(finished.wait(patience));
    QVERIFY(!files::exists(path));
}

void ScreenshotManagerTest::theDelayIsPrintedWithItsPlural_data()
{
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<QString>("ending");
    QTest::newRow("1 is singular") << qint64(1) << QStringLiteral("1 minute");
    QTest::newRow("2 is plural") << qint64(2) << QStringLiteral("2 minutes");
    QTest::newRow("60") << qint64(60) << QStringLiteral("60 minutes");
    QTest::newRow("beyond the toolkit's 24 days") << qint64(100'000) << QStringLiteral("100000 minutes");
}

void ScreenshotManagerTest::theDelayIsPrintedWithItsPlural()
{
    QFETCH(const qint64, minutes);
    QFETCH(const QString, ending);
    m_manager->scheduleDeletion(makeScreenshot(), minutes);
    QCOMPARE(
        m_output->lines(),
        QStringList(QString(QStringLiteral("Scheduled deletion of Screenshot 1.png in ") + ending)));
}

void ScreenshotManagerTest::schedulingAgainReplacesTheFirstSchedule()
{
    const QString path = makeScreenshot();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(path, 5);
    m_manager->scheduleDeletion(path, 0);
    QCOMPARE(m_manager->pendingDeletionCount(), size_t(1));
    QVERIFY(finished.wait(patience));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(m_manager->pendingDeletionCount(), size_t(0));

    // The other way round the earlier deadline is gone.
    const QString other = makeScreenshot(QStringLiteral("Screenshot 2.png"));
    m_manager->scheduleDeletion(other, 0);
    m_manager->scheduleDeletion(other, 5);
    m_manager->scheduleDeletion(makeScreenshot(QStringLiteral("Screenshot 3.png")), 0);
    QVERIFY(finished.wait(patience));
    QVERIFY(files::exists(other));
    QVERIFY(m_manager->hasPendingDeletion(other));
}

void ScreenshotManagerTest::aCancelledDeletionKeepsTheFile()
{
    const QString path = makeScreenshot();
    m_manager->scheduleDeletion(path, 0);
    m_manager->cancelDeletion(path);
    QCOMPARE(m_manager->pendingDeletionCount(), size_t(0));
    // One that was scheduled later is through, so the cancelled one would be too.
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(makeScreenshot(QStringLiteral("Screenshot 2.png")), 0);
    QVERIFY(finished.wait(patience));
    QVERIFY(files::exists(path));
}

void ScreenshotManagerTest::cancellingNothingDoesNothing()
{
    m_manager->cancelDeletion(QStringLiteral("/nowhere/Screenshot 1.png"));
    QCOMPARE(m_manager->pendingDeletionCount(), size_t(0));
    QCOMPARE(m_output->lines(), QStringList());
}

void ScreenshotManagerTest::deletingAtOnceClearsThePendingDeletion()
{
    const QString path = makeScreenshot();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(path, 5);
    m_manager->performDeletion(path);
    QVERIFY(m_manager->hasPendingDeletion(path));
    QVERIFY(finished.wait(patience));
    QCOMPARE(m_manager->pendingDeletionCount(), size_t(0));
    QVERIFY(files::exists(trashed(QStringLiteral("Screenshot 1.png"))));
}

void ScreenshotManagerTest::deletingAtOnceTrashesTheFileOnlyOnce()
{
    const QString path = makeScreenshot();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(path, 5);
    m_manager->performDeletion(path);
    QVERIFY(finished.wait(patience));
    // A new file of that name is none of the old schedule's business.
    files::write(path);
    m_manager->scheduleDeletion(makeScreenshot(QStringLiteral("Screenshot 2.png")), 0);
    QVERIFY(finished.wait(patience));
    QVERIFY(files::exists(path));
    QCOMPARE(m_output->count(QStringLiteral("Screenshot moved to Trash: Screenshot 1.png")), 1);
}

void ScreenshotManagerTest::aMissingFileIsPrintedAndPosted()
{
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    m_manager->performDeletion(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_failures.size(), 1, patience);
    const QString text = QStringLiteral("Screenshot 'Screenshot 1.png' no longer exists");
    QCOMPARE(
        m_failures.constFirst(),
        (QVariantMap{{QStringLiteral("error"), text}, {QStringLiteral("path"), path}}));
    QCOMPARE(m_output->lines(), QStringList(QString(QStringLiteral("Failed to delete screenshot: ") + text)));
}

void ScreenshotManagerTest::aFileInUseIsPrintedAndPosted()
{
    const QString path = makeScreenshot();
    QFile writer(path);
    QVERIFY(writer.open(QIODevice::ReadWrite));
    m_manager->performDeletion(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_failures.size(), 1, patience);
    QCOMPARE(
        m_failures.constFirst().value(QStringLiteral("error")),
        QVariant(QStringLiteral("File is currently in use")));
    QVERIFY(files::exists(path));
}

void ScreenshotManagerTest::aForbiddenFolderIsPrintedAndPosted()
{
    if (::geteuid() == 0) {
        QSKIP("Nothing is forbidden to root");
    }
    const QString path = makeScreenshot();
    QVERIFY(::chmod(m_home->desktop().toUtf8().constData(), 0500) == 0);
    m_manager->performDeletion(path);
    QTRY_COMPARE_WITH_TIMEOUT(m_failures.size(), 1, patience);
    ::chmod(m_home->desktop().toUtf8().constData(), 0700);
    QCOMPARE(
        m_output->lines(),
        QStringList(QStringLiteral("Failed to delete screenshot: Permission denied - check file access")));
    QVERIFY(files::exists(path));
}

void ScreenshotManagerTest::whatLiesAtThePathIsDeletedEvenIfReplaced()
{
    const QString path = makeScreenshot();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(path, 0);
    files::remove(path);
    files::write(path, "another file");
    QVERIFY(finished.wait(patience));
    QFile inTrash(trashed(QStringLiteral("Screenshot 1.png")));
    QVERIFY(inTrash.open(QIODevice::ReadOnly));
    QCOMPARE(inTrash.readAll(), QByteArray("another file"));
}

void ScreenshotManagerTest::aSymbolicLinkIsDeletedAndNotItsTarget()
{
    const QString target = m_home->path() + QStringLiteral("/target");
    files::write(target);
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    QVERIFY(QFile::link(target, path));
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->performDeletion(path);
    QVERIFY(finished.wait(patience));
    QVERIFY(files::exists(target));
    QVERIFY(!files::exists(path));
}

void ScreenshotManagerTest::hostileNamesAreDeletedAndPrintedOnOneLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("printed");
    QTest::newRow("a line break") << QStringLiteral("Screenshot 1\n2.png")
                                  << QStringLiteral("Screenshot 1\\n2.png");
    QTest::newRow("markup") << QStringLiteral("Screenshot <b>&amp;.png")
                            << QStringLiteral("Screenshot <b>&amp;.png");
    QTest::newRow("right to left") << QStringLiteral("Screenshot \u202Egnp.png")
                                   << QStringLiteral("Screenshot \\u202egnp.png");
    QTest::newRow("percent and hash")
        << QStringLiteral("Screenshot 100%#?.png") << QStringLiteral("Screenshot 100%#?.png");
    const QString longest = QStringLiteral("Screenshot ") + QString(240, u'x') + QStringLiteral(".png");
    QTest::newRow("255 bytes") << longest << longest;
}

void ScreenshotManagerTest::hostileNamesAreDeletedAndPrintedOnOneLine()
{
    QFETCH(const QString, name);
    QFETCH(const QString, printed);
    const QString path = makeScreenshot(name);
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->performDeletion(path);
    QVERIFY(finished.wait(patience));
    QCOMPARE(
        m_output->lines(), QStringList(QString(QStringLiteral("Screenshot moved to Trash: ") + printed)));
    QVERIFY(!files::exists(path));
}

void ScreenshotManagerTest::aReleasedManagerDeletesNothing()
{
    const QString path = makeScreenshot();
    m_manager->scheduleDeletion(path, 0);
    m_manager = std::make_unique<ScreenshotManager>();
    QSignalSpy finished(m_manager.get(), &ScreenshotManager::didFinishDeletion);
    m_manager->scheduleDeletion(makeScreenshot(QStringLiteral("Screenshot 2.png")), 0);
    QVERIFY(finished.wait(patience));
    QVERIFY(files::exists(path));
}

void ScreenshotManagerTest::anOverflowingDelayStopsTheProgram()
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDERR_FILENO);
        m_manager->scheduleDeletion(QStringLiteral("/Screenshot 1.png"), std::numeric_limits<qint64>::max());
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

void ScreenshotManagerTest::theClipboardSwitchIsReadOnce()
{
    QVERIFY(!m_manager->autoCopyToClipboard());
    UserDefaults::standard().setBoolean(preferences::autoCopyToClipboard, true);
    QVERIFY(!m_manager->autoCopyToClipboard());
    const ScreenshotManager atNextLaunch;
    QVERIFY(atNextLaunch.autoCopyToClipboard());
}

void ScreenshotManagerTest::anImageIsCopiedWithItsOwnBytes()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    QVERIFY(image.save(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));

    m_manager->copyToClipboard(path);
    QCOMPARE(
        m_output->lines(), QStringList(QStringLiteral("Copied screenshot to clipboard: Screenshot 1.png")));
    const QMimeData *const contents = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(contents->data(QStringLiteral("image/png")), file.readAll());
    QVERIFY(!contents->hasText());
    QVERIFY(!contents->hasUrls());
}

void ScreenshotManagerTest::aFileThatIsNoImageLeavesTheClipboard()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("what was there"));
    const QString path = makeScreenshot();
    m_manager->copyToClipboard(path);
    QCOMPARE(
        m_output->lines(),
        QStringList(QString(QStringLiteral("Failed to load screenshot image from ") + path)));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("what was there"));
}

void ScreenshotManagerTest::aCopyGoesOnWithoutItsBookmark()
{
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, "not a bookmark");
    const auto error = Bookmark::resolve("not a bookmark");
    QVERIFY(!error);
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = m_home->desktop() + QStringLiteral("/Screenshot 1.png");
    QVERIFY(image.save(path));
    m_manager->copyToClipboard(path);
    QCOMPARE(
        m_output->lines(),
        QStringList({
            QStringLiteral("Failed to resolve Desktop bookmark: ") + error.error().description(),
            QStringLiteral("Copied screenshot to clipboard: Screenshot 1.png"),
        }));
}

QTEST_MAIN(ScreenshotManagerTest)
#include "ScreenshotManagerTest.moc"
