#pragma once

#include "TextColor.h"
#include "Typography.h"

#include <QLabel>

/// A plain text in one text style, with that style's line height whatever the font family. Centred at first;
/// `setAlignment` changes that, mirrored where one reads from right to left.
///
/// A text that is wider than the label is broken into lines. Centred ones are balanced: their lines are as
/// narrow as they can be without being more. What goes beyond the greatest number of lines is elided, and
/// the whole text is the tooltip then. Control characters, which file names can hold, are shown as blanks.
class TextLabel final : public QLabel {
    Q_OBJECT

public:
    enum class Breaking {
        /// Where the language allows it; a longer word keeps its line.
        AtWords,
        /// At blanks alone, so that file names stay whole where they can; a longer word is broken anywhere.
        AtBlanks,
    };

    TextLabel(TextStyle style, const QString &text, QWidget *parent = nullptr);

    /// Primary at first.
    void setColor(TextColor color);
    /// 0, as at first: as many as it takes.
    void setMaximumLineCount(int count);
    void setBreaking(Breaking breaking);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// The text as it is drawn and measured.
    [[nodiscard]] QString drawnText() const;
    [[nodiscard]] qreal widthOf(const QString &text) const;
    [[nodiscard]] QList<qsizetype> lineStarts(const QString &drawn, int width) const;
    /// The lines of the text at this width, however many.
    [[nodiscard]] QStringList lines(int width) const;
    [[nodiscard]] QStringList balancedLines(int width) const;
    [[nodiscard]] QStringList elidedLines(int width) const;
    /// The lines as they are painted: the last one elided where there are too many.
    [[nodiscard]] QStringList shownLines(int width) const;
    [[nodiscard]] bool isElided(int width) const;
    void updateToolTip();

    TextStyle m_style;
    TextColor m_color = TextColor::Primary;
    Breaking m_breaking = Breaking::AtWords;
    int m_maximumLineCount = 0;
};
