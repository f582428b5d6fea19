#include "GalleryPlaceholder.h"

#include "Spinner.h"
#include "SymbolLabel.h"
#include "TextLabel.h"

#include <algorithm>

namespace {

/// Lengths in points.
struct Style {
    int spinnerSide;
    int symbolSide;
    TextStyle title;
    TextStyle text;
    int gap;
    /// The widest that a text may be.
    int textWidth;
};

constexpr Style styleOf(GalleryMode mode)
{
    return mode == GalleryMode::Embedded ? Style{20, 36, TextStyle::Headline, TextStyle::Subheadline, 8, 216}
                                         : Style{32, 56, TextStyle::Title3, TextStyle::Body, 10, 360};
}

} // namespace

GalleryPlaceholder::GalleryPlaceholder(GalleryMode mode, QWidget *parent) : QWidget(parent), m_mode(mode)
{
    const bool isEmbedded = mode == GalleryMode::Embedded;
    const Style look = styleOf(mode);
    const auto secondary = [&look, this](const QString &text) {
        auto *const label = new TextLabel(look.text, text, this);
        label->setColor(TextColor::Secondary);
        return label;
    };
    m_loading = {
        new Spinner(look.spinnerSide, this),
        secondary(isEmbedded ? tr("Loading screenshots...") : tr("Loading your screenshots...")),
    };
    m_empty = {
        new SymbolLabel(QStringLiteral("photo.badge.plus"), look.symbolSide, TextColor::Tertiary, this),
        new TextLabel(look.title, isEmbedded ? tr("No screenshots found") : tr("No Screenshots"), this),
        secondary(
            isEmbedded ? tr("Take a screenshot with ⌘⇧4 or ⌘⇧3 to get started")
                       : tr("Take a screenshot to see it here")),
    };
    setState(State::Loading);
}

void GalleryPlaceholder::setState(State state)
{
    for (QWidget *const part : m_loading) {
        part->setVisible(state == State::Loading);
    }
    for (QWidget *const part : m_empty) {
        part->setVisible(state == State::Empty);
    }
}

void GalleryPlaceholder::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut(m_loading);
    layOut(m_empty);
}

void GalleryPlaceholder::layOut(const Column &column) const
{
    const Style look = styleOf(m_mode);
    const int textWidth = std::min(look.textWidth, width());
    const auto sizeOf = [textWidth](const QWidget &part) {
        return part.hasHeightForWidth() ? QSize(textWidth, part.heightForWidth(textWidth)) : part.size();
    };
    int height = look.gap * (static_cast<int>(column.size()) - 1);
    for (const QWidget *const part : column) {
        height += sizeOf(*part).height();
    }
    int top = (this->height() - height) / 2;
    for (QWidget *const part : column) {
        const QSize size = sizeOf(*part);
        part->setGeometry(QRect(QPoint((width() - size.width()) / 2, top), size));
        top += size.height() + look.gap;
    }
}
