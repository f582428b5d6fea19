#pragma once

#include "TextColor.h"

#include <QPushButton>

class Spinner;

/// A button: bordered, prominent in the accent or in red, or plain text that has a face only under the
/// pointer. A symbol, or a spinner for what is under way, can stand before the label.
///
/// The widget is `outset` larger on each side than the button that one sees and clicks, because the focus
/// ring lies outside of it. A text that doesn't fit is elided and then is the tooltip. Space and Return
/// press it.
class PushButton final : public QPushButton {
    Q_OBJECT

public:
    enum class Kind {
        Bordered,
        /// Bordered with a red label, for what asks before it destroys.
        BorderedDestructive,
        Prominent,
        Destructive,
        /// Blue text without a face.
        Plain,
    };

    enum class Size {
        Regular,
        Small,
        /// As high as a regular one, with the label of a small one: three of them share a narrow row.
        Compact,
        /// Beside small print, and in it.
        Mini,
    };

    static constexpr int outset = 4;
    /// What stays free at either side of an elided label.
    static constexpr int leastPadding = 7;

    PushButton(Kind kind, const QString &text, QWidget *parent = nullptr);

    /// Regular at first.
    void setSize(Size size);
    /// An empty name takes the symbol away.
    void setSymbol(const QString &symbolName);
    /// Whether a spinner turns in the symbol's place.
    void setProgress(bool inProgress);

    /// The height of what one sees, in points.
    [[nodiscard]] int faceHeight() const;
    /// What is free at either side of the label where there is room for it.
    [[nodiscard]] int padding() const;
    /// The room that the text takes with what stands before it, in points.
    [[nodiscard]] int labelWidth() const;

    /// 1 is fully there; less lets the ground shine through, without a change in behaviour.
    void setPresence(qreal presence);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Where the parts of the label are; the mark is the symbol or the spinner.
    struct Label {
        // The braces are for those that name only the others.
        QRect mark = {}; // NOLINT(readability-redundant-member-init)
        QRect text;
        QString shownText;
    };

    [[nodiscard]] QRect box() const { return rect().adjusted(outset, outset, -outset, -outset); }

    /// The mark's room with the gap behind it.
    [[nodiscard]] int markWidth() const;
    [[nodiscard]] Label label() const;
    void updateToolTip();
    void placeSpinner();
    void labelChanged();
    [[nodiscard]] QColor faceColor() const;
    [[nodiscard]] TextColor labelColor() const;
    void paintButton(QPainter &painter) const;
    void paintLabel(QPainter &painter) const;

    Kind m_kind;
    Size m_size = Size::Regular;
    QString m_symbolName;
    /// Only while there is progress to show.
    Spinner *m_spinner = nullptr;
    qreal m_presence = 1;
};
