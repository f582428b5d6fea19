#pragma once

#include <QLabel>

/// "+ n more" in a box like a cell's: a text, not a button.
class OverflowCount final : public QLabel {
    Q_OBJECT

public:
    explicit OverflowCount(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
