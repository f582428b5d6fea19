#include "ButtonRowLayout.h"

#include "PushButton.h"

#include <QGuiApplication>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace {

void place(QLayoutItem &item, const QRect &box)
{
    constexpr int outset = PushButton::outset;
    item.setGeometry(box.adjusted(-outset, -outset, outset, outset));
}

} // namespace

void ButtonRowLayout::addButton(PushButton &button)
{
    addChildWidget(&button);
    m_entries.push_back({&button, std::make_unique<QWidgetItem>(&button)});
    invalidate();
}

void ButtonRowLayout::addItem(QLayoutItem *item)
{
    // Only buttons have the two widths that the row is made of.
    auto *button = qobject_cast<PushButton *>(item->widget());
    Q_ASSERT(button != nullptr);
    m_entries.push_back({button, std::unique_ptr<QLayoutItem>(item)});
}

int ButtonRowLayout::count() const
{
    return static_cast<int>(m_entries.size());
}

QLayoutItem *ButtonRowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_entries[static_cast<std::size_t>(index)].item.get() : nullptr;
}

QLayoutItem *ButtonRowLayout::takeAt(int index)
{
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem *item = m_entries[static_cast<std::size_t>(index)].item.release();
    m_entries.erase(m_entries.begin() + index);
    return item;
}

int ButtonRowLayout::widthOfTexts() const
{
    int width = 0;
    for (const Entry &entry : m_entries) {
        width += entry.button->labelWidth();
    }
    return width;
}

int ButtonRowLayout::widestText() const
{
    int width = 0;
    for (const Entry &entry : m_entries) {
        width = std::max(width, entry.button->labelWidth());
    }
    return width;
}

int ButtonRowLayout::rowHeight() const
{
    int height = 0;
    for (const Entry &entry : m_entries) {
        height = std::max(height, entry.button->faceHeight());
    }
    return height;
}

bool ButtonRowLayout::isRow(int width) const
{
    const int texts = m_shares == Shares::Equal ? widestText() * count() : widthOfTexts();
    return width - gap * (count() - 1) - texts >= 2 * PushButton::leastPadding * count();
}

std::vector<int> ButtonRowLayout::widthsInRow(int width) const
{
    const bool byText = m_shares == Shares::ByText;
    const int rest = width - gap * (count() - 1) - (byText ? widthOfTexts() : 0);
    std::vector<int> widths;
    for (int index = 0; index < count(); ++index) {
        // The parts differ by a point at most, and add up to the rest.
        const int part = rest * (index + 1) / count() - rest * index / count();
        const Entry &entry = m_entries[static_cast<std::size_t>(index)];
        widths.push_back(part + (byText ? entry.button->labelWidth() : 0));
    }
    return widths;
}

int ButtonRowLayout::heightForWidth(int width) const
{
    const int rows = isRow(width) ? 1 : count();
    return rows * rowHeight() + (rows - 1) * gap;
}

QSize ButtonRowLayout::sizeHint() const
{
    int paddings = 0;
    for (const Entry &entry : m_entries) {
        paddings += 2 * entry.button->padding();
    }
    const int texts = m_shares == Shares::Equal ? widestText() * count() : widthOfTexts();
    return {texts + paddings + gap * (count() - 1), rowHeight()};
}

QSize ButtonRowLayout::minimumSize() const
{
    return {0, rowHeight()};
}

void ButtonRowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    const int height = rowHeight();
    if (!isRow(rect.width())) {
        QRect box(rect.topLeft(), QSize(rect.width(), height));
        for (const Entry &entry : m_entries) {
            place(*entry.item, box);
            box.translate(0, height + gap);
        }
        return;
    }
    const Qt::LayoutDirection direction =
        parentWidget() != nullptr ? parentWidget()->layoutDirection() : QGuiApplication::layoutDirection();
    const std::vector<int> widths = widthsInRow(rect.width());
    int left = rect.left();
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        const QRect box(left, rect.top(), widths[index], height);
        place(*m_entries[index].item, QStyle::visualRect(direction, rect, box));
        left += widths[index] + gap;
    }
}
