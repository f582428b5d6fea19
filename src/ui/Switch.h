#pragma once

#include <QAbstractButton>

#include <memory>

/// A switch without a label: on in the accent's colour. Its knob slides.
///
/// The widget is `outset` larger on each side than the switch that one sees and clicks, because the focus
/// ring lies outside of it. Space and Return turn it. A check box for assistive programs; give it an
/// accessible name.
class Switch final : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int outset = 4;

    explicit Switch(QWidget *parent = nullptr);
    ~Switch() override;
    Q_DISABLE_COPY_MOVE(Switch)

    [[nodiscard]] bool isOn() const { return m_isOn; }

    /// Nothing is emitted.
    void setOn(bool isOn);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// By the user.
    void switched(bool isOn);

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect box() const;
    [[nodiscard]] QRectF knob() const;
    void takeCheckState(bool isChecked);
    void slide();

    bool m_isOn = false;
    /// Where the knob is drawn, from 0 at the side that means off to 1.
    qreal m_progress = 0;
    /// Owns the motion; the next turn ends it.
    std::unique_ptr<QObject> m_motion;
};
