#pragma once

#include <QWidget>

/// The icon of the window that it is in, which is the program's; empty if there is none.
class ApplicationIcon final : public QWidget {
    Q_OBJECT

public:
    /// `side` is in points.
    explicit ApplicationIcon(int side, QWidget *parent = nullptr);

    [[nodiscard]] qreal scale() const { return m_scale; }

    /// How large it is drawn, around its centre; 1 at first. The room that it takes stays the same: what
    /// goes beyond is cut off, which is no more than the icon's own margin for some hundredths.
    void setScale(qreal scale);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal m_scale = 1;
};
