#pragma once

#include <QAbstractButton>
#include <QStringList>

/// A button that shows a choice and opens a menu with all of them.
///
/// The choice whose text the button shows has the menu's check mark; a text that is none of the choices is
/// shown without one being checked. The widget is `outset` larger on each side than the button that one sees,
/// because the focus ring lies outside of it. A press, Space, Return or an arrow key up or down opens the
/// menu. Give it an accessible name; what it shows is its accessible description.
class PopUpButton final : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int outset = 4;

    /// `width` in points, of the button that one sees.
    PopUpButton(QStringList choices, int width, QWidget *parent = nullptr);

    /// The choice, or another text.
    void setShownText(const QString &text);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// By the user, in the menu; also when it is the choice that was shown already.
    void choiceMade(int index);

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum class OpenedBy { Pointer, Keyboard };

    [[nodiscard]] QRect box() const { return rect().adjusted(outset, outset, -outset, -outset); }

    [[nodiscard]] QRect textBox() const;
    void openMenu(OpenedBy means);
    void paintFace(QPainter &painter) const;
    void paintLabel(QPainter &painter) const;

    const QStringList m_choices;
    const int m_width;
};
