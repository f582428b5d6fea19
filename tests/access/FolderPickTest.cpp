#include "FileAccessFixture.h"
#include "HeldQueue.h"
#include "storedBookmark.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <unistd.h>

namespace {

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

/// How many pickers have been shown since it was made.
class ShownDialogs final : public QObject {
public:
    ShownDialogs() { qApp->installEventFilter(this); }

    [[nodiscard]] int count() const { return m_count; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QFileDialog *>(watched) != nullptr) {
            ++m_count;
        }
        return false;
    }

private:
    int m_count = 0;
};

/// Once every answer to where the picker starts has been heard, and the time for it is over as well.
bool answersAreIn()
{
    bool isOver = false;
    constexpr std::chrono::milliseconds longerThanThePicker(700);
    QTimer::singleShot(longerThanThePicker, qApp, [&isOver] { isOver = true; });
    return background::pool(BackgroundQueue::UserInitiated).waitForDone() &&
           QTest::qWaitFor([&isOver] { return isOver; });
}

} // namespace

/// What a folder that the user picks changes, and the picker itself.
class FolderPickTest final : public FileAccessFixture {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aPickedFolderIsTakenOver();
    void aPickedFolderKeepsTheRoleAfterARestart();
    void aRenamedPickedFolderKeepsTheRole();
    void aPickedFolderOnADriveThatIsAwayStaysPicked();
    void aPickedFolderThatRefusesIsTold();
    void aPickedFolderThatIsGoneIsTold();
    void hostileFolderNamesAreTakenOver_data();
    void hostileFolderNamesAreTakenOver();
    void thePickerHasItsWords();
    void acceptingThePickerTakesTheFolderOver();
    void cancellingThePickerChangesNothing();
    void askingAgainReplacesThePicker();
    void askingTwiceInARowOpensOnePicker();
    void aDiskThatDoesntAnswerKeepsNoPickerBack();
    void aDiskThatAnswersLateIsHeardByTheNextPickerAlone();
    void ofSeveralPicksInARowTheLastCounts();
    void aPickIsNotOvertakenByARefreshOfTheFolderBefore();
    void aFolderInTheTrashIsNoLongerTheFolder();
    void aHundredGrantsLeakNothing();
};

void FolderPickTest::initTestCase()
{
    prepare();
}

void FolderPickTest::init()
{
    makeHome();
}

void FolderPickTest::cleanup()
{
    removeHome();
}

void FolderPickTest::aPickedFolderIsTakenOver()
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

void FolderPickTest::aPickedFolderKeepsTheRoleAfterARestart()
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

void FolderPickTest::aRenamedPickedFolderKeepsTheRole()
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

void FolderPickTest::aPickedFolderOnADriveThatIsAwayStaysPicked()
{
    restart();
    const QString drive = makeFolder(QStringLiteral("drive"));
    pick(makeFolder(QStringLiteral("drive/Archive")));
    const auto bookmark = currentBookmark();
    const QString away = m_home->pictures() + QStringLiteral("/away");
    // Nothing of the run that held it helps to find it.
    endManager();
    SecurityScopedAccess::keep(std::nullopt);
    files::rename(drive, away);
    restart();
    QVERIFY(m_output->contains(QStringLiteral("Error accessing Desktop folder: Desktop folder not found")));
    QCOMPARE(currentBookmark(), bookmark);
    files::rename(away, drive);
    restart();
    QCOMPARE(m_manager->persistentAccessUrl(), fileUrl(drive + QStringLiteral("/Archive")));
}

void FolderPickTest::aPickedFolderThatRefusesIsTold()
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

void FolderPickTest::aPickedFolderThatIsGoneIsTold()
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

void FolderPickTest::hostileFolderNamesAreTakenOver_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("told");
    QTest::newRow("markup") << QStringLiteral("<b>&amp;%20#?") << QStringLiteral("&lt;b&gt;&amp;amp;%20#?");
    QTest::newRow("right to left") << QStringLiteral("\u05E9\u05D5\u05DC\u05D7\u05DF")
                                   << QStringLiteral("\u05E9\u05D5\u05DC\u05D7\u05DF");
    QTest::newRow("200 characters") << QString(200, u'x') << QString(200, u'x');
}

void FolderPickTest::hostileFolderNamesAreTakenOver()
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

void FolderPickTest::thePickerHasItsWords()
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

void FolderPickTest::acceptingThePickerTakesTheFolderOver()
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
    QTRY_VERIFY_WITH_TIMEOUT(
        isTold(
            QStringLiteral("Access Granted"),
            QStringLiteral("Deskbroom now has access to detect screenshots in Archive.")),
        patience);
}

void FolderPickTest::cancellingThePickerChangesNothing()
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

void FolderPickTest::askingAgainReplacesThePicker()
{
    restart();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    const QPointer<QFileDialog> first = picker();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull() && picker() != nullptr, patience);
}

void FolderPickTest::askingTwiceInARowOpensOnePicker()
{
    restart();
    const ShownDialogs shown;
    m_manager->requestFolderAccess();
    m_manager->requestFolderAccess();
    QTRY_COMPARE_WITH_TIMEOUT(shown.count(), 1, patience);
    QVERIFY(answersAreIn());
    QCOMPARE(shown.count(), 1);
    QCOMPARE(picker()->directoryUrl(), fileUrl(m_home->desktop()));
}

void FolderPickTest::aDiskThatDoesntAnswerKeepsNoPickerBack()
{
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    const HeldQueue listing(BackgroundQueue::Listing);
    HeldQueue held(BackgroundQueue::UserInitiated);
    const ShownDialogs shown;
    QElapsedTimer waited;
    waited.start();
    m_manager->requestFolderAccess();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    QVERIFY2(waited.elapsed() >= 450, qPrintable(QString::number(waited.elapsed())));
    QVERIFY(picker()->directoryUrl() != fileUrl(m_home->desktop()));
    // Neither a late answer nor the time opens another one, or takes this one elsewhere.
    const QPointer<QFileDialog> first = picker();
    held.release();
    QVERIFY(answersAreIn());
    QCOMPARE(shown.count(), 1);
    QCOMPARE(picker(), first.data());
    QVERIFY(first->directoryUrl() != fileUrl(m_home->desktop()));
    auto *const field = picker()->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    field->setText(archive);
    QTest::keyClick(field, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->persistentAccessUrl(), fileUrl(archive), patience);
}

void FolderPickTest::aDiskThatAnswersLateIsHeardByTheNextPickerAlone()
{
    restart();
    HeldQueue held(BackgroundQueue::UserInitiated);
    const ShownDialogs shown;
    for (int request = 1; request <= 2; ++request) {
        m_manager->requestFolderAccess();
        QTRY_COMPARE_WITH_TIMEOUT(shown.count(), request, patience);
        QTest::keyClick(picker(), Qt::Key_Escape);
        QTRY_VERIFY(picker() == nullptr);
    }
    m_manager->requestFolderAccess();
    held.release();
    QTRY_VERIFY_WITH_TIMEOUT(picker() != nullptr, patience);
    QCOMPARE(picker()->directoryUrl(), fileUrl(m_home->desktop()));
    QVERIFY(answersAreIn());
    QCOMPARE(shown.count(), 3);
}

void FolderPickTest::ofSeveralPicksInARowTheLastCounts()
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

void FolderPickTest::aPickIsNotOvertakenByARefreshOfTheFolderBefore()
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

void FolderPickTest::aFolderInTheTrashIsNoLongerTheFolder()
{
    restart();
    const QString archive = makeFolder(QStringLiteral("Archive"));
    pick(archive);
    files::makeFolder(m_home->trashedFiles());
    files::rename(archive, m_home->trashedFiles() + QStringLiteral("/Archive"));
    QVERIFY(!m_manager->hasValidAccess());
    QCOMPARE(FileManager::defaultManager().urls(SearchPathDirectory::Desktop), QList{fileUrl(archive)});
}

void FolderPickTest::aHundredGrantsLeakNothing()
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

QTEST_MAIN(FolderPickTest)
#include "FolderPickTest.moc"
