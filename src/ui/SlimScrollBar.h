#pragma once

#include <QScrollBar>

#include <optional>

/// A vertical scroll bar that lies over what it scrolls: a slim thumb, broader and stronger under the
/// pointer, which can be dragged; a press beside it goes there by pages. It is not there when there is
/// nothing to scroll. Main thread.
class SlimScrollBar final : public QScrollBar {
    Q_OBJECT

public:
    /// The width of the strip that it takes presses in, in points.
    static constexpr int breadth = 14;

    explicit SlimScrollBar(QWidget *parent);

    [[nodiscard]] QSize sizeHint() const override { return {breadth, breadth}; }

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void sliderChange(SliderChange change) override;

private:
    [[nodiscard]] bool isStressed() const { return m_grip.has_value() || underMouse(); }

    /// The thumb's place along the bar, in points.
    [[nodiscard]] qreal thumbTop() const;
    [[nodiscard]] qreal thumbLength() const;

    /// How far below the thumb's top it is held, while it is dragged.
    std::optional<qreal> m_grip;
};
