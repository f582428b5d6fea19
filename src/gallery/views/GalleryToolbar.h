#pragma once

#include "GalleryLayout.h"

class PushButton;
class ScreenshotGalleryViewModel;
class SegmentedPicker;
class TextLabel;

/// The head of a gallery in a window: how many screenshots there are, the grid's size, and what can be done
/// with them. One row, or two where the window is narrow.
class GalleryToolbar final : public QWidget {
    Q_OBJECT

public:
    /// Narrower than this, in points, it has two rows.
    static constexpr int leastWidthOfOneRow = 700;

    GalleryToolbar(ScreenshotGalleryViewModel &model, const GalleryActions &actions, QWidget *parent);

    void render(GalleryGridSize gridSize);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

    /// What stays free at either side, in points.
    [[nodiscard]] static int sideMargin(int width);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void connectButtons(const GalleryActions &actions);
    void renderCount();
    void renderButtons();
    void layOut();
    void layOutInOneRow();
    void layOutInTwoRows();
    /// Puts what is visible beside each other, ending at the end of the row; answers what is left of it.
    QRect placeAtEnd(QRect row, const QList<PushButton *> &buttons) const;
    /// The same for the picker.
    QRect placePickerAtEnd(QRect row) const;
    void place(QWidget &widget, const QRect &box) const;
    [[nodiscard]] QList<PushButton *> visibleButtons() const;

    ScreenshotGalleryViewModel &m_model;

    TextLabel *m_count;
    TextLabel *m_selectionCount;
    TextLabel *m_gridSizeTitle;
    SegmentedPicker *m_gridSize;
    QWidget *m_separator;
    PushButton *m_refresh;
    PushButton *m_select;
    PushButton *m_copy;
    PushButton *m_delete;
    PushButton *m_cancel;
};
