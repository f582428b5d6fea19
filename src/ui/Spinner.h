#pragma once

#include "TextColor.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QProgressBar>

/// An indeterminate progress indicator: an arc with a fading tail that turns once in 0.9 s, or a still one
/// that pulses where the desktop asks for reduced motion. A progress bar without an end for assistive
/// programs. It has a timer only while it can be seen. Faint in what is disabled.
class Spinner final : public QProgressBar {
    Q_OBJECT

public:
    static constexpr int regularSide = 20;

    explicit Spinner(QWidget *parent = nullptr);

    /// `side`, in points, is that of the square it stands in; its stroke goes with it.
    explicit Spinner(int side, QWidget *parent = nullptr);

    /// Secondary at first.
    void setColor(TextColor color);

    [[nodiscard]] bool isSpinning() const { return m_timer.isActive(); }

    [[nodiscard]] QSize sizeHint() const override { return {m_side, m_side}; }

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int m_side;
    TextColor m_color = TextColor::Secondary;
    QBasicTimer m_timer;
    QElapsedTimer m_sinceStart;
};
