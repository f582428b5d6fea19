#include "FileManager.h"
#include "HomeTrash.h"

#include "GioLeak.h"
#include "TemporaryHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

namespace {

bool writeLine(const char *path, const QByteArray &line)
{
    QFile file(QFile::decodeName(path));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(line) == line.size();
}

/// Gives this process mounts of its own, which it may change as the ordinary user that it stays. Returns what
/// stands against it. Only while the process has one thread.
QString enterMountNamespace()
{
    const QByteArray user = QByteArray::number(::getuid());
    const QByteArray group = QByteArray::number(::getgid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return QStringLiteral("This system forbids user namespaces: ") +
               QString::fromLocal8Bit(std::strerror(errno));
    }
    const bool isMapped = writeLine("/proc/self/setgroups", "deny") &&
                          writeLine("/proc/self/uid_map", user + ' ' + user + " 1") &&
                          writeLine("/proc/self/gid_map", group + ' ' + group + " 1");
    return isMapped ? QString() : QStringLiteral("This system forbids user namespaces of one's own");
}

/// A file system mounted for the time of a test.
class Mount final {
public:
    /// `source` is what the mount table shows as the device.
    Mount(const char *type, const char *source, const QString &folder, const QByteArray &options = {})
        : m_folder(QFile::encodeName(folder))
    {
        QDir().mkpath(folder);
        m_isMounted = ::mount(source, m_folder.constData(), type, 0, options.constData()) == 0;
        m_error = QStringLiteral("Can't mount %1: %2")
                      .arg(QString::fromLatin1(type), QString::fromLocal8Bit(std::strerror(errno)));
    }

    Q_DISABLE_COPY_MOVE(Mount)

    ~Mount()
    {
        if (m_isMounted) {
            ::umount2(m_folder.constData(), MNT_DETACH);
        }
    }

    [[nodiscard]] bool isMounted() const { return m_isMounted; }

    [[nodiscard]] QByteArray error() const { return m_error.toLocal8Bit(); }

    [[nodiscard]] bool makeReadOnly() const
    {
        return ::mount(nullptr, m_folder.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

private:
    QByteArray m_folder;
    bool m_isMounted = false;
    QString m_error;
};

void makeFile(const QString &path, const QByteArray &contents = {})
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
}

/// Makes files in the folder until no more can be made.
void fillUp(const QString &folder)
{
    QVERIFY(QDir().mkpath(folder));
    for (int i = 0; i < 10'000; ++i) {
        QFile file(folder + u'/' + QString::number(i));
        if (!file.open(QIODevice::WriteOnly)) {
            return;
        }
    }
    QFAIL("The volume doesn't get full");
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Result<void> trash(const QString &path)
{
    return FileManager::defaultManager().trashItem(QUrl::fromLocalFile(path));
}

} // namespace

/// The Trash where volumes meet: in a mount namespace, with small volumes in memory. The home folder, which
/// GLib asks for once in a process, is on a volume of its own.
class OtherVolumeTrashTest final : public QObject {
    Q_OBJECT

public:
    explicit OtherVolumeTrashTest(QString obstacle) : m_obstacle(std::move(obstacle)) {}

private Q_SLOTS:
    void init();
    void cleanup();

    void otherVolumeHasItsOwnTrash();
    void fileOnASystemMountStays();
    void fileBesideTheHomeTrashOnASystemMountGoes();
    void fileOnABindMountStays();
    void fileOfAnOverlayGoesToTheHomeTrash();
    void fullTrashIsOutOfSpace();
    void fullVolumeLeavesNoInfoFile();
    void readOnlyVolume();
    void readOnlyHome();

private:
    [[nodiscard]] QString volume() const { return m_home.path() + QStringLiteral("/volume"); }

    [[nodiscard]] QString trashFolder() const
    {
        return m_home.path() + QStringLiteral("/.local/share/Trash");
    }

    /// Mounts what the home folder is on during the test.
    [[nodiscard]] bool mountHome(const QByteArray &options = {})
    {
        m_homeVolume.emplace("tmpfs", "home", m_home.path(), options);
        return m_homeVolume->isMounted() && QDir().mkpath(m_home.desktop());
    }

    QString m_obstacle;
    TemporaryHome m_home;
    std::optional<Mount> m_homeVolume;
};

void OtherVolumeTrashTest::init()
{
    if (!m_obstacle.isEmpty()) {
        QSKIP(qPrintable(m_obstacle));
    }
}

void OtherVolumeTrashTest::cleanup()
{
    m_homeVolume.reset();
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.path() + QStringLiteral("/.local/share")));
}

void OtherVolumeTrashTest::otherVolumeHasItsOwnTrash()
{
    QVERIFY(mountHome());
    // Not tmpfs: GIO takes that for the system's own.
    const Mount card("ramfs", "/dev/card", volume());
    if (!card.isMounted()) {
        QSKIP(card.error().constData());
    }
    makeFile(volume() + QStringLiteral("/a b.png"), "pixels");
    const auto moved = trash(volume() + QStringLiteral("/a b.png"));
    QVERIFY2(moved.has_value(), moved ? "" : qPrintable(moved.error().description()));

    QVERIFY(!QFile::exists(volume() + QStringLiteral("/a b.png")));
    const QString ownTrash = volume() + QStringLiteral("/.Trash-") + QString::number(::getuid());
    QCOMPARE(contents(ownTrash + QStringLiteral("/files/a b.png")), QByteArray("pixels"));
    QVERIFY(contents(ownTrash + QStringLiteral("/info/a b.png.trashinfo")).contains("\nPath=a%20b.png\n"));
    QVERIFY(!QFile::exists(trashFolder()));
}

void OtherVolumeTrashTest::fileOnASystemMountStays()
{
    QVERIFY(mountHome());
    const Mount mount("tmpfs", "tmpfs", volume());
    QVERIFY2(mount.isMounted(), mount.error().constData());
    makeFile(volume() + QStringLiteral("/a.png"));
    const auto moved = trash(volume() + QStringLiteral("/a.png"));
    QVERIFY(!moved && moved.error().isCocoa(Error::FileWriteUnknown));
    QVERIFY(!moved.error().localizedDescription.isEmpty());
    QVERIFY(QFile::exists(volume() + QStringLiteral("/a.png")));
    QVERIFY(QDir(trashFolder() + QStringLiteral("/info")).isEmpty());
}

void OtherVolumeTrashTest::fileBesideTheHomeTrashOnASystemMountGoes()
{
    QVERIFY(mountHome());
    const Mount mount("tmpfs", "tmpfs", volume());
    QVERIFY2(mount.isMounted(), mount.error().constData());
    // GIO refuses the mount although the Trash is on it too.
    qputenv("XDG_DATA_HOME", QFile::encodeName(volume() + QStringLiteral("/data")));
    makeFile(volume() + QStringLiteral("/a.png"), "pixels");
    const auto moved = trash(volume() + QStringLiteral("/a.png"));
    QVERIFY2(moved.has_value(), moved ? "" : qPrintable(moved.error().description()));
    QVERIFY(!QFile::exists(volume() + QStringLiteral("/a.png")));
    QCOMPARE(contents(volume() + QStringLiteral("/data/Trash/files/a.png")), QByteArray("pixels"));
}

void OtherVolumeTrashTest::fileOnABindMountStays()
{
    QVERIFY(mountHome());
    makeFile(m_home.desktop() + QStringLiteral("/a.png"));
    QVERIFY(QDir().mkpath(volume()));
    QCOMPARE(
        ::mount(
            QFile::encodeName(m_home.desktop()).constData(), QFile::encodeName(volume()).constData(), nullptr,
            MS_BIND, nullptr),
        0);
    const auto moved = trash(volume() + QStringLiteral("/a.png"));
    QCOMPARE(::umount2(QFile::encodeName(volume()).constData(), MNT_DETACH), 0);
    QVERIFY(!moved && moved.error().isCocoa(Error::FileWriteUnknown));
    QVERIFY(QFile::exists(m_home.desktop() + QStringLiteral("/a.png")));
    QVERIFY(QDir(trashFolder() + QStringLiteral("/info")).isEmpty());
}

void OtherVolumeTrashTest::fileOfAnOverlayGoesToTheHomeTrash()
{
    // The home folder is an overlay over two volumes, whose lower files have a device number of their own,
    // as if they were on another volume.
    const QTemporaryDir layers;
    const Mount lower("tmpfs", "lower", layers.path() + QStringLiteral("/lower"));
    const Mount upper("tmpfs", "upper", layers.path() + QStringLiteral("/upper"));
    QVERIFY(lower.isMounted() && upper.isMounted());
    QVERIFY(QDir().mkpath(layers.path() + QStringLiteral("/lower/Desktop")));
    makeFile(layers.path() + QStringLiteral("/lower/Desktop/a.png"), "pixels");
    QVERIFY(QDir().mkpath(layers.path() + QStringLiteral("/upper/data")));
    QVERIFY(QDir().mkpath(layers.path() + QStringLiteral("/upper/work")));
    const QByteArray base = QFile::encodeName(layers.path());
    m_homeVolume.emplace(
        "overlay", "home", m_home.path(),
        "lowerdir=" + base + "/lower,upperdir=" + base + "/upper/data,workdir=" + base +
            "/upper/work,userxattr,xino=off");
    if (!m_homeVolume->isMounted()) {
        QSKIP(m_homeVolume->error().constData());
    }
    const auto moved = trash(m_home.desktop() + QStringLiteral("/a.png"));
    QVERIFY2(moved.has_value(), moved ? "" : qPrintable(moved.error().description()));
    QVERIFY(!QFile::exists(m_home.desktop() + QStringLiteral("/a.png")));
    QCOMPARE(contents(m_home.trashedFiles() + QStringLiteral("/a.png")), QByteArray("pixels"));
    QVERIFY(contents(trashFolder() + QStringLiteral("/info/a.png.trashinfo")).contains("/Desktop/a.png\n"));
}

void OtherVolumeTrashTest::fullTrashIsOutOfSpace()
{
    QVERIFY(mountHome("nr_inodes=50"));
    for (const QString &name : {QStringLiteral("short.png"), QString(255, u'x')}) {
        makeFile(m_home.desktop() + u'/' + name);
    }
    fillUp(m_home.path() + QStringLiteral("/filling"));
    for (const QString &name : {QStringLiteral("short.png"), QString(255, u'x')}) {
        const auto moved = trash(m_home.desktop() + u'/' + name);
        QVERIFY(!moved);
        QVERIFY2(moved.error().isCocoa(Error::FileWriteOutOfSpace), qPrintable(moved.error().description()));
        QVERIFY(QFile::exists(m_home.desktop() + u'/' + name));
    }
}

void OtherVolumeTrashTest::fullVolumeLeavesNoInfoFile()
{
    QVERIFY(mountHome("size=64k"));
    makeFile(m_home.desktop() + QStringLiteral("/a.png"));
    QFile filling(m_home.path() + QStringLiteral("/filling"));
    QVERIFY(filling.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filling.write(QByteArray(4096, 'x')) == 4096) {
    }
    QCOMPARE(HomeTrash::take(QFile::encodeName(m_home.desktop()) + "/a.png"), ENOSPC);
    QVERIFY(QFile::exists(m_home.desktop() + QStringLiteral("/a.png")));
    QVERIFY(QDir(trashFolder() + QStringLiteral("/info")).isEmpty());
}

void OtherVolumeTrashTest::readOnlyVolume()
{
    QVERIFY(mountHome());
    const Mount card("tmpfs", "/dev/card", volume());
    QVERIFY2(card.isMounted(), card.error().constData());
    makeFile(volume() + QStringLiteral("/a.png"));
    QVERIFY(card.makeReadOnly());
    const auto moved = trash(volume() + QStringLiteral("/a.png"));
    QVERIFY(!moved);
    QVERIFY2(moved.error().isCocoa(Error::FileWriteVolumeReadOnly), qPrintable(moved.error().description()));
    QVERIFY(QFile::exists(volume() + QStringLiteral("/a.png")));
}

void OtherVolumeTrashTest::readOnlyHome()
{
    QVERIFY(mountHome());
    QVERIFY(QDir().mkpath(trashFolder() + QStringLiteral("/files")));
    QVERIFY(QDir().mkpath(trashFolder() + QStringLiteral("/info")));
    makeFile(m_home.desktop() + QStringLiteral("/a.png"));
    QVERIFY(m_homeVolume->makeReadOnly());
    const auto moved = trash(m_home.desktop() + QStringLiteral("/a.png"));
    QVERIFY(!moved);
    QVERIFY2(moved.error().isCocoa(Error::FileWriteVolumeReadOnly), qPrintable(moved.error().description()));
    QVERIFY(QFile::exists(m_home.desktop() + QStringLiteral("/a.png")));
}

int main(int argc, char *argv[])
{
    // Before the test library starts its first thread.
    const QString obstacle = enterMountNamespace();
    const QCoreApplication application(argc, argv);
    OtherVolumeTrashTest test(obstacle);
    return QTest::qExec(&test, argc, argv);
}

#include "OtherVolumeTrashTest.moc"
