#pragma once

#include "GalleryGrid.h"
#include "GalleryHome.h"
#include "GalleryThumbnail.h"
#include "TestImages.h"

#include <QAbstractAnimation>
#include <QApplication>
#include <QImage>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <algorithm>

/// A picture whose top left is red, top right green, bottom left blue and bottom right yellow.
inline QImage quarters(QSize size)
{
    constexpr QRgb red = 0xFFC00000;
    constexpr QRgb green = 0xFF00C000;
    constexpr QRgb blue = 0xFF0000C0;
    constexpr QRgb yellow = 0xFFC0C000;
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool isLeft = x < size.width() / 2;
            const bool isTop = y < size.height() / 2;
            image.setPixel(x, y, isTop ? (isLeft ? red : green) : (isLeft ? blue : yellow));
        }
    }
    return image;
}

/// Makes screenshot `number` a real image, of its age.
inline QString makePicture(const GalleryHome &home, int number, const QImage &image)
{
    const QString path = home.makeScreenshot(number);
    testImages::writeFile(path, testImages::encoded(image, "png"));
    files::makeOlder(path, number * 60);
    return path;
}

/// Screenshots 1 to `count` on the Desktop, with real pictures.
inline void makePictures(const GalleryHome &home, int count)
{
    for (int number = 1; number <= count; ++number) {
        std::ignore = makePicture(home, number, quarters({160, 120}));
    }
}

/// Until nothing moves any more: transitions are animations, children of what they move.
inline void settle()
{
    const auto isStill = [](const QWidget *widget) {
        return widget->findChildren<QAbstractAnimation *>().isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(std::ranges::all_of(QApplication::allWidgets(), isStill), patience);
}

/// A grid in a scroll area, as in a window.
class GridWindow final {
public:
    explicit GridWindow(ScreenshotGalleryViewModel &model, QSize size = {900, 600})
        : m_grid(new GalleryGrid(model))
    {
        m_area.setWidgetResizable(true);
        m_area.setFrameShape(QFrame::NoFrame);
        m_area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_area.setWidget(m_grid);
        m_area.resize(size);
        m_grid->onReveal = [this](const QRect &cell) {
            m_area.ensureVisible(cell.center().x(), cell.center().y(), 0, cell.height() / 2 + 1);
        };
        QObject::connect(
            &model, &ObservableObject::objectWillChange, m_grid, [this] { m_grid->render(); },
            Qt::QueuedConnection);
    }

    void show()
    {
        // What is remembered may be of an earlier test's files of these names.
        ThumbnailLoader::shared().revalidate();
        m_area.show();
        m_area.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_area));
    }

    [[nodiscard]] GalleryGrid &grid() { return *m_grid; }

    [[nodiscard]] QScrollArea &area() { return m_area; }

    void scrollTo(int y) { m_area.verticalScrollBar()->setValue(y); }

    /// The middle of a cell's image.
    [[nodiscard]] QPoint middle(int index) const
    {
        const GalleryGridMetrics &metrics = m_grid->metrics();
        return m_grid->cellRect(index).topLeft() + QPoint(metrics.cellWidth / 2, metrics.cellHeight / 2);
    }

    void click(int index, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(m_grid, Qt::LeftButton, modifiers, middle(index));
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(m_grid, key, modifiers); }

private:
    QScrollArea m_area;
    GalleryGrid *m_grid;
};

/// The cells that one could see, in the order of their numbers.
inline QList<GalleryThumbnail *> shownCells(const GalleryGrid &grid)
{
    QList<GalleryThumbnail *> cells = grid.findChildren<GalleryThumbnail *>();
    cells.removeIf([](const GalleryThumbnail *cell) { return cell->isHidden(); });
    std::ranges::sort(cells, {}, [](const GalleryThumbnail *cell) { return cell->frameNumber(); });
    return cells;
}
