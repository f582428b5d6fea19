#pragma once

#include <QWidget>

/// Lies over the lower end of what scrolls and lets it pass into the window's ground. The pointer goes
/// through it.
class FadingEdge final : public QWidget {
    Q_OBJECT

public:
    explicit FadingEdge(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
