#include "GalleryGrid.h"
#include "FileManager.h"
#include "GalleryViewFixture.h"
#include "rendering.h"
#include "screenshotDescription.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextDocumentFragment>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int outset = GalleryGrid::outset;

GalleryGridMetrics metrics(GalleryGridSize size)
{
    return GalleryGridMetrics::expanded(size);
}

QStringList shownNames(const GalleryGrid &grid)
{
    QStringList names;
    for (const GalleryThumbnail *cell : shownCells(grid)) {
        names.append(cell->screenshot().name());
    }
    return names;
}

/// The longest that one piece of work may keep the main thread, in milliseconds: 50, but sanitizers make
/// everything several times as slow.
constexpr qint64 longestStall = 150;

} // namespace

class GalleryGridTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void cellsLieInWholeColumns_data();
    void cellsLieInWholeColumns();
    void lastRowIsFlushWithTheFirstColumn();
    void rowsRunFromRightToLeftWhereTextsDo();
    void smallerSizeShowsTheSameScreenshots();
    void embeddedGridHasThreeColumns();
    void captionsCountFromOne();
    void unreadableFileDoesNotStopTheOthers();
    void manyScreenshotsMakeFewCells();
    void deletedScreenshotsLeaveTheirCellsToOthers();
    void clickCopies();
    void clickInSelectionModeSelects();
    void shiftClickSelectsEverythingBetween();
    void releaseInAnotherCellIsNoClick();
    void pointerHoversOneCellAndNothingMoves();
    void hoverFollowsWhileScrolling();
    void rightClickAsksForTheContextMenu();
    void toolTipShowsHostileNamesAsTheyAre();
    void toolTipOfALongNameIsBroken_data();
    void toolTipOfALongNameIsBroken();
    void thumbnailsAreKeptOnlyWhileShown();
    void whatChangesWhileHiddenIsDecodedWhenShown();

private:
    void load() { ::load(*m_model); }

    std::unique_ptr<GalleryHome> m_home;
    std::unique_ptr<ScreenshotGalleryViewModel> m_model;
};

void GalleryGridTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GalleryGridTest::init()
{
    m_model = std::make_unique<ScreenshotGalleryViewModel>(
        std::nullopt, QList<SearchPathDirectory>{SearchPathDirectory::Desktop});
}

void GalleryGridTest::cleanup()
{
    m_home->clear();
    m_model.reset();
}

void GalleryGridTest::cellsLieInWholeColumns_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("columns");
    QTest::newRow("wide") << 2000 << 6;
    QTest::newRow("just six") << 6 * 132 - 12 << 6;
    QTest::newRow("not quite six") << 6 * 132 - 13 << 5;
    QTest::newRow("in the settings") << 385 << 3;
    QTest::newRow("narrow") << 10 << 1;
}

void GalleryGridTest::cellsLieInWholeColumns()
{
    QFETCH(const int, width);
    QFETCH(const int, columns);
    m_home->makeScreenshots(13);
    load();
    GalleryGrid grid(*m_model);
    QCOMPARE(grid.gridWidth(width), columns * 132 - 12);
    const int rows = (13 + columns - 1) / columns;
    QCOMPARE(grid.heightForWidth(width + 2 * outset), rows * (90 + 18 + 12) - 12 + 2 * outset);
    grid.resize(grid.gridWidth(width) + 2 * outset, 500);
    QCOMPARE(grid.cellRect(0), QRect(outset, outset, 120, 108));
    QCOMPARE(grid.cellRect(columns), QRect(outset, outset + 120, 120, 108));
    QCOMPARE(grid.cellRect(columns - 1).right() + 1, grid.width() - outset);
}

void GalleryGridTest::lastRowIsFlushWithTheFirstColumn()
{
    m_home->makeScreenshots(7);
    load();
    GridWindow window(*m_model);
    window.show();
    QCOMPARE(window.grid().cellRect(6).left(), window.grid().cellRect(0).left());
    // Wider than six columns: what is left over is shared.
    const int free = window.grid().width() - (6 * 132 - 12);
    QVERIFY(free > 0);
    QCOMPARE(window.grid().cellRect(0).left(), free / 2);
}

void GalleryGridTest::rowsRunFromRightToLeftWhereTextsDo()
{
    m_home->makeScreenshots(7);
    load();
    GridWindow window(*m_model);
    window.area().setLayoutDirection(Qt::RightToLeft);
    window.show();
    GalleryGrid &grid = window.grid();
    QVERIFY(grid.cellRect(0).left() > grid.cellRect(1).left());
    QCOMPARE(grid.cellRect(6).left(), grid.cellRect(0).left());
    QCOMPARE(grid.indexAt(grid.cellRect(1).center()), 1);
}

void GalleryGridTest::smallerSizeShowsTheSameScreenshots()
{
    m_home->makeScreenshots(31);
    load();
    select(*m_model, {0, 30});
    const QSet<QString> selected = m_model->selectedIDs();
    GridWindow window(*m_model, {1000, 800});
    GalleryGrid &grid = window.grid();
    grid.setMetrics(metrics(GalleryGridSize::Large));
    window.show();
    QCOMPARE(grid.cellRect(3).top(), grid.cellRect(0).top() + 150 + 18 + 16);
    grid.setMetrics(metrics(GalleryGridSize::Compact));
    QCOMPARE(grid.cellRect(0).width(), 80);
    QCOMPARE(grid.cellRect(9).top(), grid.cellRect(0).top());
    QCOMPARE(grid.cellRect(10).top(), grid.cellRect(0).top() + 60 + 18 + 8);
    QCOMPARE(shownNames(grid), numbered(1, 31));
    QCOMPARE(m_model->selectedIDs(), selected);
    for (const GalleryThumbnail *cell : shownCells(grid)) {
        QCOMPARE(cell->imageSize(), QSize(80, 60));
        QCOMPARE(cell->isSelected(), selected.contains(cell->screenshot().id));
    }
}

void GalleryGridTest::embeddedGridHasThreeColumns()
{
    m_home->makeScreenshots(9);
    load();
    GalleryGrid grid(*m_model);
    grid.setMetrics(GalleryGridMetrics::embedded());
    QCOMPARE(grid.sizeHint(), QSize(248 + 2 * outset, 188 + 2 * outset));
    grid.resize(grid.sizeHint());
    QCOMPARE(grid.cellRect(2), QRect(outset + 2 * 84, outset, 80, 60));
    QCOMPARE(grid.cellRect(8), QRect(outset + 2 * 84, outset + 2 * 64, 80, 60));
    grid.show();
    for (const GalleryThumbnail *cell : shownCells(grid)) {
        QVERIFY(cell->caption().isEmpty());
    }
}

void GalleryGridTest::captionsCountFromOne()
{
    m_home->makeScreenshots(12);
    load();
    GridWindow window(*m_model);
    window.show();
    QCOMPARE(window.grid().thumbnailAt(0)->caption(), QStringLiteral("01"));
    QCOMPARE(window.grid().thumbnailAt(9)->caption(), QStringLiteral("10"));
    QVERIFY(window.grid().thumbnailAt(12) == nullptr);
}

void GalleryGridTest::unreadableFileDoesNotStopTheOthers()
{
    makePictures(*m_home, 3);
    testImages::writeFile(m_home->makeScreenshot(2), QByteArrayLiteral("not an image"));
    files::makeOlder(m_home->home().desktop() + QStringLiteral("/Screenshot 2.png"), 120);
    load();
    GridWindow window(*m_model);
    window.show();
    const QList<GalleryThumbnail *> cells = shownCells(window.grid());
    QCOMPARE(cells.size(), 3);
    QTRY_VERIFY_WITH_TIMEOUT(cells.at(1)->isUnreadable(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!cells.at(0)->thumbnailImage().isNull(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!cells.at(2)->thumbnailImage().isNull(), patience);
    QVERIFY(cells.at(1)->thumbnailImage().isNull());
}

void GalleryGridTest::manyScreenshotsMakeFewCells()
{
    constexpr int count = 10'000;
    for (int number = 0; number < count; ++number) {
        files::write(m_home->home().desktop() + QStringLiteral("/Screenshot %1.png").arg(number), {});
    }
    load();
    QCOMPARE(m_model->displayedScreenshots().size(), count);
    GridWindow window(*m_model, {1000, 700});
    GalleryGrid &grid = window.grid();
    const auto isQuick = [](const auto &work) {
        QElapsedTimer timer;
        timer.start();
        work();
        return timer.elapsed() < longestStall;
    };
    window.show();
    QVERIFY(isQuick([&] { grid.render(); }));
    QVERIFY(grid.findChildren<GalleryThumbnail *>().size() < 100);
    for (int y = 0; y < grid.height(); y += grid.height() / 20) {
        QVERIFY(isQuick([&] { window.scrollTo(y); }));
        QVERIFY(grid.findChildren<GalleryThumbnail *>().size() < 150);
    }
    window.scrollTo(grid.height());
    QVERIFY(grid.thumbnailAt(count - 1) != nullptr);
    QVERIFY(grid.thumbnailAt(0) == nullptr);
    for (const GalleryGridSize size : galleryGrid::allSizes) {
        QVERIFY(isQuick([&] { grid.setMetrics(metrics(size)); }));
    }
    QVERIFY(isQuick([&] { grid.setCurrentIndex(0); }));
    QVERIFY(grid.thumbnailAt(0) != nullptr);
}

void GalleryGridTest::deletedScreenshotsLeaveTheirCellsToOthers()
{
    makePictures(*m_home, 8);
    load();
    GridWindow window(*m_model);
    window.show();
    const GalleryThumbnail *eighth = window.grid().thumbnailAt(7);
    QTRY_VERIFY_WITH_TIMEOUT(!eighth->thumbnailImage().isNull(), patience);
    select(*m_model, {0, 1});
    m_model->deleteSelected();
    QTRY_COMPARE_WITH_TIMEOUT(window.grid().count(), 6, patience);
    QTRY_COMPARE(shownNames(window.grid()), numbered(3, 8));
    QCOMPARE(window.grid().thumbnailAt(5), eighth);
    QCOMPARE(eighth->caption(), QStringLiteral("06"));
    QVERIFY(!eighth->thumbnailImage().isNull());
}

void GalleryGridTest::clickCopies()
{
    makePictures(*m_home, 2);
    load();
    GridWindow window(*m_model);
    window.show();
    window.click(1);
    QTRY_VERIFY_WITH_TIMEOUT(m_model->copyConfirmationMessage().has_value(), patience);
    QVERIFY(m_model->copyConfirmationMessage()->contains(QStringLiteral("Screenshot 2.png")));
    QVERIFY(m_model->selectedIDs().isEmpty());
}

void GalleryGridTest::clickInSelectionModeSelects()
{
    m_home->makeScreenshots(3);
    load();
    m_model->setSelectionMode(true);
    GridWindow window(*m_model);
    window.show();
    window.click(1);
    QCOMPARE(m_model->selectedIDs(), ids(m_model->displayedScreenshots().sliced(1, 1)));
    QTRY_VERIFY(window.grid().thumbnailAt(1)->isSelected());
    window.click(1);
    QVERIFY(m_model->selectedIDs().isEmpty());
    QVERIFY(!m_model->copyConfirmationMessage());
}

void GalleryGridTest::shiftClickSelectsEverythingBetween()
{
    m_home->makeScreenshots(12);
    load();
    m_model->setSelectionMode(true);
    GridWindow window(*m_model);
    window.show();
    const auto expectSelected = [this](const QList<qsizetype> &positions) {
        QSet<QString> expected;
        for (const qsizetype position : positions) {
            expected.insert(m_model->displayedScreenshots().at(position).id);
        }
        QCOMPARE(m_model->selectedIDs(), expected);
    };
    window.click(10);
    window.click(2);
    window.click(5, Qt::ShiftModifier);
    expectSelected({2, 3, 4, 5, 10});
    window.click(1, Qt::ShiftModifier);
    expectSelected({1, 2, 10});
    m_model->setSelectedIDs({});
    window.click(3, Qt::ShiftModifier);
    expectSelected({2, 3});
}

void GalleryGridTest::releaseInAnotherCellIsNoClick()
{
    m_home->makeScreenshots(3);
    load();
    m_model->setSelectionMode(true);
    GridWindow window(*m_model);
    window.show();
    QTest::mousePress(&window.grid(), Qt::LeftButton, {}, window.middle(0));
    QVERIFY(window.grid().thumbnailAt(0)->attention().isPressed);
    QTest::mouseRelease(&window.grid(), Qt::LeftButton, {}, window.middle(1));
    QVERIFY(m_model->selectedIDs().isEmpty());
    QTest::mouseClick(&window.grid(), Qt::RightButton, {}, window.middle(1));
    QTest::mouseClick(&window.grid(), Qt::LeftButton, {}, QPoint(1, 1));
    QVERIFY(m_model->selectedIDs().isEmpty());
}

void GalleryGridTest::pointerHoversOneCellAndNothingMoves()
{
    m_home->makeScreenshots(9);
    load();
    GridWindow window(*m_model);
    window.show();
    QList<QPoint> before;
    for (const GalleryThumbnail *cell : shownCells(window.grid())) {
        before.append(cell->pos());
    }
    QTest::mouseMove(&window.grid(), window.middle(4));
    QTRY_VERIFY(window.grid().thumbnailAt(4)->isHovered());
    qsizetype index = 0;
    for (const GalleryThumbnail *cell : shownCells(window.grid())) {
        QCOMPARE(cell->isHovered(), index == 4);
        QCOMPARE(cell->pos(), before.at(index++));
    }
    QTest::mouseMove(&window.grid(), window.grid().cellRect(4).bottomRight() + QPoint(6, 6));
    QTRY_VERIFY(!window.grid().thumbnailAt(4)->isHovered());
}

void GalleryGridTest::hoverFollowsWhileScrolling()
{
    m_home->makeScreenshots(60);
    load();
    GridWindow window(*m_model);
    window.show();
    QTest::mouseMove(&window.grid(), window.middle(6));
    QTRY_VERIFY(window.grid().thumbnailAt(6)->isHovered());
    window.scrollTo(window.grid().metrics().rowPitch());
    QVERIFY(window.grid().thumbnailAt(12)->isHovered());
    QVERIFY(!window.grid().thumbnailAt(6)->isHovered());
}

void GalleryGridTest::rightClickAsksForTheContextMenu()
{
    m_home->makeScreenshots(3);
    load();
    GridWindow window(*m_model);
    window.show();
    QStringList asked;
    window.grid().onContextMenu = [&asked](const ScreenshotItem &screenshot, QPoint) {
        asked.append(screenshot.name());
    };
    const auto rightClick = [&window](QPoint position) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, position, window.grid().mapToGlobal(position));
        QApplication::sendEvent(&window.grid(), &event);
        return event.isAccepted();
    };
    QVERIFY(rightClick(window.middle(1)));
    QCOMPARE(asked, QStringList(QStringLiteral("Screenshot 2.png")));
    rightClick(QPoint(1, 1));
    QCOMPARE(asked.size(), 1);
}

void GalleryGridTest::toolTipShowsHostileNamesAsTheyAre()
{
    const QString hostile =
        QStringLiteral("Screenshot <b>a\nb<i>") + QChar(0x202E) + QStringLiteral("gpj.png");
    files::write(m_home->home().desktop() + u'/' + hostile, "contents");
    load();
    QCOMPARE(m_model->displayedScreenshots().size(), 1);
    GridWindow window(*m_model);
    window.show();
    QHelpEvent event(QEvent::ToolTip, window.middle(0), window.grid().mapToGlobal(window.middle(0)));
    QApplication::sendEvent(&window.grid(), &event);
    QVERIFY(QToolTip::isVisible());
    const QString text = QToolTip::text();
    QVERIFY(text.contains(QStringLiteral("&lt;b&gt;a\u240Ab&lt;i&gt;\uFFFDgpj.png")));
    QVERIFY(text.contains(QLocale().formattedDataSize(8)));
    QVERIFY(!text.contains(u'\n'));
    QToolTip::hideText();
}

void GalleryGridTest::toolTipOfALongNameIsBroken_data()
{
    QTest::addColumn<QString>("rest");
    QTest::newRow("one word") << QStringLiteral("verylongname").repeated(18);
    QTest::newRow("many words") << QStringLiteral("with many words ").repeated(14);
    QTest::newRow("markup") << QStringLiteral("<nobr>&nbsp;").repeated(18);
    QTest::newRow("right to left") << QStringLiteral("שלוםעולם").repeated(14);
}

void GalleryGridTest::toolTipOfALongNameIsBroken()
{
    QFETCH(const QString, rest);
    const QString name = QStringLiteral("Screenshot ") + rest + QStringLiteral(".png");
    files::write(m_home->home().desktop() + u'/' + name, "contents");
    load();
    GridWindow window(*m_model);
    window.show();
    QHelpEvent event(QEvent::ToolTip, window.middle(0), window.grid().mapToGlobal(window.middle(0)));
    QApplication::sendEvent(&window.grid(), &event);
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isToolTip = [](const QWidget *widget) {
        return widget->isVisible() && widget->windowType() == Qt::ToolTip;
    };
    const auto toolTip = std::ranges::find_if(windows, isToolTip);
    QVERIFY(toolTip != windows.end());
    QVERIFY2((*toolTip)->width() <= 360 + 16, qPrintable(QString::number((*toolTip)->width())));
    QVERIFY((*toolTip)->width() > 240);
    // Nothing but blanks is lost.
    const auto letters = [](QString text) { return text.remove(QRegularExpression(QStringLiteral("\\s"))); };
    const QString shown = letters(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText());
    QVERIFY2(shown.contains(letters(name)), qPrintable(shown));
    QToolTip::hideText();
}

void GalleryGridTest::thumbnailsAreKeptOnlyWhileShown()
{
    makePictures(*m_home, 1);
    load();
    const QString path = m_model->displayedScreenshots().constFirst().id;
    GalleryGrid grid(*m_model);
    grid.resize(grid.sizeHint());
    QVERIFY(shownCells(grid).isEmpty());
    grid.show();
    QTRY_VERIFY_WITH_TIMEOUT(!ThumbnailLoader::shared().cached(path, 240).isNull(), patience);
    // Another size is another thumbnail.
    QVERIFY(ThumbnailLoader::shared().cached(path, 160).isNull());
    grid.setMetrics(metrics(GalleryGridSize::Compact));
    QTRY_VERIFY_WITH_TIMEOUT(!ThumbnailLoader::shared().cached(path, 160).isNull(), patience);
}

void GalleryGridTest::whatChangesWhileHiddenIsDecodedWhenShown()
{
    const QString path = makePicture(*m_home, 1, quarters({160, 120}));
    load();
    GalleryGrid grid(*m_model);
    grid.resize(grid.sizeHint());
    grid.show();
    ThumbnailLoader &loader = ThumbnailLoader::shared();
    loader.revalidate();
    const auto cell = [&grid] { return grid.thumbnailAt(0); };
    QTRY_COMPARE_WITH_TIMEOUT(cell()->thumbnailImage().size(), QSize(160, 120), patience);
    grid.hide();
    std::ignore = makePicture(*m_home, 1, quarters({80, 120}));
    QSignalSpy dropped(&loader, &ThumbnailLoader::dropped);
    loader.revalidate();
    // Also what earlier tests have left.
    QTRY_VERIFY_WITH_TIMEOUT(dropped.contains(QVariantList{path}), patience);
    background::pool(BackgroundQueue::Thumbnails).waitForDone();
    QCoreApplication::sendPostedEvents();
    QVERIFY(loader.cached(path, 240).isNull());
    grid.show();
    QTRY_COMPARE_WITH_TIMEOUT(cell()->thumbnailImage().size(), QSize(80, 120), patience);
}

QTEST_MAIN(GalleryGridTest)
#include "GalleryGridTest.moc"
