#include "SecurityScopedAccess.h"

#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace {

QUrl desktopUrl(const TemporaryHome &home)
{
    return QUrl::fromLocalFile(home.desktop());
}

} // namespace

class SecurityScopedAccessTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void everyStartIsBalancedByItsEnd();
    void movingHandsTheAccessOver();
    void assigningStopsWhatWasHeld();
    void threadsBalance();
    void notStartedOnWhatIsNoFolder();
    void notStartedWithoutPermission_data();
    void notStartedWithoutPermission();
    void knowsWhereTheFolderWent();
    void theKeptAccessLastsUntilAnotherTakesItsPlace();
    void theKeptAccessMayBeReadWhileItChanges();
    void aDriveCanBeEjectedWhileAFolderOnItIsKept();
};

void SecurityScopedAccessTest::cleanup()
{
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

void SecurityScopedAccessTest::everyStartIsBalancedByItsEnd()
{
    const TemporaryHome home;
    {
        const auto first = SecurityScopedAccess::start(desktopUrl(home));
        const auto second = SecurityScopedAccess::start(desktopUrl(home));
        QVERIFY(first && second);
        QCOMPARE(SecurityScopedAccess::activeCount(), 2);
    }
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

void SecurityScopedAccessTest::movingHandsTheAccessOver()
{
    const TemporaryHome home;
    auto first = SecurityScopedAccess::start(desktopUrl(home));
    {
        const SecurityScopedAccess second(std::move(*first));
        first.reset();
        QCOMPARE(SecurityScopedAccess::activeCount(), 1);
        QCOMPARE(second.currentUrl(), desktopUrl(home));
    }
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

void SecurityScopedAccessTest::assigningStopsWhatWasHeld()
{
    const TemporaryHome home;
    auto first = SecurityScopedAccess::start(desktopUrl(home));
    auto second = SecurityScopedAccess::start(QUrl::fromLocalFile(home.pictures()));
    *first = std::move(*second);
    QCOMPARE(SecurityScopedAccess::activeCount(), 1);
    QCOMPARE(first->currentUrl(), QUrl::fromLocalFile(home.pictures()));
}

void SecurityScopedAccessTest::threadsBalance()
{
    const TemporaryHome home;
    const QUrl url = desktopUrl(home);
    std::vector<std::jthread> threads;
    constexpr int threadCount = 4;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([url] {
            for (int round = 0; round < 500; ++round) {
                const auto access = SecurityScopedAccess::start(url);
            }
        });
    }
    threads.clear();
    QCOMPARE(SecurityScopedAccess::activeCount(), 0);
}

void SecurityScopedAccessTest::notStartedOnWhatIsNoFolder()
{
    const TemporaryHome home;
    QFile file(home.desktop() + QStringLiteral("/file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!SecurityScopedAccess::start(QUrl::fromLocalFile(file.fileName())));
    QVERIFY(!SecurityScopedAccess::start(QUrl::fromLocalFile(home.path() + QStringLiteral("/missing"))));
    QVERIFY(!SecurityScopedAccess::start(QUrl()));
    QVERIFY(!SecurityScopedAccess::start(QUrl(QStringLiteral("https://example.org/"))));
}

void SecurityScopedAccessTest::notStartedWithoutPermission_data()
{
    QTest::addColumn<uint>("mode");
    QTest::addColumn<bool>("isStarted");
    QTest::newRow("read and enter") << 0500U << true;
    QTest::newRow("read alone") << 0400U << false;
    QTest::newRow("enter alone") << 0100U << false;
    QTest::newRow("neither") << 0000U << false;
}

void SecurityScopedAccessTest::notStartedWithoutPermission()
{
    if (::geteuid() == 0) {
        QSKIP("Root may read every folder");
    }
    QFETCH(const uint, mode);
    QFETCH(const bool, isStarted);
    const TemporaryHome home;
    const QByteArray folder = QFile::encodeName(home.desktop());
    QCOMPARE(::chmod(folder.constData(), mode), 0);
    QCOMPARE(SecurityScopedAccess::start(desktopUrl(home)).has_value(), isStarted);
    QCOMPARE(::chmod(folder.constData(), 0700), 0);
}

void SecurityScopedAccessTest::knowsWhereTheFolderWent()
{
    const TemporaryHome home;
    const auto access = SecurityScopedAccess::start(desktopUrl(home));
    const QString elsewhere = home.pictures() + QStringLiteral("/two\nlines %41");
    QVERIFY(QDir().rename(home.desktop(), elsewhere));
    QCOMPARE(access->currentUrl(), QUrl::fromLocalFile(elsewhere));
}

void SecurityScopedAccessTest::theKeptAccessLastsUntilAnotherTakesItsPlace()
{
    const TemporaryHome home;
    QVERIFY(SecurityScopedAccess::keptUrl().isEmpty());
    SecurityScopedAccess::keep(SecurityScopedAccess::start(desktopUrl(home)));
    QCOMPARE(SecurityScopedAccess::keptUrl(), desktopUrl(home));
    const QUrl pictures = QUrl::fromLocalFile(home.pictures());
    SecurityScopedAccess::keep(SecurityScopedAccess::start(pictures));
    QCOMPARE(SecurityScopedAccess::keptUrl(), pictures);
    QCOMPARE(SecurityScopedAccess::activeCount(), 1);
    SecurityScopedAccess::keep(std::nullopt);
    QVERIFY(SecurityScopedAccess::keptUrl().isEmpty());
}

void SecurityScopedAccessTest::theKeptAccessMayBeReadWhileItChanges()
{
    const TemporaryHome home;
    const QUrl desktop = desktopUrl(home);
    const QUrl pictures = QUrl::fromLocalFile(home.pictures());
    SecurityScopedAccess::keep(SecurityScopedAccess::start(desktop));
    bool isAlwaysOneOfBoth = true;
    std::jthread reader([&isAlwaysOneOfBoth, desktop, pictures](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            const QUrl url = SecurityScopedAccess::keptUrl();
            isAlwaysOneOfBoth = isAlwaysOneOfBoth && (url == desktop || url == pictures);
        }
    });
    for (int round = 0; round < 500; ++round) {
        SecurityScopedAccess::keep(SecurityScopedAccess::start(round % 2 == 0 ? pictures : desktop));
    }
    reader.request_stop();
    reader.join();
    SecurityScopedAccess::keep(std::nullopt);
    QVERIFY(isAlwaysOneOfBoth);
}

void SecurityScopedAccessTest::aDriveCanBeEjectedWhileAFolderOnItIsKept()
{
    const TemporaryHome home;
    // The memory file system stands for the drive.
    const QTemporaryDir drive(QStringLiteral("/dev/shm/deskbroom-test-XXXXXX"));
    struct stat driveStatus = {};
    struct stat homeStatus = {};
    QCOMPARE(::stat(QFile::encodeName(drive.path()).constData(), &driveStatus), 0);
    QCOMPARE(::stat(QFile::encodeName(home.path()).constData(), &homeStatus), 0);
    if (driveStatus.st_dev == homeStatus.st_dev) {
        QSKIP("The home folder of the tests is on the memory file system too");
    }
    SecurityScopedAccess::keep(SecurityScopedAccess::start(QUrl::fromLocalFile(drive.path())));
    QCOMPARE(SecurityScopedAccess::activeCount(), 1);
    QVERIFY(SecurityScopedAccess::keptUrl().isEmpty());
    const auto links = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::System | QDir::Files);
    QVERIFY(std::ranges::none_of(
        links, [&drive](const QFileInfo &link) { return link.symLinkTarget().startsWith(drive.path()); }));
    SecurityScopedAccess::keep(std::nullopt);
}

QTEST_GUILESS_MAIN(SecurityScopedAccessTest)
#include "SecurityScopedAccessTest.moc"
