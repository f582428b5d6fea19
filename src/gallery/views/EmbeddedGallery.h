#pragma once

#include "GalleryLayout.h"

class GalleryPlaceholder;
class Hairline;
class OverflowCount;
class PushButton;
class ScreenshotGalleryViewModel;
class TextLabel;

/// The gallery in the popover under the status item: the most recent screenshots in three columns, a way to
/// the window, and selecting. It always has the same size, and selecting moves nothing.
class EmbeddedGallery final : public GalleryLayout {
    Q_OBJECT

public:
    EmbeddedGallery(
        ScreenshotGalleryViewModel &model, const GalleryActions &actions, QWidget *parent = nullptr);

    void render(const GalleryViewState &state) override;

    [[nodiscard]] GalleryGrid &grid() const override { return *m_grid; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void connectButtons(const GalleryActions &actions);
    void renderHeader();
    void renderContents();
    void renderFoot();
    void layOut();
    void place(QWidget &widget, const QRect &box) const;
    void place(PushButton &button, const QRect &box) const;

    ScreenshotGalleryViewModel &m_model;

    TextLabel *m_title;
    TextLabel *m_count;
    PushButton *m_expand;
    PushButton *m_cancel;

    GalleryGrid *m_grid;
    GalleryPlaceholder *m_placeholder;
    OverflowCount *m_overflow;
    PushButton *m_viewAll;
    TextLabel *m_hint;

    Hairline *m_hairline;
    PushButton *m_selectMultiple;
    PushButton *m_refresh;
    PushButton *m_copyAll;
    PushButton *m_deleteAll;
};
