#pragma once

#include "GalleryLayout.h"

class AccessBanner;
class GalleryPlaceholder;
class GalleryToolbar;
class Hairline;
class PushButton;
class ScreenshotGalleryViewModel;
class ScrollArea;
class TextLabel;

/// The gallery in a window: the toolbar, and below it the whole grid, which scrolls under it, with the way to
/// more.
class ExpandedGallery final : public GalleryLayout {
    Q_OBJECT

public:
    ExpandedGallery(
        ScreenshotGalleryViewModel &model, const GalleryActions &actions, QWidget *parent = nullptr);

    void render(const GalleryViewState &state) override;

    [[nodiscard]] GalleryGrid &grid() const override { return *m_grid; }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void renderContents(const GalleryViewState &state);
    void renderLoadMore();
    void layOut();
    void layOutContents();
    void layOutLoadMore(int top, int width);
    void reveal(const QRect &cell);
    [[nodiscard]] int topOf(int cell) const;

    ScreenshotGalleryViewModel &m_model;

    GalleryToolbar *m_toolbar;
    Hairline *m_hairline;
    ScrollArea *m_scrollArea;
    /// What is scrolled; the rest stands in it.
    QWidget *m_contents;
    AccessBanner *m_banner;
    GalleryGrid *m_grid;
    GalleryPlaceholder *m_placeholder;
    PushButton *m_loadMore;
    TextLabel *m_footer;
};
