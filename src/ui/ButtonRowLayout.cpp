#include "ButtonRowLayout.h"

#include "PushButton.h"

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

int ButtonRowLayout::restOfRow(int width) const
{
    return width - widthOfTexts() - gap * (count() - 1);
}

bool ButtonRowLayout::isRow(int width) const
{
    return restOfRow(width) >= 2 * PushButton::leastPadding * count();
}

int ButtonRowLayout::heightForWidth(int width) const
{
    const int rows = isRow(width) ? 1 : count();
    return rows * PushButton::faceHeight + (rows - 1) * gap;
}

QSize ButtonRowLayout::sizeHint() const
{
    return {widthOfTexts() + 2 * PushButton::padding * count() + gap * (count() - 1), PushButton::faceHeight};
}

QSize ButtonRowLayout::minimumSize() const
{
    return {0, PushButton::faceHeight};
}

void ButtonRowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    if (!isRow(rect.width())) {
        QRect box(rect.topLeft(), QSize(rect.width(), PushButton::faceHeight));
        for (const Entry &entry : m_entries) {
            place(*entry.item, box);
            box.translate(0, PushButton::faceHeight + gap);
        }
        return;
    }
    const int rest = restOfRow(rect.width());
    int left = rect.left();
    for (int index = 0; index < count(); ++index) {
        const Entry &entry = m_entries[static_cast<std::size_t>(index)];
        // The parts differ by a point at most, and add up to the rest.
        const int share = rest * (index + 1) / count() - rest * index / count();
        const int width = entry.button->labelWidth() + share;
        place(*entry.item, QRect(left, rect.top(), width, PushButton::faceHeight));
        left += width + gap;
    }
}
