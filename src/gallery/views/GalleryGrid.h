#pragma once

#include "GalleryCells.h"
#include "GalleryGridGeometry.h"
#include "GallerySelection.h"
#include "ScreenshotItem.h"
#include "ThumbnailLoader.h"

#include <QSet>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QHelpEvent;
class ScreenshotGalleryViewModel;

/// The displayed screenshots of a gallery, row by row, newest first.
///
/// Cells exist only for what is in sight or near it, so its costs don't grow with the number of screenshots.
/// It lies in a scroll area, at any depth, or directly in its host; it is `outset` larger on each side than
/// the cells, for what stands out of them, and shares what is wider than its columns between both sides.
///
/// A click copies, and in selection mode selects; Shift+click selects all from the one clicked before. One
/// tab stop: arrows, Home, End and the page keys move a focus from cell to cell, in selection mode with
/// Shift selecting on the way; Space and Return do what a click does. Every other key is left to the host.
/// Files can be dragged out. A list for assistive programs, with an item per screenshot.
class GalleryGrid final : public QWidget {
    Q_OBJECT

public:
    static constexpr int outset = 16;

    /// The model has to live longer than the grid.
    explicit GalleryGrid(ScreenshotGalleryViewModel &model, QWidget *parent = nullptr);
    ~GalleryGrid() override;
    Q_DISABLE_COPY_MOVE(GalleryGrid)

    /// The context menu for a screenshot is wanted there.
    std::function<void(const ScreenshotItem &screenshot, QPoint globalPosition)> onContextMenu;
    /// A cell, in the grid's coordinates and with its focus ring, should be brought into sight.
    std::function<void(const QRect &cell)> onReveal;

    void setMetrics(const GalleryGridMetrics &metrics);

    [[nodiscard]] const GalleryGridMetrics &metrics() const { return m_metrics; }

    /// Shows the model as it is now.
    void render();

    /// The width of as many whole columns as fit, without the outsets.
    [[nodiscard]] int gridWidth(int availableWidth) const;

    /// The position that the keyboard is at; none without screenshots or before it was anywhere.
    [[nodiscard]] std::optional<int> currentIndex() const;
    /// Moves the keyboard's position and brings it into sight.
    void setCurrentIndex(int index);

    [[nodiscard]] const ScreenshotGalleryViewModel &model() const { return m_model; }

    [[nodiscard]] int count() const;
    [[nodiscard]] const ScreenshotItem &screenshotAt(int index) const;

    /// In the grid's coordinates, with the number under it.
    [[nodiscard]] QRect cellRect(int index) const;
    /// -1 where no cell is.
    [[nodiscard]] int indexAt(QPoint point) const;
    /// The one that the keyboard is at, where that is in sight, else the first that is so as a whole; -1
    /// where none is.
    [[nodiscard]] int cellInSight() const;
    void reveal(int index);
    /// The part of the grid that isn't cut off by what it lies in; empty while it isn't shown.
    [[nodiscard]] QRect rectInSight() const;

    /// The widget of a cell; null while there is none.
    [[nodiscard]] GalleryThumbnail *thumbnailAt(int index) const;

    /// What a click on the cell does. Brings it into sight first.
    void tap(int index);
    void showContextMenu(int index);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    enum class FocusRing { Hidden, Shown };

    [[nodiscard]] GalleryGridGeometry geometryFor(int width) const;

    [[nodiscard]] GalleryGridGeometry layout() const { return geometryFor(width()); }

    void watchAncestors();
    void updateCells();
    void reload(const QString &path);
    void updateAttention();
    /// The keyboard's position stays with its screenshot; where that has gone, with its place. False where it
    /// and its screenshot are what they were.
    bool findCurrentAgain();

    void makeCurrent(int index);
    /// The cell with its focus ring.
    [[nodiscard]] QRect ringRect(int index) const;
    void tapScreenshot(const ScreenshotItem &screenshot);
    void startDrag();
    void showToolTip(const QHelpEvent &event);

    ScreenshotGalleryViewModel &m_model;
    GalleryGridMetrics m_metrics = GalleryGridMetrics::expanded(GalleryGridSize::Standard);
    GallerySelection m_selection;

    GalleryCells m_cells;
    QSet<QString> m_changedWhileHidden; // paths
    std::unique_ptr<ThumbnailUse> m_use;

    /// Where the pointer was last, on the screen: it stays there while the cells move under it.
    std::optional<QPoint> m_pointer;
    /// Where the button went down, and on what, until it comes up again.
    QPoint m_pressPoint;
    QString m_pressedID;

    int m_currentIndex = -1;
    QString m_currentID;
    FocusRing m_focusRing = FocusRing::Hidden;
};
