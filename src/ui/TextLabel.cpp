#include "TextLabel.h"

#include "Theme.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

TextLabel::TextLabel(TextStyle style, const QString &text, QWidget *parent) : QLabel(parent), m_style(style)
{
    setTextFormat(Qt::PlainText);
    setFont(::font(style));
    setText(text);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    repaintWithTheme(*this);
}

QStringList TextLabel::lines(int width) const
{
    QTextLayout layout(text(), font());
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    layout.setTextOption(option);
    QStringList result;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        result.append(text().mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return result;
}

QStringList TextLabel::balancedLines(int width) const
{
    QStringList balanced = lines(width);
    if (balanced.size() < 2) {
        return balanced;
    }
    for (int narrower = width - 1; narrower > 0; --narrower) {
        const QStringList candidate = lines(narrower);
        const auto fits = [this, width](const QString &line) {
            return QFontMetricsF(font()).horizontalAdvance(line) <= width;
        };
        if (candidate.size() > balanced.size() || !std::ranges::all_of(candidate, fits)) {
            break;
        }
        balanced = candidate;
    }
    return balanced;
}

QSize TextLabel::sizeHint() const
{
    return {qCeil(QFontMetricsF(font()).horizontalAdvance(text())), lineHeight(m_style)};
}

QSize TextLabel::minimumSizeHint() const
{
    return {0, lineHeight(m_style)};
}

int TextLabel::heightForWidth(int width) const
{
    return qMax(1, static_cast<int>(lines(width).size())) * lineHeight(m_style);
}

void TextLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(Theme::current().primary);
    QRect line(0, 0, width(), lineHeight(m_style));
    for (const QString &text : balancedLines(width())) {
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, text);
        line.translate(0, line.height());
    }
}
