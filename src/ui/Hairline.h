#pragma once

#include <QWidget>

/// A line of half a point, or of a pixel where that is more, along the left or upper edge of a widget that
/// is a point thick.
class Hairline final : public QWidget {
    Q_OBJECT

public:
    explicit Hairline(Qt::Orientation orientation, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::Orientation m_orientation;
};
