#pragma once

#include <QAbstractButton>

/// Says that the watched folder can't be read. The whole of it is one button. Its height is fixed.
class AccessBanner final : public QAbstractButton {
    Q_OBJECT

public:
    /// In points, as one sees it.
    static constexpr int faceHeight = 56;
    /// By how much the widget is larger on each side, for the focus ring.
    static constexpr int outset = 4;

    explicit AccessBanner(QWidget *parent = nullptr);

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect box() const { return rect().adjusted(outset, outset, -outset, -outset); }

    void paintFace(QPainter &painter) const;
    void paintTexts(QPainter &painter) const;
    void paintSymbols(QPainter &painter) const;
    [[nodiscard]] QRect mirrored(const QRect &rectangle) const;

    QString m_detail;
};
