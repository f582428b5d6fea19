#pragma once

#include "GalleryGridMetrics.h"
#include "ScreenshotItem.h"
#include "ThumbnailFrame.h"
#include "ThumbnailLoader.h"
#include "Transition.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

/// One cell of a gallery: the thumbnail of a screenshot, and its number under it.
///
/// The widget is `outset` larger on each side than the cell, for what stands out of it: neighbours overlap.
/// It takes no input; the grid that it lies in does, and tells it what it looks like. It can be used for one
/// screenshot after the other.
class GalleryThumbnail final : public QWidget {
    Q_OBJECT

public:
    static constexpr int outset = 22;

    /// How the cell stands to selecting.
    enum class Selection { Off, Unselected, Selected };

    /// How the pointer and the keyboard stand to a cell.
    struct Attention {
        bool isHovered = false;
        bool isPressed = false;
        bool hasFocus = false;

        bool operator==(const Attention &) const = default;
    };

    explicit GalleryThumbnail(QWidget *parent = nullptr);
    ~GalleryThumbnail() override;
    Q_DISABLE_COPY_MOVE(GalleryThumbnail)

    /// What a click does.
    std::function<void()> onTap;

    [[nodiscard]] const ScreenshotItem &screenshot() const { return m_screenshot; }

    /// The frame of the image, in points.
    [[nodiscard]] QSize imageSize() const { return {m_metrics.cellWidth, m_metrics.cellHeight}; }

    [[nodiscard]] qreal cornerRadius() const { return m_metrics.cornerRadius; }

    [[nodiscard]] bool showCaption() const { return m_metrics.showCaption; }

    [[nodiscard]] bool isSelectionMode() const { return m_selection != Selection::Off; }

    [[nodiscard]] bool isSelected() const { return m_selection == Selection::Selected; }

    /// From 1 on.
    [[nodiscard]] std::optional<int> frameNumber() const { return m_frameNumber; }

    /// "01", "02" …; empty without a number or where captions aren't shown.
    [[nodiscard]] QString caption() const;

    /// Null until it is loaded, and where the file can't be read.
    [[nodiscard]] const QImage &thumbnailImage() const { return m_thumbnailImage; }

    [[nodiscard]] bool isUnreadable() const { return m_isUnreadable; }

    [[nodiscard]] bool isHovered() const { return m_attention.isHovered; }

    [[nodiscard]] const Attention &attention() const { return m_attention; }

    /// Begins anew with another screenshot or other numbers: without image, transition and attention.
    void setUp(const ScreenshotItem &screenshot, const GalleryGridMetrics &metrics, Selection selection);

    void setFrameNumber(std::optional<int> number);
    void setSelection(Selection selection);
    void setAttention(const Attention &attention);

    /// Shows the thumbnail that is in memory, or asks for it. Asked again while it is on its way, only the
    /// priority changes.
    void load(ThumbnailLoader::Priority priority);
    /// Loads the thumbnail again, because its file has changed.
    void reload(ThumbnailLoader::Priority priority);

    /// Back to what needs nothing of the loader.
    void cancelLoading() { m_ticket.reset(); }

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum class Appearing { AtOnce, Fading };

    void request(ThumbnailLoader::Priority priority);
    void setThumbnailImage(const QImage &image, Appearing appearing);
    [[nodiscard]] QRect frame() const;
    [[nodiscard]] QRectF badgeBox(qreal side) const;
    [[nodiscard]] qreal selectionBadgeSide() const;
    void paintCell(QPainter &painter, const ThumbnailFrame &frame) const;
    /// Makes the image as it is painted, once for a screen.
    void frameImage(const ThumbnailFrame &frame);
    void paintThumbnail(QPainter &painter, const ThumbnailFrame &frame) const;
    void paintSigns(QPainter &painter, const ThumbnailFrame &frame) const;
    void paintCaption(QPainter &painter) const;

    ScreenshotItem m_screenshot;
    GalleryGridMetrics m_metrics;
    std::optional<int> m_frameNumber;
    Selection m_selection = Selection::Off;
    bool m_isUnreadable = false;
    Attention m_attention;
    QImage m_thumbnailImage;
    /// The same as it is painted, in the pixels of the screen. Null while the cell is hidden.
    QImage m_framedImage;
    std::unique_ptr<ThumbnailTicket> m_ticket;

    Transition m_hover;
    Transition m_ring;
    Transition m_badge;
    Transition m_presence;
};
