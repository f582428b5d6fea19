#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QProgressBar>

/// An indeterminate progress indicator: an arc with a fading tail that turns once in 0.9 s, or a still one
/// that pulses where the desktop asks for reduced motion. A progress bar without an end for assistive
/// programs. It has a timer only while it can be seen.
class Spinner final : public QProgressBar {
    Q_OBJECT

public:
    /// The side of the square it stands in, in points.
    static constexpr int side = 20;

    explicit Spinner(QWidget *parent = nullptr);

    [[nodiscard]] bool isSpinning() const { return m_timer.isActive(); }

    [[nodiscard]] QSize sizeHint() const override { return {side, side}; }

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QBasicTimer m_timer;
    QElapsedTimer m_sinceStart;
};
