#include "SettingsRow.h"

#include "TextLabel.h"

#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace {

/// In points.
constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 10;
constexpr int gapBetweenTexts = 3;
constexpr int gapBeforeTrailing = 12;
/// A narrower column of texts would have a word a line.
constexpr int leastTextWidth = 120;

} // namespace

SettingsRow::SettingsRow(
    const QString &title, const std::optional<QString> &subtitle, QWidget *trailing, int outset,
    QWidget *parent)
    : QWidget(parent),
      m_title(new TextLabel(TextStyle::Body, title, this)),
      m_trailing(trailing),
      m_outset(outset)
{
    m_title->setAlignment(Qt::AlignLeading);
    if (subtitle) {
        m_subtitle = new TextLabel(TextStyle::Caption, *subtitle, this);
        m_subtitle->setAlignment(Qt::AlignLeading);
        m_subtitle->setColor(TextColor::Secondary);
    }
    trailing->setParent(this);
    if (trailing->accessibleName().isEmpty()) {
        trailing->setAccessibleName(title);
    }
    if (trailing->accessibleDescription().isEmpty()) {
        trailing->setAccessibleDescription(subtitle.value_or(QString()));
    }
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void SettingsRow::setTexts(const QString &title, const QString &subtitle)
{
    m_title->setText(title);
    m_subtitle->setText(subtitle);
    m_trailing->setAccessibleName(title);
    m_trailing->setAccessibleDescription(subtitle);
    updateGeometry();
    layOut();
}

QSize SettingsRow::trailingSize() const
{
    return m_trailing->sizeHint().shrunkBy(QMargins(m_outset, m_outset, m_outset, m_outset));
}

int SettingsRow::restWidth() const
{
    return 2 * horizontalPadding + gapBeforeTrailing + trailingSize().width();
}

int SettingsRow::textWidth(int width) const
{
    return std::max(leastTextWidth, width - restWidth());
}

int SettingsRow::textHeight(int textWidth) const
{
    const int title = m_title->heightForWidth(textWidth);
    return m_subtitle == nullptr ? title : title + gapBetweenTexts + m_subtitle->heightForWidth(textWidth);
}

int SettingsRow::heightForWidth(int width) const
{
    return std::max(textHeight(textWidth(width)), trailingSize().height()) + 2 * verticalPadding;
}

QSize SettingsRow::sizeHint() const
{
    const int subtitle = m_subtitle == nullptr ? 0 : m_subtitle->sizeHint().width();
    const int width = std::max(m_title->sizeHint().width(), subtitle) + restWidth();
    return {width, heightForWidth(width)};
}

QSize SettingsRow::minimumSizeHint() const
{
    return {leastTextWidth + restWidth(), sizeHint().height()};
}

bool SettingsRow::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange) {
        // The control has another size.
        updateGeometry();
        layOut();
    }
    return QWidget::event(event);
}

void SettingsRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void SettingsRow::layOut()
{
    const auto place = [this](QWidget &part, const QRect &box) {
        part.setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
    };
    const int available = textWidth(width());
    // At the top where there is a subtitle, else in the middle.
    const auto top = [this](int partHeight) {
        return m_subtitle != nullptr ? verticalPadding : (height() - partHeight) / 2;
    };
    QRect line(horizontalPadding, top(textHeight(available)), available, m_title->heightForWidth(available));
    place(*m_title, line);
    if (m_subtitle != nullptr) {
        line.moveTop(line.bottom() + 1 + gapBetweenTexts);
        line.setHeight(m_subtitle->heightForWidth(available));
        place(*m_subtitle, line);
    }
    QRect control(QPoint(0, top(trailingSize().height())), trailingSize());
    control.moveRight(width() - 1 - horizontalPadding);
    place(*m_trailing, control.adjusted(-m_outset, -m_outset, m_outset, m_outset));
}
