#include "ScreenshotGalleryViewModel.h"

#include "Bookmark.h"
#include "GalleryConfiguration.h"
#include "GalleryHome.h"
#include "Preferences.h"
#include "UserDefaults.h"

#include <QSignalSpy>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {

/// What can be seen of a model at one moment.
struct Snapshot {
    qsizetype all = 0;
    qsizetype displayed = 0;
    bool isLoading = false;
    bool isLoadingMore = false;

    bool operator==(const Snapshot &) const = default;
};

Snapshot snapshot(const ScreenshotGalleryViewModel &model)
{
    return {
        .all = model.allScreenshots().size(),
        .displayed = model.displayedScreenshots().size(),
        .isLoading = model.isLoading(),
        .isLoadingMore = model.isLoadingMore(),
    };
}

} // namespace

/// What is listed, what of it is shown, and what is selected.
class ScreenshotGalleryViewModelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewModelIsEmptyAndLoading();
    void eachHostHasItsConfiguration();
    void anEmptyListingEndsTheLoading();
    void thirtyOneAreABatchAndOneMore();
    void aBatchThatIsNeverFullShowsAll();
    void withoutABatchSizeAllIsShownAtOnce();
    void aBatchOfNoneShowsNone();
    void aNegativeBatchSizeStopsTheProgram();
    void theNextBatchComesOnTheNextTurn();
    void theNextBatchIsTakenFromTheListAsItIsThen();
    void theNewestIsFirst();
    void filesOfOneDateAreAllThere();
    void changesAreAnnouncedBeforeTheyTakeEffect();
    void refreshingShowsTheFirstBatchAgainWithoutLoading();
    void onlyTheLastOfOverlappingListingsCounts();
    void aModelThatIsGoneIsNotTold();
    void aFolderThatCannotBeReadIsPrintedAndTheOthersAreListed();
    void aFileThatCannotBeReadIsPrintedAndTheOthersAreListed();
    void thePopoverShowsNineOfTwelve();
    void theWindowListsThreeFoldersAndTheOthersOnlyTheDesktop();
    void theBookmarkedFolderIsListedToo();
    void selectingTogglesByIdentity();
    void whatViewsBindIsAnnouncedOnce();
    void tenThousandAreShownWithoutCopyingWhatIsShown();

private:
    const std::unique_ptr<GalleryHome> m_folders = std::make_unique<GalleryHome>();
    std::unique_ptr<CapturedOutput> m_output;
};

void ScreenshotGalleryViewModelTest::init()
{
    m_output = std::make_unique<CapturedOutput>();
}

void ScreenshotGalleryViewModelTest::cleanup()
{
    m_folders->clear();
    m_output.reset();
}

void ScreenshotGalleryViewModelTest::aNewModelIsEmptyAndLoading()
{
    const ScreenshotGalleryViewModel model;
    QVERIFY(model.allScreenshots().isEmpty());
    QVERIFY(model.displayedScreenshots().isEmpty());
    QVERIFY(model.isLoading());
    QVERIFY(!model.isLoadingMore());
    QVERIFY(model.selectedIDs().isEmpty());
    QVERIFY(!model.isSelectionMode());
    QVERIFY(!model.copyConfirmationMessage());
    QVERIFY(!model.showBulkDeleteConfirmation());
    QVERIFY(!model.isDeleting());
    QCOMPARE(model.batchSize(), std::optional<qsizetype>(30));
    QCOMPARE(
        model.fallbackPaths(),
        QList<SearchPathDirectory>(
            {SearchPathDirectory::Desktop, SearchPathDirectory::Pictures, SearchPathDirectory::Downloads}));
    QVERIFY(!model.hasMore());
    QCOMPARE(model.remainingCount(), 0);
}

void ScreenshotGalleryViewModelTest::eachHostHasItsConfiguration()
{
    const QList<SearchPathDirectory> desktop = {SearchPathDirectory::Desktop};
    const auto popover = GalleryConfiguration::popover();
    QVERIFY(popover.mode == GalleryMode::Embedded);
    QCOMPARE(popover.batchSize, std::optional<qsizetype>(9));
    QCOMPARE(popover.fallbackPaths, desktop);
    const auto window = GalleryConfiguration::window();
    QVERIFY(window.mode == GalleryMode::Expanded);
    QCOMPARE(window.batchSize, std::optional<qsizetype>(30));
    QCOMPARE(window.fallbackPaths, ScreenshotGalleryViewModel().fallbackPaths());
    const auto settings = GalleryConfiguration::settings();
    QVERIFY(settings.mode == GalleryMode::Expanded);
    QCOMPARE(settings.batchSize, std::optional<qsizetype>(60));
    QCOMPARE(settings.fallbackPaths, desktop);
}

void ScreenshotGalleryViewModelTest::anEmptyListingEndsTheLoading()
{
    ScreenshotGalleryViewModel model;
    load(model);
    QVERIFY(model.allScreenshots().isEmpty());
    QVERIFY(model.displayedScreenshots().isEmpty());
    QVERIFY(!model.hasMore());
    QCOMPARE(model.remainingCount(), 0);
    QCOMPARE(m_output->lines(), QStringList());
}

void ScreenshotGalleryViewModelTest::thirtyOneAreABatchAndOneMore()
{
    m_folders->makeScreenshots(31);
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 30));
    QVERIFY(model.hasMore());
    QCOMPARE(model.remainingCount(), 1);
    loadMore(model);
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 31));
    QVERIFY(!model.hasMore());
    QCOMPARE(model.remainingCount(), 0);

    const QSignalSpy changes(&model, &ObservableObject::objectWillChange);
    model.loadMore();
    QVERIFY(!model.isLoadingMore());
    QCOMPARE(changes.size(), 0);
}

void ScreenshotGalleryViewModelTest::aBatchThatIsNeverFullShowsAll()
{
    m_folders->makeScreenshots(3);
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
    QVERIFY(!model.hasMore());
}

void ScreenshotGalleryViewModelTest::withoutABatchSizeAllIsShownAtOnce()
{
    m_folders->makeScreenshots(65);
    ScreenshotGalleryViewModel model(std::nullopt, {SearchPathDirectory::Desktop});
    load(model);
    QCOMPARE(model.allScreenshots().size(), 65);
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
    QVERIFY(!model.hasMore());
    const QSignalSpy changes(&model, &ObservableObject::objectWillChange);
    model.loadMore();
    QVERIFY(!model.isLoadingMore());
    QCOMPARE(changes.size(), 0);
}

void ScreenshotGalleryViewModelTest::aBatchOfNoneShowsNone()
{
    m_folders->makeScreenshots(2);
    ScreenshotGalleryViewModel model(0, {SearchPathDirectory::Desktop});
    load(model);
    loadMore(model);
    QVERIFY(model.displayedScreenshots().isEmpty());
    QCOMPARE(model.remainingCount(), 2);
}

void ScreenshotGalleryViewModelTest::aNegativeBatchSizeStopsTheProgram()
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDERR_FILENO);
        const ScreenshotGalleryViewModel model(-1, {});
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGABRT);
}

void ScreenshotGalleryViewModelTest::theNextBatchComesOnTheNextTurn()
{
    m_folders->makeScreenshots(8);
    ScreenshotGalleryViewModel model(3, {SearchPathDirectory::Desktop});
    load(model);
    model.loadMore();
    QVERIFY(model.isLoadingMore());
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 3));
    // Asked for a second time in one turn, it still comes once.
    model.loadMore();
    QTRY_VERIFY(!model.isLoadingMore());
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 6));
    loadMore(model);
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 8));
}

void ScreenshotGalleryViewModelTest::theNextBatchIsTakenFromTheListAsItIsThen()
{
    m_folders->makeScreenshots(5);
    ScreenshotGalleryViewModel model(3, {SearchPathDirectory::Desktop});
    load(model);
    for (int number = 2; number <= 5; ++number) {
        files::remove(model.allScreenshots().at(number - 1).id);
    }
    model.loadScreenshots();
    background::pool(BackgroundQueue::Listing).waitForDone();
    model.loadMore();
    // The listing is published before the batch is appended, and leaves nothing to append.
    QTRY_VERIFY(!model.isLoadingMore());
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 1));
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
}

void ScreenshotGalleryViewModelTest::theNewestIsFirst()
{
    std::ignore = m_folders->makeScreenshot(2, m_folders->home().downloads());
    std::ignore = m_folders->makeScreenshot(1, m_folders->home().pictures());
    std::ignore = m_folders->makeScreenshot(4);
    std::ignore = m_folders->makeScreenshot(3);
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(names(model.allScreenshots()), numbered(1, 4));
}

void ScreenshotGalleryViewModelTest::filesOfOneDateAreAllThere()
{
    m_folders->makeScreenshots(40);
    const QDateTime date = QDateTime::currentDateTime().addDays(-1);
    for (int number = 11; number <= 30; ++number) {
        QFile file(m_folders->home().desktop() + QStringLiteral("/Screenshot %1.png").arg(number));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(date, QFileDevice::FileModificationTime));
    }
    ScreenshotGalleryViewModel model(std::nullopt, {SearchPathDirectory::Desktop});
    load(model);
    const QStringList listed = names(model.allScreenshots());
    QCOMPARE(listed.first(20), numbered(1, 10) + numbered(31, 40));
    QCOMPARE(ids(model.allScreenshots()).size(), 40);
}

void ScreenshotGalleryViewModelTest::changesAreAnnouncedBeforeTheyTakeEffect()
{
    m_folders->makeScreenshots(5);
    ScreenshotGalleryViewModel model(3, {SearchPathDirectory::Desktop});
    QList<Snapshot> seen;
    connect(&model, &ObservableObject::objectWillChange, this, [&] { seen.append(snapshot(model)); });
    load(model);
    QCOMPARE(
        seen, QList<Snapshot>({
                  {.all = 0, .displayed = 0, .isLoading = true},
                  {.all = 5, .displayed = 0, .isLoading = true},
                  {.all = 5, .displayed = 3, .isLoading = true},
              }));
    seen.clear();
    loadMore(model);
    QCOMPARE(
        seen, QList<Snapshot>({
                  {.all = 5, .displayed = 3},
                  {.all = 5, .displayed = 3, .isLoadingMore = true},
                  {.all = 5, .displayed = 5, .isLoadingMore = true},
              }));
}

void ScreenshotGalleryViewModelTest::refreshingShowsTheFirstBatchAgainWithoutLoading()
{
    m_folders->makeScreenshots(7);
    ScreenshotGalleryViewModel model(3, {SearchPathDirectory::Desktop});
    load(model);
    loadMore(model);
    QCOMPARE(model.displayedScreenshots().size(), 6);
    std::ignore = m_folders->makeScreenshot(0);
    model.loadScreenshots();
    QVERIFY(!model.isLoading());
    QTRY_COMPARE_WITH_TIMEOUT(model.allScreenshots().size(), 8, patience);
    QCOMPARE(names(model.displayedScreenshots()), numbered(0, 2));
}

void ScreenshotGalleryViewModelTest::onlyTheLastOfOverlappingListingsCounts()
{
    std::ignore = m_folders->makeScreenshot(1);
    ScreenshotGalleryViewModel model;
    QList<Snapshot> seen;
    connect(&model, &ObservableObject::objectWillChange, this, [&] { seen.append(snapshot(model)); });
    model.loadScreenshots();
    // It has ended, but its result hasn't been delivered when the next one begins.
    background::pool(BackgroundQueue::Listing).waitForDone();
    std::ignore = m_folders->makeScreenshot(2);
    load(model);
    QCOMPARE(
        seen, QList<Snapshot>({
                  {.all = 0, .displayed = 0, .isLoading = true},
                  {.all = 2, .displayed = 0, .isLoading = true},
                  {.all = 2, .displayed = 2, .isLoading = true},
              }));
}

void ScreenshotGalleryViewModelTest::aModelThatIsGoneIsNotTold()
{
    m_folders->makeScreenshots(5);
    int changes = 0;
    auto model = std::make_unique<ScreenshotGalleryViewModel>(3, QList{SearchPathDirectory::Desktop});
    load(*model);
    model->loadScreenshots();
    model->loadMore();
    background::pool(BackgroundQueue::Listing).waitForDone();
    connect(model.get(), &ObservableObject::objectWillChange, this, [&changes] { ++changes; });
    model.reset();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(changes, 0);
}

void ScreenshotGalleryViewModelTest::aFolderThatCannotBeReadIsPrintedAndTheOthersAreListed()
{
    if (::geteuid() == 0) {
        QSKIP("Root may read every folder");
    }
    std::ignore = m_folders->makeScreenshot(1);
    std::ignore = m_folders->makeScreenshot(2, m_folders->home().pictures());
    std::ignore = m_folders->makeScreenshot(3, m_folders->home().downloads());
    QCOMPARE(::chmod(QFile::encodeName(m_folders->home().pictures()).constData(), 0), 0);
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(
        names(model.allScreenshots()),
        QStringList({QStringLiteral("Screenshot 1.png"), QStringLiteral("Screenshot 3.png")}));
    QCOMPARE(
        m_output->lines(),
        QStringList(QString(
            QStringLiteral("Error accessing directory ") + m_folders->home().pictures() +
            QStringLiteral(": Error Domain=NSCocoaErrorDomain Code=257 \"Permission denied\""))));
}

void ScreenshotGalleryViewModelTest::aFileThatCannotBeReadIsPrintedAndTheOthersAreListed()
{
    if (::geteuid() == 0) {
        QSKIP("Root may enter every folder");
    }
    std::ignore = m_folders->makeScreenshot(1);
    std::ignore = m_folders->makeScreenshot(2, m_folders->home().pictures());
    // Its names can be listed, but nothing behind them can be reached.
    QCOMPARE(::chmod(QFile::encodeName(m_folders->home().pictures()).constData(), 0400), 0);
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(names(model.allScreenshots()), numbered(1, 1));
    QCOMPARE(
        m_output->lines(),
        QStringList(QStringLiteral("Error reading file attributes for Screenshot 2.png: Error "
                                   "Domain=NSCocoaErrorDomain Code=257 \"Permission denied\"")));
}

void ScreenshotGalleryViewModelTest::thePopoverShowsNineOfTwelve()
{
    m_folders->makeScreenshots(12);
    const auto popover = GalleryConfiguration::popover();
    ScreenshotGalleryViewModel model(popover.batchSize, popover.fallbackPaths);
    load(model);
    QCOMPARE(names(model.displayedScreenshots()), numbered(1, 9));
    QCOMPARE(model.remainingCount(), 3);
}

void ScreenshotGalleryViewModelTest::theWindowListsThreeFoldersAndTheOthersOnlyTheDesktop()
{
    std::ignore = m_folders->makeScreenshot(1);
    std::ignore = m_folders->makeScreenshot(2, m_folders->home().pictures());
    std::ignore = m_folders->makeScreenshot(3, m_folders->home().downloads());
    for (const auto &[configuration, found] :
         {std::pair(GalleryConfiguration::popover(), numbered(1, 1)),
          std::pair(GalleryConfiguration::window(), numbered(1, 3)),
          std::pair(GalleryConfiguration::settings(), numbered(1, 1))}) {
        ScreenshotGalleryViewModel model(configuration.batchSize, configuration.fallbackPaths);
        load(model);
        QCOMPARE(names(model.displayedScreenshots()), found);
    }
}

void ScreenshotGalleryViewModelTest::theBookmarkedFolderIsListedToo()
{
    std::ignore = m_folders->makeScreenshot(1);
    const QString archive = m_folders->home().path() + QStringLiteral("/Archive");
    files::makeFolder(archive);
    std::ignore = m_folders->makeScreenshot(2, archive);
    const auto before = UserDefaults::standard().data(preferences::desktopFolderBookmark);
    const auto bookmark = Bookmark::make(QUrl::fromLocalFile(archive), Bookmark::Origin::Automatic);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, bookmark.value_or(QByteArray()));
    ScreenshotGalleryViewModel model(9, {SearchPathDirectory::Desktop});
    load(model);
    UserDefaults::standard().setData(preferences::desktopFolderBookmark, before.value_or(QByteArray()));
    QCOMPARE(names(model.allScreenshots()), numbered(1, 2));
}

void ScreenshotGalleryViewModelTest::selectingTogglesByIdentity()
{
    m_folders->makeScreenshots(2);
    ScreenshotGalleryViewModel model;
    load(model);
    const ScreenshotItem first = model.displayedScreenshots().at(0);
    const ScreenshotItem second = model.displayedScreenshots().at(1);
    QList<qsizetype> counts;
    connect(&model, &ObservableObject::objectWillChange, this, [&] {
        counts.append(model.selectedIDs().size());
    });
    model.toggleSelection(first);
    model.toggleSelection(second);
    QCOMPARE(model.selectedIDs(), QSet<QString>({first.id, second.id}));
    // The same file, listed at another time.
    model.toggleSelection({.id = first.id, .creationDate = QDateTime::currentDateTimeUtc()});
    QCOMPARE(model.selectedIDs(), QSet<QString>({second.id}));
    QCOMPARE(counts, QList<qsizetype>({0, 1, 2}));
}

void ScreenshotGalleryViewModelTest::whatViewsBindIsAnnouncedOnce()
{
    ScreenshotGalleryViewModel model;
    const QSignalSpy changes(&model, &ObservableObject::objectWillChange);
    for (int twice = 0; twice < 2; ++twice) {
        model.setSelectionMode(true);
        model.setShowBulkDeleteConfirmation(true);
        model.setSelectedIDs({QStringLiteral("/a")});
        model.setCopyConfirmationMessage(QStringLiteral("copied"));
    }
    QCOMPARE(changes.size(), 4);
    QVERIFY(model.isSelectionMode());
    QVERIFY(model.showBulkDeleteConfirmation());
    QCOMPARE(model.selectedIDs(), QSet<QString>({QStringLiteral("/a")}));
    QCOMPARE(model.copyConfirmationMessage(), QStringLiteral("copied"));
    model.setCopyConfirmationMessage(std::nullopt);
    QVERIFY(!model.copyConfirmationMessage());
    QCOMPARE(changes.size(), 5);
}

void ScreenshotGalleryViewModelTest::tenThousandAreShownWithoutCopyingWhatIsShown()
{
    constexpr int count = 10'000;
    for (int number = 1; number <= count; ++number) {
        files::write(m_folders->home().desktop() + QStringLiteral("/Screenshot %1.png").arg(number), {});
    }
    ScreenshotGalleryViewModel model;
    load(model);
    QCOMPARE(model.allScreenshots().size(), count);
    // A list that grows in place moves only when its room is used up: as often as it doubles.
    int moves = 0;
    const ScreenshotItem *place = model.displayedScreenshots().constData();
    while (model.hasMore()) {
        loadMore(model);
        if (model.displayedScreenshots().constData() != place) {
            place = model.displayedScreenshots().constData();
            ++moves;
        }
    }
    QCOMPARE(model.displayedScreenshots(), model.allScreenshots());
    QVERIFY2(moves <= 20, qPrintable(QString::number(moves)));
}

QTEST_MAIN(ScreenshotGalleryViewModelTest)
#include "ScreenshotGalleryViewModelTest.moc"
