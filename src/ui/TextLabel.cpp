#include "TextLabel.h"

#include "Theme.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>

namespace {

constexpr QChar wordJoiner(0x2060);

/// Whether a text would begin a new line here, or do something else that isn't to be seen.
bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

} // namespace

TextLabel::TextLabel(TextStyle style, const QString &text, QWidget *parent) : QLabel(parent), m_style(style)
{
    setTextFormat(Qt::PlainText);
    setFont(::font(style));
    setAlignment(Qt::AlignCenter);
    setText(text);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    repaintWithTheme(*this);
}

void TextLabel::setColor(TextColor color)
{
    m_color = color;
    update();
}

void TextLabel::setMaximumLineCount(int count)
{
    m_maximumLineCount = count;
    updateToolTip();
    updateGeometry();
    update();
}

void TextLabel::setBreaking(Breaking breaking)
{
    m_breaking = breaking;
    updateToolTip();
    updateGeometry();
    update();
}

QString TextLabel::drawnText() const
{
    QString drawn = text();
    std::ranges::replace_if(drawn, isControl, QChar(u' '));
    if (m_breaking == Breaking::AtBlanks) {
        drawn.replace(QChar(u'-'), QString(QChar(u'-')) + wordJoiner);
    }
    return drawn;
}

qreal TextLabel::widthOf(const QString &text) const
{
    return QFontMetricsF(font()).horizontalAdvance(text);
}

QList<qsizetype> TextLabel::lineStarts(const QString &drawn, int width) const
{
    QTextLayout layout(drawn, font());
    QTextOption option;
    option.setWrapMode(
        m_breaking == Breaking::AtBlanks ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WordWrap);
    layout.setTextOption(option);
    QList<qsizetype> starts;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        starts.append(line.textStart());
    }
    layout.endLayout();
    return starts;
}

QStringList TextLabel::lines(int width) const
{
    const QString drawn = drawnText();
    const QList<qsizetype> starts = lineStarts(drawn, width);
    QStringList result;
    for (qsizetype line = 0; line < starts.size(); ++line) {
        const qsizetype end = line + 1 < starts.size() ? starts[line + 1] : drawn.size();
        result.append(drawn.sliced(starts[line], end - starts[line]).trimmed());
    }
    return result;
}

QStringList TextLabel::balancedLines(int width) const
{
    QStringList balanced = lines(width);
    if (balanced.size() < 2) {
        return balanced;
    }
    qreal widestWord = 0;
    for (const QString &word : drawnText().split(QChar(u' '))) {
        widestWord = std::max(widestWord, widthOf(word));
    }
    if (widestWord > width) {
        return balanced;
    }
    // Between the widest word, which mustn't be broken, and the width: the least that keeps the number.
    int least = qCeil(widestWord);
    int most = width;
    while (least < most) {
        const int middle = (least + most) / 2;
        const QStringList candidate = lines(middle);
        if (candidate.size() <= balanced.size()) {
            balanced = candidate;
            most = middle;
        } else {
            least = middle + 1;
        }
    }
    return balanced;
}

bool TextLabel::isElided(int width) const
{
    if (m_maximumLineCount == 0) {
        return false;
    }
    const QStringList all = lines(width);
    return all.size() > m_maximumLineCount || (all.size() == 1 && widthOf(all.constFirst()) > width);
}

QStringList TextLabel::elidedLines(int width) const
{
    const QString drawn = drawnText();
    const qsizetype startOfLast = lineStarts(drawn, width).value(m_maximumLineCount - 1);
    QStringList shown = lines(width).mid(0, m_maximumLineCount - 1);
    return shown << QFontMetricsF(font()).elidedText(drawn.sliced(startOfLast), Qt::ElideRight, width);
}

QStringList TextLabel::shownLines(int width) const
{
    if (isElided(width)) {
        return elidedLines(width);
    }
    return alignment().testFlag(Qt::AlignHCenter) ? balancedLines(width) : lines(width);
}

QSize TextLabel::sizeHint() const
{
    return {qCeil(widthOf(drawnText())), lineHeight(m_style)};
}

QSize TextLabel::minimumSizeHint() const
{
    return {0, lineHeight(m_style)};
}

int TextLabel::heightForWidth(int width) const
{
    const int needed = qMax(1, static_cast<int>(lines(width).size()));
    return (m_maximumLineCount == 0 ? needed : qMin(needed, m_maximumLineCount)) * lineHeight(m_style);
}

void TextLabel::updateToolTip()
{
    setToolTip(isElided(width()) ? text() : QString());
}

void TextLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    updateToolTip();
}

bool TextLabel::event(QEvent *event)
{
    // The toolkit doesn't tell when the text changes without the size.
    if (event->type() == QEvent::ToolTip) {
        updateToolTip();
    }
    return QLabel::event(event);
}

void TextLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(color(m_color));
    // The lines of a text all have its direction, whatever words they begin with.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const QStringList shown = shownLines(width());
    const Qt::Alignment placed = QStyle::visualAlignment(layoutDirection(), alignment());
    const int free = height() - lineHeight(m_style) * static_cast<int>(shown.size());
    QRect line(0, 0, width(), lineHeight(m_style));
    if (placed.testFlag(Qt::AlignVCenter)) {
        line.translate(0, free / 2);
    }
    const auto flags = (placed & Qt::AlignHorizontal_Mask) | Qt::AlignAbsolute | Qt::AlignVCenter;
    for (const QString &part : shown) {
        painter.drawText(line, static_cast<int>(flags.toInt()) | Qt::TextSingleLine, part);
        line.translate(0, line.height());
    }
}
