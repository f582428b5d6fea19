#pragma once

#include <QRadioButton>

/// One option of a segmented picker: its label only, what it stands on is the picker's. It leaves all keys
/// but Space to the picker.
class Segment final : public QRadioButton {
    Q_OBJECT

public:
    Segment(const QString &text, QWidget *parent);

    /// With what is free at either side.
    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};
