#include "CpuTime.h"
#include "GalleryHome.h"
#include "HeldQueue.h"
#include "ImageCopy.h"
#include "TestImages.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>

#include <sys/stat.h>

namespace {

const QString uriList = QStringLiteral("text/uri-list");
const QString copiedFiles = QStringLiteral("x-special/gnome-copied-files");

const QMimeData &onClipboard()
{
    return *QGuiApplication::clipboard()->mimeData();
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void waitForCopies()
{
    background::pool(BackgroundQueue::UserInitiated).waitForDone();
    QCoreApplication::sendPostedEvents();
}

} // namespace

/// What lies on the clipboard, and what the user is told of it.
class GalleryCopyTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void oneImageIsItsOwnBytes();
    void severalImagesAreTheListOfTheirFiles();
    void oneSelectedImageIsItsOwnBytes();
    void onlyWhatIsShownIsCopied();
    void nothingSelectedIsNoneCopied();
    void theConfirmationComesAfterTheClipboardAndBeforeSelectingEnds();
    void aFileThatIsGoneIsPrintedAndStillConfirmed();
    void whatDoesNotLoadIsLeftOut_data();
    void whatDoesNotLoadIsLeftOut();
    void ofSeveralTheOnlyImageIsItsOwnBytes();
    void ofSeveralNoneThatLoadsLeavesTheClipboard();
    void hostileNamesAreCopied();
    void whatSomebodyElseCopiesInTheMeantimeDoesNotSilenceIt();
    void ofCopiesThatOverlapTheLastIsConfirmed();
    void aCopyDoesNotEndWithItsModel();
    void anImageThatGoesToTheTrashCanStillBePasted();
    void aLargeFileIsNotReadByTheMainThread();

private:
    [[nodiscard]] QString makeImage(int number, int width = 20) const;
    void loadThree(ScreenshotGalleryViewModel &model) const;

    const std::unique_ptr<GalleryHome> m_folders = std::make_unique<GalleryHome>();
    std::unique_ptr<CapturedOutput> m_output;
};

void GalleryCopyTest::init()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("what was there"));
    m_output = std::make_unique<CapturedOutput>();
}

void GalleryCopyTest::cleanup()
{
    m_folders->clear();
    m_output.reset();
}

QString GalleryCopyTest::makeImage(int number, int width) const
{
    QString path = m_folders->makeScreenshot(number);
    testImages::writeFile(path, testImages::blackPng({width, 10}));
    files::makeOlder(path, number * 60);
    return path;
}

void GalleryCopyTest::loadThree(ScreenshotGalleryViewModel &model) const
{
    for (int number = 1; number <= 3; ++number) {
        std::ignore = makeImage(number, 10 * number);
    }
    load(model);
}

void GalleryCopyTest::oneImageIsItsOwnBytes()
{
    const QString path = m_folders->home().desktop() + QStringLiteral("/Screenshot a.png");
    testImages::writeFile(path, testImages::blackPng({40, 30}));
    ScreenshotGalleryViewModel model;
    load(model);
    model.copyToClipboard(model.displayedScreenshots().constFirst());
    waitForCopies();
    QCOMPARE(onClipboard().data(QStringLiteral("image/png")), contents(path));
    QVERIFY(!onClipboard().hasUrls());
    QVERIFY(!onClipboard().hasText());
    QCOMPARE(
        model.copyConfirmationMessage(),
        QStringLiteral("'Screenshot a.png' has been copied to your clipboard"));
    QCOMPARE(m_output->lines(), QStringList());
}

void GalleryCopyTest::severalImagesAreTheListOfTheirFiles()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    // The order is that of the display, not of the selecting.
    select(model, {2, 0, 1});
    model.copySelectedToClipboard();
    waitForCopies();
    QByteArray uris;
    QByteArray copied = "copy";
    for (const ScreenshotItem &item : model.displayedScreenshots()) {
        uris += item.url().toEncoded() + "\r\n";
        copied += '\n' + item.url().toEncoded();
    }
    QCOMPARE(onClipboard().data(uriList), uris);
    QCOMPARE(onClipboard().data(copiedFiles), copied);
    QCOMPARE(onClipboard().formats(), QStringList({uriList, copiedFiles}));
    QVERIFY(!onClipboard().hasImage());
    QCOMPARE(model.copyConfirmationMessage(), QStringLiteral("3 screenshots copied to your clipboard"));
    QVERIFY(!model.isSelectionMode());
    QVERIFY(model.selectedIDs().isEmpty());
}

void GalleryCopyTest::oneSelectedImageIsItsOwnBytes()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    select(model, {1});
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(
        onClipboard().data(QStringLiteral("image/png")), contents(model.displayedScreenshots().at(1).id));
    QCOMPARE(
        model.copyConfirmationMessage(),
        QStringLiteral("'Screenshot 2.png' has been copied to your clipboard"));
    QVERIFY(!model.isSelectionMode());
}

void GalleryCopyTest::onlyWhatIsShownIsCopied()
{
    ScreenshotGalleryViewModel model(2, {SearchPathDirectory::Desktop});
    loadThree(model);
    model.setSelectedIDs(ids(model.allScreenshots()));
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(onClipboard().urls().size(), 2);
    QCOMPARE(model.copyConfirmationMessage(), QStringLiteral("2 screenshots copied to your clipboard"));
}

void GalleryCopyTest::nothingSelectedIsNoneCopied()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    model.setSelectionMode(true);
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(onClipboard().text(), QStringLiteral("what was there"));
    QCOMPARE(model.copyConfirmationMessage(), QStringLiteral("0 screenshots copied to your clipboard"));
    QVERIFY(!model.isSelectionMode());
}

void GalleryCopyTest::theConfirmationComesAfterTheClipboardAndBeforeSelectingEnds()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    select(model, {0, 1});
    QStringList seen;
    connect(&model, &ObservableObject::objectWillChange, this, [&] {
        seen.append(QStringLiteral("%1 files, %2, %3, %4 selected")
                        .arg(onClipboard().urls().size())
                        .arg(
                            model.copyConfirmationMessage() ? u"confirmed" : u"silent",
                            model.isSelectionMode() ? u"selecting" : u"not selecting")
                        .arg(model.selectedIDs().size()));
    });
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(
        seen, QStringList({
                  QStringLiteral("2 files, silent, selecting, 2 selected"),
                  QStringLiteral("2 files, confirmed, selecting, 2 selected"),
                  QStringLiteral("2 files, confirmed, not selecting, 2 selected"),
              }));
}

void GalleryCopyTest::aFileThatIsGoneIsPrintedAndStillConfirmed()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    const ScreenshotItem item = model.displayedScreenshots().constFirst();
    files::remove(item.id);
    model.copyToClipboard(item);
    waitForCopies();
    QCOMPARE(m_output->lines(), QStringList(QString(QStringLiteral("Failed to load image from ") + item.id)));
    QCOMPARE(onClipboard().text(), QStringLiteral("what was there"));
    QCOMPARE(
        model.copyConfirmationMessage(),
        QStringLiteral("'Screenshot 1.png' has been copied to your clipboard"));
}

void GalleryCopyTest::whatDoesNotLoadIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("an empty file") << QByteArray();
    QTest::newRow("text") << QByteArrayLiteral("not an image, whatever its name says");
    QTest::newRow("the beginning of an image") << QByteArray("\x89PNG\r\n\x1a\n", 8);
    QTest::newRow("a pipe") << QByteArray("pipe");
}

void GalleryCopyTest::whatDoesNotLoadIsLeftOut()
{
    QFETCH(const QByteArray, bytes);
    ScreenshotGalleryViewModel model;
    loadThree(model);
    const QString unreadable = model.displayedScreenshots().at(1).id;
    files::remove(unreadable);
    if (bytes == "pipe") {
        QCOMPARE(::mkfifo(QFile::encodeName(unreadable).constData(), 0600), 0);
    } else {
        testImages::writeFile(unreadable, bytes);
    }
    model.setSelectedIDs(ids(model.displayedScreenshots()));
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(
        onClipboard().urls(),
        QList<QUrl>({model.displayedScreenshots().at(0).url(), model.displayedScreenshots().at(2).url()}));
    QCOMPARE(
        m_output->lines(), QStringList(QString(QStringLiteral("Failed to load image from ") + unreadable)));
    // It tells how many were taken.
    QCOMPARE(model.copyConfirmationMessage(), QStringLiteral("3 screenshots copied to your clipboard"));
}

void GalleryCopyTest::ofSeveralTheOnlyImageIsItsOwnBytes()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    files::remove(model.displayedScreenshots().at(0).id);
    files::remove(model.displayedScreenshots().at(2).id);
    model.setSelectedIDs(ids(model.displayedScreenshots()));
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(
        onClipboard().data(QStringLiteral("image/png")), contents(model.displayedScreenshots().at(1).id));
    QVERIFY(!onClipboard().hasUrls());
    QCOMPARE(m_output->lines().size(), 2);
}

void GalleryCopyTest::ofSeveralNoneThatLoadsLeavesTheClipboard()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    QStringList lines;
    for (const ScreenshotItem &item : model.displayedScreenshots()) {
        files::remove(item.id);
        lines.append(QStringLiteral("Failed to load image from ") + item.id);
    }
    model.setSelectedIDs(ids(model.displayedScreenshots()));
    model.copySelectedToClipboard();
    waitForCopies();
    QCOMPARE(onClipboard().text(), QStringLiteral("what was there"));
    QCOMPARE(m_output->lines(), lines);
}

void GalleryCopyTest::hostileNamesAreCopied()
{
    const QStringList hostile = {
        QStringLiteral("Screenshot line\nbreak.png"), QStringLiteral("Screenshot <b>&amp; 100%1 #?.png"),
        QStringLiteral("Screenshot \u202egnp.png")};
    for (const QString &name : hostile) {
        testImages::writeFile(m_folders->home().desktop() + u'/' + name, testImages::blackPng({4, 4}));
    }
    ScreenshotGalleryViewModel model;
    load(model);
    for (const ScreenshotItem &item : model.displayedScreenshots()) {
        model.copyToClipboard(item);
        waitForCopies();
        QCOMPARE(
            model.copyConfirmationMessage(),
            QString(u'\'' + item.name() + QStringLiteral("' has been copied to your clipboard")));
    }
    model.setSelectedIDs(ids(model.displayedScreenshots()));
    model.copySelectedToClipboard();
    waitForCopies();
    const QList<QByteArray> lines = onClipboard().data(copiedFiles).split('\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.constFirst(), QByteArrayLiteral("copy"));
    for (qsizetype position = 0; position < 3; ++position) {
        const QUrl url = QUrl::fromEncoded(lines.at(position + 1), QUrl::StrictMode);
        QCOMPARE(url.toLocalFile(), model.displayedScreenshots().at(position).id);
    }
    QCOMPARE(onClipboard().urls().size(), 3);
}

void GalleryCopyTest::whatSomebodyElseCopiesInTheMeantimeDoesNotSilenceIt()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    HeldQueue copies(BackgroundQueue::UserInitiated);
    model.copyToClipboard(model.displayedScreenshots().at(0));
    const QString newer = model.displayedScreenshots().at(1).id;
    QVERIFY(ImageCopy().write(ImageCopy::load({newer}, [](const QString &) {})));
    copies.release();
    waitForCopies();
    QCOMPARE(onClipboard().data(QStringLiteral("image/png")), contents(newer));
    QCOMPARE(
        model.copyConfirmationMessage(),
        QStringLiteral("'Screenshot 1.png' has been copied to your clipboard"));
}

void GalleryCopyTest::ofCopiesThatOverlapTheLastIsConfirmed()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    QStringList before;
    connect(&model, &ObservableObject::objectWillChange, this, [&model, &before] {
        before.append(model.copyConfirmationMessage().value_or(QString()));
    });
    HeldQueue copies(BackgroundQueue::UserInitiated);
    model.copyToClipboard(model.displayedScreenshots().at(0));
    model.copyToClipboard(model.displayedScreenshots().at(1));
    copies.release();
    waitForCopies();
    QCOMPARE(before, QStringList(QString()));
    QCOMPARE(
        model.copyConfirmationMessage(),
        QStringLiteral("'Screenshot 2.png' has been copied to your clipboard"));
}

void GalleryCopyTest::aCopyDoesNotEndWithItsModel()
{
    auto model = std::make_unique<ScreenshotGalleryViewModel>();
    loadThree(*model);
    const QString path = model->displayedScreenshots().constFirst().id;
    model->copyToClipboard(model->displayedScreenshots().constFirst());
    model.reset();
    waitForCopies();
    QCOMPARE(onClipboard().data(QStringLiteral("image/png")), contents(path));
}

void GalleryCopyTest::anImageThatGoesToTheTrashCanStillBePasted()
{
    ScreenshotGalleryViewModel model;
    loadThree(model);
    const ScreenshotItem item = model.displayedScreenshots().constFirst();
    const QByteArray bytes = contents(item.id);
    model.copyToClipboard(item);
    waitForCopies();
    select(model, {0});
    model.deleteSelected();
    QTRY_VERIFY_WITH_TIMEOUT(!model.isDeleting(), patience);
    QVERIFY(!files::exists(item.id));
    QCOMPARE(onClipboard().data(QStringLiteral("image/png")), bytes);
}

void GalleryCopyTest::aLargeFileIsNotReadByTheMainThread()
{
    // Far larger than any screenshot, so that reading it would show even on a fast machine.
    const QString path = m_folders->home().desktop() + QStringLiteral("/Screenshot 1.png");
    testImages::writeFile(path, testImages::blackPng({5120, 2880}) + QByteArray(100'000'000, 'x'));
    ScreenshotGalleryViewModel model;
    load(model);
    const ScreenshotItem item = model.displayedScreenshots().constFirst();
    const CpuTime time;
    model.copyToClipboard(item);
    waitForCopies();
    const auto used = time.elapsed();
    QVERIFY(model.copyConfirmationMessage());
    QVERIFY2(used < std::chrono::milliseconds(10), qPrintable(QString::number(used.count())));
    QCOMPARE(onClipboard().data(QStringLiteral("image/png")).size(), item.fileSize);
}

QTEST_MAIN(GalleryCopyTest)
#include "GalleryCopyTest.moc"
