#pragma once

#include "TextColor.h"
#include "Typography.h"

#include <QLabel>

#include <map>

/// A plain text in one text style, with that style's line height whatever the font family. Centred at first;
/// `setAlignment` changes that, mirrored where one reads from right to left.
///
/// A text that is wider than the label is broken into lines. Centred ones are balanced, unless set
/// otherwise: their lines are as narrow as they can be without being more. What goes beyond the greatest
/// number of lines is elided: of one line the end, of several the middle, so that a sentence about a long
/// name still has its end. The whole text is the tooltip then. Control characters, which file names can
/// hold, are shown as blanks.
class TextLabel final : public QLabel {
    Q_OBJECT

public:
    enum class Breaking {
        /// Where the language allows it; a longer word keeps its line.
        AtWords,
        /// At blanks alone, so that file names stay whole where they can; a longer word is broken anywhere.
        AtBlanks,
    };

    /// How a centred text is spread over its lines.
    enum class Spread {
        /// As evenly as the number of lines allows.
        Balanced,
        /// Each line as full as it gets: for paragraphs.
        Filled,
    };

    TextLabel(TextStyle style, const QString &text, QWidget *parent = nullptr);

    /// Primary at first.
    void setColor(TextColor color);
    /// 0, as at first: as many as it takes.
    void setMaximumLineCount(int count);
    void setBreaking(Breaking breaking);
    /// Balanced at first.
    void setSpread(Spread spread);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Layouts ask for the same few widths again and again, and breaking lines takes time.
    struct Measured {
        QString text;
        /// In one line.
        qreal width = 0;
        std::map<int, QStringList> linesByWidth;
    };

    /// The text as it is drawn and measured.
    [[nodiscard]] QString drawnText() const;
    [[nodiscard]] qreal widthOf(const QString &text) const;
    /// The lines of the text at this width, however many.
    [[nodiscard]] QStringList lines(int width) const;
    [[nodiscard]] QStringList brokenLines(const QString &drawn, int width) const;
    /// What is known about the text as it is now.
    [[nodiscard]] Measured &measured() const;
    [[nodiscard]] QStringList balancedLines(int width) const;
    [[nodiscard]] QStringList elidedLines(int width) const;
    /// The lines as they are painted: elided where there are too many.
    [[nodiscard]] QStringList shownLines(int width) const;
    [[nodiscard]] bool isElided(int width) const;
    void updateToolTip();

    TextStyle m_style;
    TextColor m_color = TextColor::Primary;
    Breaking m_breaking = Breaking::AtWords;
    Spread m_spread = Spread::Balanced;
    int m_maximumLineCount = 0;
    mutable Measured m_measured;
};
