#pragma once

#include <QPushButton>

/// A bordered button, or a prominent red one for what destroys something. 28 points high.
///
/// The widget is `outset` larger on each side than the button that one sees and clicks, because the focus
/// ring lies outside of it. A text that doesn't fit is elided and then is the tooltip. Space and Return
/// press it.
class PushButton final : public QPushButton {
    Q_OBJECT

public:
    enum class Kind { Bordered, Destructive };

    static constexpr int faceHeight = 28;
    static constexpr int outset = 4;
    /// What is free at either side of the label where there is room for it.
    static constexpr int padding = 12;
    /// What stays free at either side of an elided label.
    static constexpr int leastPadding = 7;

    PushButton(Kind kind, const QString &text, QWidget *parent = nullptr);

    /// The room that the text takes, in points.
    [[nodiscard]] int labelWidth() const;

    /// 1 is fully there; less lets the ground shine through, without a change in behaviour.
    void setPresence(qreal presence);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QRect box() const { return rect().adjusted(outset, outset, -outset, -outset); }

    [[nodiscard]] QString elidedText() const;
    [[nodiscard]] QColor faceColor() const;
    void paintButton(QPainter &painter) const;
    void paintFocusRing(QPainter &painter) const;

    Kind m_kind;
    qreal m_presence = 1;
};
