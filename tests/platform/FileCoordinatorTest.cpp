#include "FileCoordinator.h"

#include "FileDescriptor.h"
#include "TemporaryHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <sys/inotify.h>

#include <atomic>
#include <climits>
#include <future>

namespace {

/// Tells when a file is opened.
class OpenMonitor final {
public:
    explicit OpenMonitor(const QString &path) : m_descriptor(::inotify_init1(IN_CLOEXEC))
    {
        ::inotify_add_watch(m_descriptor.get(), QFile::encodeName(path).constData(), IN_OPEN);
    }

    /// Blocks until somebody opens the file.
    [[nodiscard]] bool waitForOpen() const
    {
        alignas(inotify_event) char event[sizeof(inotify_event) + NAME_MAX + 1];
        return ::read(m_descriptor.get(), static_cast<char *>(event), sizeof event) > 0;
    }

private:
    FileDescriptor m_descriptor;
};

QUrl makeFile(const TemporaryHome &home, const QString &name)
{
    QFile file(home.desktop() + u'/' + name);
    [[maybe_unused]] const bool isOpen = file.open(QIODevice::WriteOnly);
    return QUrl::fromLocalFile(file.fileName());
}

} // namespace

class FileCoordinatorTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void handsOverTheUrlOfAnIdleFile_data();
    void handsOverTheUrlOfAnIdleFile();
    void returnsWhatTheAccessorReturns();
    void missingFileIsNotHandedOver();
    void proceedsWhenTheWriterCloses();
    void givesUpOnAWriterThatStays();
    void symbolicLinkIsHandedOverWhateverItsTargetDoes();
};

void FileCoordinatorTest::handsOverTheUrlOfAnIdleFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("a.png");
    QTest::newRow("line break") << QStringLiteral("a\nb.png");
    QTest::newRow("percent") << QStringLiteral("100%41.png");
    QTest::newRow("255 bytes") << QString(255, u'x');
}

void FileCoordinatorTest::handsOverTheUrlOfAnIdleFile()
{
    QFETCH(const QString, name);
    const TemporaryHome home;
    const QUrl url = makeFile(home, name);
    QList<QUrl> handedOver;
    const auto result = FileCoordinator().coordinateWritingForDeleting(url, [&](const QUrl &item) {
        handedOver.append(item);
        return Result<void>();
    });
    QVERIFY(result.has_value());
    QCOMPARE(handedOver, QList<QUrl>{url});
}

void FileCoordinatorTest::returnsWhatTheAccessorReturns()
{
    const TemporaryHome home;
    const Error error{
        .domain = QStringLiteral("test"), .code = 7, .localizedDescription = QStringLiteral("no")};
    const auto result = FileCoordinator().coordinateWritingForDeleting(
        makeFile(home, QStringLiteral("a.png")),
        [&](const QUrl &) -> Result<void> { return std::unexpected(error); });
    QVERIFY(!result);
    QCOMPARE(result.error(), error);
}

void FileCoordinatorTest::missingFileIsNotHandedOver()
{
    const TemporaryHome home;
    bool isCalled = false;
    const auto result = FileCoordinator().coordinateWritingForDeleting(
        QUrl::fromLocalFile(home.desktop() + QStringLiteral("/gone.png")), [&](const QUrl &) {
            isCalled = true;
            return Result<void>();
        });
    QVERIFY(!result && result.error().isCocoa(Error::FileNoSuchFile));
    QVERIFY(!isCalled);
}

void FileCoordinatorTest::proceedsWhenTheWriterCloses()
{
    const TemporaryHome home;
    const QUrl url = makeFile(home, QStringLiteral("a.png"));
    QFile writer(url.toLocalFile());
    QVERIFY(writer.open(QIODevice::ReadWrite));

    const OpenMonitor monitor(url.toLocalFile());
    std::atomic<bool> isCalled = false;
    auto result = std::async(std::launch::async, [&] {
        return FileCoordinator().coordinateWritingForDeleting(url, [&](const QUrl &) {
            isCalled = true;
            return Result<void>();
        });
    });
    // It has looked, found the writer, and looks again.
    QVERIFY(monitor.waitForOpen());
    QVERIFY(monitor.waitForOpen());
    QVERIFY(!isCalled);
    writer.close();
    QVERIFY(result.get().has_value());
    QVERIFY(isCalled);
}

void FileCoordinatorTest::givesUpOnAWriterThatStays()
{
    const TemporaryHome home;
    const QUrl url = makeFile(home, QStringLiteral("a.png"));
    QFile writer(url.toLocalFile());
    QVERIFY(writer.open(QIODevice::ReadWrite));
    bool isCalled = false;
    QElapsedTimer timer;
    timer.start();
    const auto result = FileCoordinator().coordinateWritingForDeleting(url, [&](const QUrl &) {
        isCalled = true;
        return Result<void>();
    });
    QVERIFY(timer.elapsed() >= 2000);
    QVERIFY(!result && result.error().isCocoa(Error::FileInUse));
    QVERIFY(!result.error().localizedDescription.isEmpty());
    QVERIFY(!isCalled);
}

void FileCoordinatorTest::symbolicLinkIsHandedOverWhateverItsTargetDoes()
{
    const TemporaryHome home;
    const QUrl target = makeFile(home, QStringLiteral("target.png"));
    QFile writer(target.toLocalFile());
    QVERIFY(writer.open(QIODevice::ReadWrite));
    const QString link = home.desktop() + QStringLiteral("/link.png");
    QVERIFY(QFile::link(target.toLocalFile(), link));
    QVERIFY(FileCoordinator()
                .coordinateWritingForDeleting(
                    QUrl::fromLocalFile(link), [](const QUrl &) { return Result<void>(); })
                .has_value());
}

QTEST_GUILESS_MAIN(FileCoordinatorTest)
#include "FileCoordinatorTest.moc"
