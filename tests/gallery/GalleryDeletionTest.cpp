#include "CpuTime.h"
#include "GalleryHome.h"
#include "GioLeak.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QThreadPool>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QList<SearchPathDirectory> desktop = {SearchPathDirectory::Desktop};

void deleteSelected(ScreenshotGalleryViewModel &model)
{
    model.deleteSelected();
    QTRY_VERIFY_WITH_TIMEOUT(!model.isDeleting(), patience);
}

bool isPrefix(const QList<ScreenshotItem> &displayed, const QList<ScreenshotItem> &all)
{
    return displayed == all.first(displayed.size());
}

} // namespace

/// Moving what is selected to the Trash.
class GalleryDeletionTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nothingSelectedChangesNothing();
    void whatIsSelectedGoesToTheTrash();
    void theChangesComeAtOnceAtTheEnd();
    void whatIsSelectedButNotShownStays();
    void theDisplayIsToppedUp();
    void aDisplayOfSeveralBatchesIsNotToppedUp();
    void aDisplayThatFallsBelowABatchIsToppedUp();
    void withoutABatchSizeAllThatIsLeftIsShown();
    void aFailedMoveIsPrintedAndTheOthersGoOn();
    void aForbiddenFolderKeepsItsFiles();
    void aHostileNameIsPrintedOnOneLine();
    void twoDeletionsAtATimeLeaveTheRest();
    void theSameFilesDeletedTwiceAreDeletedOnce();
    void aListingUnderWayDoesNotBringBackWhatWasDeleted();
    void aListingUnderWayIsBegunAnewWhenADeletionEnds();
    void theMovesDoNotEndWithTheModel();
    void tenThousandCostTheMainThreadLittle();

private:
    const std::unique_ptr<GalleryHome> m_folders = std::make_unique<GalleryHome>();
    std::unique_ptr<CapturedOutput> m_output;
};

void GalleryDeletionTest::init()
{
    m_output = std::make_unique<CapturedOutput>();
}

void GalleryDeletionTest::cleanup()
{
    m_folders->clear();
    m_output.reset();
}

void GalleryDeletionTest::nothingSelectedChangesNothing()
{
    m_folders->makeScreenshots(2);
    ScreenshotGalleryViewModel model;
    load(model);
    model.setSelectionMode(true);
    const QSignalSpy changes(&model, &ObservableObject::objectWillChange);
    model.deleteSelected();
    QVERIFY(!model.isDeleting());
    background::pool(BackgroundQueue::Default).waitForDone();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(changes.size(), 0);
    QVERIFY(model.isSelectionMode());
    QCOMPARE(model.allScreenshots().size(), 2);
}

void GalleryDeletionTest::whatIsSelectedGoesToTheTrash()
{
    m_folders->makeScreenshots(5);
    ScreenshotGalleryViewModel model;
    load(model);
    select(model, {1, 3});
    model.setShowBulkDeleteConfirmation(true);
    model.deleteSelected();
    QVERIFY(model.isDeleting());
    QCOMPARE(model.allScreenshots().size(), 5);
    QTRY_VERIFY_WITH_TIMEOUT(!model.isDeleting(), patience);
    const QStringList left = {
        QStringLiteral("Screenshot 1.png"), QStringLiteral("Screenshot 3.png"),
        QStringLiteral("Screenshot 5.png")};
    QCOMPARE(names(model.allScreenshots()), left);
    QCOMPARE(names(model.displayedScreenshots()), left);
    QVERIFY(model.selectedIDs().isEmpty());
    QVERIFY(!model.isSelectionMode());
    // The views' own.
    QVERIFY(model.showBulkDeleteConfirmation());
    for (const QString &name : {QStringLiteral("Screenshot 2.png"), QStringLiteral("Screenshot 4.png")}) {
        QVERIFY(files::exists(m_folders->trashed(name)));
        QVERIFY(!files::exists(m_folders->home().desktop() + u'/' + name));
    }
    QCOMPARE(m_output->lines(), QStringList());
}

void GalleryDeletionTest::theChangesComeAtOnceAtTheEnd()
{
    m_folders->makeScreenshots(5);
    ScreenshotGalleryViewModel model(3, desktop);
    load(model);
    select(model, {0, 1});
    QStringList seen;
    connect(&model, &ObservableObject::objectWillChange, this, [&] {
        seen.append(QStringLiteral("%1 of %2, %3 selected%4%5")
                        .arg(model.displayedScreenshots().size())
                        .arg(model.allScreenshots().size())
                        .arg(model.selectedIDs().size())
                        .arg(
                            model.isSelectionMode() ? u", selecting" : u"",
                            model.isDeleting() ? u", deleting" : u""));
    });
    deleteSelected(model);
    QCOMPARE(
        seen, QStringList({
                  QStringLiteral("3 of 5, 2 selected, selecting"),
                  QStringLiteral("3 of 5, 2 selected, selecting, deleting"),
                  QStringLiteral("3 of 3, 2 selected, selecting, deleting"),
                  QStringLiteral("1 of 3, 2 selected, selecting, deleting"),
                  QStringLiteral("3 of 3, 2 selected, selecting, deleting"),
                  QStringLiteral("3 of 3, 0 selected, selecting, deleting"),
                  QStringLiteral("3 of 3, 0 selected, deleting"),
              }));
    QVERIFY(!model.isDeleting());
}

void GalleryDeletionTest::whatIsSelectedButNotShownStays()
{
    m_folders->makeScreenshots(5);
    ScreenshotGalleryViewModel model(3, desktop);
    load(model);
    model.setSelectedIDs(ids(model.allScreenshots()));
    deleteSelected(model);
    QCOMPARE(names(model.allScreenshots()), numbered(4, 5));
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
    QVERIFY(files::exists(m_folders->home().desktop() + QStringLiteral("/Screenshot 4.png")));
}

void GalleryDeletionTest::theDisplayIsToppedUp()
{
    m_folders->makeScreenshots(40);
    ScreenshotGalleryViewModel model;
    load(model);
    select(model, {0, 7, 14, 21, 29});
    deleteSelected(model);
    QCOMPARE(model.allScreenshots().size(), 35);
    QCOMPARE(model.displayedScreenshots().size(), 30);
    QCOMPARE(model.remainingCount(), 5);
    QVERIFY(model.hasMore());
    QVERIFY(isPrefix(model.displayedScreenshots(), model.allScreenshots()));
}

void GalleryDeletionTest::aDisplayOfSeveralBatchesIsNotToppedUp()
{
    m_folders->makeScreenshots(30);
    ScreenshotGalleryViewModel model(10, desktop);
    load(model);
    loadMore(model);
    select(model, {0, 1, 2, 19});
    deleteSelected(model);
    QCOMPARE(model.displayedScreenshots().size(), 16);
    QCOMPARE(model.remainingCount(), 10);
    QVERIFY(isPrefix(model.displayedScreenshots(), model.allScreenshots()));
}

void GalleryDeletionTest::aDisplayThatFallsBelowABatchIsToppedUp()
{
    m_folders->makeScreenshots(25);
    ScreenshotGalleryViewModel model(10, desktop);
    load(model);
    loadMore(model);
    model.setSelectedIDs(ids(model.displayedScreenshots().first(18)));
    deleteSelected(model);
    // Seven are left in all, fewer than a batch.
    QCOMPARE(names(model.displayedScreenshots()), numbered(19, 25));
    QVERIFY(!model.hasMore());
}

void GalleryDeletionTest::withoutABatchSizeAllThatIsLeftIsShown()
{
    m_folders->makeScreenshots(35);
    ScreenshotGalleryViewModel model(std::nullopt, desktop);
    load(model);
    model.setSelectedIDs(ids(model.displayedScreenshots().first(33)));
    deleteSelected(model);
    QCOMPARE(names(model.displayedScreenshots()), numbered(34, 35));
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
}

void GalleryDeletionTest::aFailedMoveIsPrintedAndTheOthersGoOn()
{
    m_folders->makeScreenshots(12);
    ScreenshotGalleryViewModel model(10, desktop);
    load(model);
    files::remove(model.displayedScreenshots().at(2).id);
    model.setSelectedIDs(ids(model.displayedScreenshots()));
    deleteSelected(model);
    QCOMPARE(
        names(model.allScreenshots()), QStringList({
                                           QStringLiteral("Screenshot 3.png"),
                                           QStringLiteral("Screenshot 11.png"),
                                           QStringLiteral("Screenshot 12.png"),
                                       }));
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
    QCOMPARE(
        m_output->lines(), QStringList(QStringLiteral("Failed to move Screenshot 3.png to Trash: Error "
                                                      "Domain=NSCocoaErrorDomain Code=4 "
                                                      "\"No such file or directory\"")));
    QVERIFY(model.selectedIDs().isEmpty());
    QVERIFY(!model.isSelectionMode());
}

void GalleryDeletionTest::aForbiddenFolderKeepsItsFiles()
{
    if (::geteuid() == 0) {
        QSKIP("Nothing is forbidden to root");
    }
    const QString pictures = m_folders->home().pictures();
    std::ignore = m_folders->makeScreenshot(1);
    const QString kept = m_folders->makeScreenshot(2, pictures);
    std::ignore = m_folders->makeScreenshot(3);
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(::chmod(QFile::encodeName(pictures).constData(), 0500), 0);
    model.setSelectedIDs(ids(model.displayedScreenshots()));
    deleteSelected(model);
    QCOMPARE(names(model.displayedScreenshots()), numbered(2, 2));
    QVERIFY(files::exists(kept));
    QCOMPARE(m_output->lines().size(), 1);
    QVERIFY(m_output->lines().constFirst().startsWith(QStringLiteral(
        "Failed to move Screenshot 2.png to Trash: Error Domain=NSCocoaErrorDomain Code=257 ")));
}

void GalleryDeletionTest::aHostileNameIsPrintedOnOneLine()
{
    const QString path =
        m_folders->home().desktop() + QStringLiteral("/Screenshot 1\n<b>&amp; \u202e 100%1.png");
    files::write(path);
    ScreenshotGalleryViewModel model;
    load(model);
    select(model, {0});
    files::remove(path);
    deleteSelected(model);
    QCOMPARE(m_output->lines().size(), 1);
    QVERIFY(m_output->lines().constFirst().startsWith(
        QStringLiteral("Failed to move Screenshot 1\\n<b>&amp; \\u202e 100%1.png to Trash: ")));
    QCOMPARE(model.allScreenshots().size(), 1);

    files::write(path);
    select(model, {0});
    deleteSelected(model);
    QVERIFY(model.allScreenshots().isEmpty());
    QVERIFY(!files::exists(path));
}

void GalleryDeletionTest::twoDeletionsAtATimeLeaveTheRest()
{
    m_folders->makeScreenshots(60);
    ScreenshotGalleryViewModel model(20, desktop);
    load(model);
    model.setSelectedIDs(ids(model.displayedScreenshots().first(12)));
    model.deleteSelected();
    // Three of them a second time.
    model.setSelectedIDs(ids(model.displayedScreenshots().sliced(9, 8)));
    model.deleteSelected();
    QTRY_VERIFY_WITH_TIMEOUT(!model.isDeleting(), patience);
    QCOMPARE(names(model.allScreenshots()), numbered(18, 60));
    QCOMPARE(names(model.displayedScreenshots()), numbered(18, 37));
    QVERIFY(background::pool(BackgroundQueue::Default).waitForDone(0));
}

void GalleryDeletionTest::theSameFilesDeletedTwiceAreDeletedOnce()
{
    m_folders->makeScreenshots(6);
    ScreenshotGalleryViewModel model(2, desktop);
    load(model);
    select(model, {0, 1});
    model.deleteSelected();
    model.deleteSelected();
    QTRY_VERIFY_WITH_TIMEOUT(!model.isDeleting(), patience);
    QCOMPARE(names(model.allScreenshots()), numbered(3, 6));
    QCOMPARE(names(model.displayedScreenshots()), numbered(3, 4));
    // Each file moved for one of the two and was gone for the other.
    QCOMPARE(m_output->lines().size(), 2);
}

void GalleryDeletionTest::aListingUnderWayDoesNotBringBackWhatWasDeleted()
{
    m_folders->makeScreenshots(4);
    ScreenshotGalleryViewModel model(3, desktop);
    load(model);
    select(model, {0});
    model.loadScreenshots();
    // The listing has seen the file, and nothing of it has been delivered yet.
    background::pool(BackgroundQueue::Listing).waitForDone();
    deleteSelected(model);
    background::pool(BackgroundQueue::Listing).waitForDone();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(names(model.allScreenshots()), numbered(2, 4));
    QCOMPARE(names(model.displayedScreenshots()), numbered(2, 4));
}

void GalleryDeletionTest::aListingUnderWayIsBegunAnewWhenADeletionEnds()
{
    m_folders->makeScreenshots(4);
    // Of a folder that isn't there each listing prints a line.
    const QString pictures = m_folders->home().pictures();
    files::remove(pictures);
    ScreenshotGalleryViewModel model(3, {SearchPathDirectory::Desktop, SearchPathDirectory::Pictures});
    load(model);
    QCOMPARE(m_output->lines().size(), 1);
    // Nothing is listed until the queue is free again.
    QThreadPool &queue = background::pool(BackgroundQueue::Listing);
    QSemaphore isFree;
    for (int thread = 0; thread < queue.maxThreadCount(); ++thread) {
        queue.start([&isFree] { isFree.acquire(); });
    }
    model.loadScreenshots();
    select(model, {0});
    deleteSelected(model);
    isFree.release(queue.maxThreadCount());
    queue.waitForDone();
    QCoreApplication::sendPostedEvents();
    files::makeFolder(pictures);
    QCOMPARE(m_output->lines().size(), 3);
    QCOMPARE(names(model.allScreenshots()), numbered(2, 4));
}

void GalleryDeletionTest::theMovesDoNotEndWithTheModel()
{
    m_folders->makeScreenshots(20);
    auto model = std::make_unique<ScreenshotGalleryViewModel>();
    load(*model);
    model->setSelectedIDs(ids(model->displayedScreenshots()));
    model->deleteSelected();
    model.reset();
    background::pool(BackgroundQueue::Default).waitForDone();
    QCoreApplication::sendPostedEvents();
    QVERIFY(QDir(m_folders->home().desktop()).isEmpty());
    QVERIFY(files::exists(m_folders->trashed(QStringLiteral("Screenshot 20.png"))));
}

void GalleryDeletionTest::tenThousandCostTheMainThreadLittle()
{
    constexpr int count = 10'000;
    for (int number = 1; number <= count; ++number) {
        files::write(m_folders->home().desktop() + QStringLiteral("/Screenshot %1.png").arg(number), {});
    }
    ScreenshotGalleryViewModel model(std::nullopt, desktop);
    load(model);
    // Every fifth one, so that what is left is scattered over the whole list.
    QSet<QString> selected;
    for (qsizetype position = 0; position < count; position += 5) {
        selected.insert(model.displayedScreenshots().at(position).id);
    }
    model.setSelectedIDs(selected);
    CpuTime time;
    model.deleteSelected();
    background::pool(BackgroundQueue::Default).waitForDone();
    QTRY_VERIFY(!model.isDeleting());
    const auto used = time.elapsed();
    QCOMPARE(model.allScreenshots().size(), count / 5 * 4);
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
    // A search through the list for each file takes several times as long.
    QVERIFY2(used < std::chrono::milliseconds(250), qPrintable(QString::number(used.count())));
}

QTEST_MAIN(GalleryDeletionTest)
#include "GalleryDeletionTest.moc"
