#include "TextLabel.h"

#include "Theme.h"
#include "brokenLines.h"
#include "toolTips.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextBoundaryFinder>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr QChar wordJoiner(0x2060);
constexpr QChar ellipsis(0x2026);

/// More of them come while a window is resized, or while lines are balanced.
constexpr std::size_t mostKeptWidths = 8;

/// Whether a text would begin a new line here, or do something else that isn't to be seen.
bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// As much of the beginning and of the end as makes `length` units, or one character more.
QString withoutMiddle(const QString &text, qsizetype length)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    const auto boundaryAt = [&finder](qsizetype position) {
        finder.setPosition(position);
        return finder.isAtBoundary() ? position : finder.toPreviousBoundary();
    };
    return text.first(boundaryAt(length / 2)) + ellipsis + text.sliced(boundaryAt(text.size() - length / 2));
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
    m_measured = {};
    updateToolTip();
    updateGeometry();
    update();
}

void TextLabel::setSpread(Spread spread)
{
    m_spread = spread;
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

TextLabel::Measured &TextLabel::measured() const
{
    // The toolkit doesn't tell when the text changes.
    if (m_measured.text != text() || m_measured.text.isNull()) {
        m_measured = {.text = text(), .width = widthOf(drawnText()), .linesByWidth = {}};
    }
    return m_measured;
}

QStringList TextLabel::lines(int width) const
{
    auto &known = measured().linesByWidth;
    if (known.size() >= mostKeptWidths) {
        known.clear();
    }
    const auto [entry, isNew] = known.try_emplace(width);
    if (isNew) {
        entry->second = brokenLines(drawnText(), width);
    }
    return entry->second;
}

QStringList TextLabel::brokenLines(const QString &drawn, int width) const
{
    const bool atBlanks = m_breaking == Breaking::AtBlanks;
    return ::brokenLines(
        drawn, font(), width, atBlanks ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WordWrap);
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
    if (m_maximumLineCount == 1 || lines(width).size() == 1) {
        return {QFontMetricsF(font()).elidedText(drawn, Qt::ElideRight, width)};
    }
    qsizetype least = 0;
    qsizetype most = drawn.size();
    while (least < most) {
        const qsizetype middle = (least + most + 1) / 2;
        if (brokenLines(withoutMiddle(drawn, middle), width).size() <= m_maximumLineCount) {
            least = middle;
        } else {
            most = middle - 1;
        }
    }
    return brokenLines(withoutMiddle(drawn, least), width);
}

QStringList TextLabel::shownLines(int width) const
{
    if (isElided(width)) {
        return elidedLines(width);
    }
    const bool isBalanced = m_spread == Spread::Balanced && alignment().testFlag(Qt::AlignHCenter);
    return isBalanced ? balancedLines(width) : lines(width);
}

QSize TextLabel::sizeHint() const
{
    return {qCeil(measured().width), lineHeight(m_style)};
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
        if (!toolTip().isEmpty()) {
            const QPoint position = static_cast<const QHelpEvent *>(event)->globalPos();
            QToolTip::showText(position, plainTextToolTip(toolTip()), this);
            return true;
        }
    }
    if (event->type() == QEvent::FontChange) {
        m_measured = {};
        updateToolTip();
        updateGeometry();
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
