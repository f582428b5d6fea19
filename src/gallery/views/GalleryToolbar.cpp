#include "GalleryToolbar.h"

#include "Hairline.h"
#include "PushButton.h"
#include "ScreenshotGalleryViewModel.h"
#include "SegmentedPicker.h"
#include "TextLabel.h"
#include "Theme.h"
#include "galleryTexts.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <ranges>

namespace {

/// In points.
constexpr int rowHeight = 52;
constexpr int sideOfOneRow = 20;
constexpr int controlHeight = 28;
constexpr int gap = 8;
constexpr int gapBesideSeparator = 16;
constexpr int separatorHeight = 18;
constexpr int gapAfterTitle = 12;

constexpr int sideOfTwoRows = 32;
constexpr int smallControlHeight = 26;

QStringList gridSizeTitles()
{
    QStringList titles;
    for (const GalleryGridSize size : galleryGrid::allSizes) {
        titles.append(galleryGrid::title(size));
    }
    return titles;
}

PushButton *button(PushButton::Kind kind, const QString &text, const QString &symbol, QWidget *parent)
{
    auto *const made = new PushButton(kind, text, parent);
    made->setSymbol(symbol);
    return made;
}

int seenWidth(const PushButton &button)
{
    return button.sizeHint().width() - 2 * PushButton::outset;
}

} // namespace

GalleryToolbar::GalleryToolbar(
    ScreenshotGalleryViewModel &model, const GalleryActions &actions, QWidget *parent)
    : QWidget(parent),
      m_model(model),
      m_count(new TextLabel(TextStyle::Monospaced, {}, this)),
      m_selectionCount(new TextLabel(TextStyle::Headline, {}, this)),
      m_gridSizeTitle(new TextLabel(TextStyle::Monospaced, tr("GRID SIZE"), this)),
      m_gridSize(new SegmentedPicker(gridSizeTitles(), this)),
      m_separator(new Hairline(Qt::Vertical, this)),
      m_refresh(button(PushButton::Kind::Bordered, tr("Refresh"), QStringLiteral("arrow.clockwise"), this)),
      m_select(button(PushButton::Kind::Bordered, tr("Select"), QStringLiteral("checkmark.circle"), this)),
      m_copy(button(PushButton::Kind::Bordered, tr("Copy"), QStringLiteral("doc.on.clipboard"), this)),
      m_delete(button(PushButton::Kind::BorderedDestructive, tr("Delete"), QStringLiteral("trash"), this)),
      m_cancel(button(PushButton::Kind::Bordered, tr("Cancel"), {}, this))
{
    for (TextLabel *const label : {m_count, m_selectionCount, m_gridSizeTitle}) {
        label->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
        label->setMaximumLineCount(1);
    }
    m_count->setColor(TextColor::Secondary);
    m_gridSizeTitle->setColor(TextColor::Secondary);
    m_gridSize->setAccessibleName(m_gridSizeTitle->text());
    connectButtons(actions);
    repaintWithTheme(*this);
}

void GalleryToolbar::connectButtons(const GalleryActions &actions)
{
    connect(
        m_gridSize, &SegmentedPicker::currentIndexChosen, this, [choose = actions.chooseGridSize](int index) {
            choose(galleryGrid::allSizes.at(static_cast<size_t>(index)));
        });
    connect(m_refresh, &PushButton::clicked, this, actions.refresh);
    connect(m_select, &PushButton::clicked, this, [this] { m_model.setSelectionMode(true); });
    connect(m_copy, &PushButton::clicked, this, [this] { m_model.copySelectedToClipboard(); });
    connect(m_delete, &PushButton::clicked, this, [this] { m_model.setShowBulkDeleteConfirmation(true); });
    connect(m_cancel, &PushButton::clicked, this, actions.cancelSelection);
}

int GalleryToolbar::sideMargin(int width)
{
    return width < leastWidthOfOneRow ? sideOfTwoRows : sideOfOneRow;
}

int GalleryToolbar::heightForWidth(int width) const
{
    return width < leastWidthOfOneRow ? 2 * smallControlHeight + gap : rowHeight;
}

void GalleryToolbar::render(GalleryGridSize gridSize)
{
    m_gridSize->setCurrentIndex(static_cast<int>(gridSize));
    renderCount();
    renderButtons();
    layOut();
}

void GalleryToolbar::renderCount()
{
    const bool isSelecting = m_model.isSelectionMode();
    m_count->setVisible(!isSelecting && !m_model.isLoading());
    m_count->setText(
        galleryTexts::headerCount(m_model.displayedScreenshots().size(), m_model.allScreenshots().size()));
    m_selectionCount->setVisible(isSelecting);
    m_selectionCount->setText(galleryTexts::selectionCount(m_model.selectedScreenshots().size()));
}

void GalleryToolbar::renderButtons()
{
    const bool isSelecting = m_model.isSelectionMode();
    m_refresh->setVisible(!isSelecting);
    m_refresh->setEnabled(!m_model.isLoading());
    m_select->setVisible(!isSelecting);
    m_select->setEnabled(!m_model.displayedScreenshots().isEmpty());

    const bool isDeleting = m_model.isDeleting();
    m_copy->setVisible(isSelecting);
    m_copy->setEnabled(!isDeleting);
    m_delete->setVisible(isSelecting);
    m_delete->setEnabled(!isDeleting && !m_model.selectedScreenshots().isEmpty());
    m_delete->setText(isDeleting ? tr("Deleting...") : tr("Delete"));
    m_delete->setProgress(isDeleting);
    m_cancel->setVisible(isSelecting);
}

void GalleryToolbar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void GalleryToolbar::layOut()
{
    const bool isOneRow = width() >= leastWidthOfOneRow;
    for (PushButton *const button : {m_refresh, m_select, m_copy, m_delete, m_cancel}) {
        button->setSize(isOneRow ? PushButton::Size::Regular : PushButton::Size::Small);
    }
    m_gridSize->setSize(isOneRow ? SegmentedPicker::Size::Regular : SegmentedPicker::Size::Small);
    m_separator->setVisible(isOneRow);
    if (isOneRow) {
        layOutInOneRow();
    } else {
        layOutInTwoRows();
    }
}

QList<PushButton *> GalleryToolbar::visibleButtons() const
{
    QList<PushButton *> buttons;
    for (PushButton *const button : {m_refresh, m_select, m_copy, m_delete, m_cancel}) {
        if (!button->isHidden()) {
            buttons.append(button);
        }
    }
    return buttons;
}

QRect GalleryToolbar::placeAtEnd(QRect row, const QList<PushButton *> &buttons) const
{
    constexpr int outset = PushButton::outset;
    for (PushButton *const button : std::views::reverse(buttons)) {
        const int width = seenWidth(*button);
        const QRect box(row.right() + 1 - width, row.top(), width, row.height());
        place(*button, box.adjusted(-outset, -outset, outset, outset));
        row.setRight(box.left() - 1 - gap);
    }
    return row;
}

void GalleryToolbar::layOutInOneRow()
{
    QRect row(sideOfOneRow, 0, width() - 2 * sideOfOneRow, controlHeight);
    row.moveTop((rowHeight - controlHeight) / 2);
    QRect rest = placeAtEnd(row, visibleButtons());
    rest.setRight(rest.right() + gap - gapBesideSeparator - 1);
    place(*m_separator, {rest.right() + 1, (rowHeight - separatorHeight) / 2, 1, separatorHeight});

    rest.setRight(rest.right() - gapBesideSeparator);
    rest = placePickerAtEnd(rest);
    const int titleWidth = m_gridSizeTitle->sizeHint().width();
    const int titleLeft = rest.right() + 1 - gapAfterTitle - titleWidth;
    place(*m_gridSizeTitle, {titleLeft, row.top(), titleWidth, row.height()});
    for (TextLabel *const label : {m_count, m_selectionCount}) {
        place(*label, {row.left(), row.top(), titleLeft - gapAfterTitle - row.left(), row.height()});
    }
}

void GalleryToolbar::layOutInTwoRows()
{
    const QRect first(sideOfTwoRows, 0, width() - 2 * sideOfTwoRows, smallControlHeight);
    const QRect rest = placeAtEnd(first, visibleButtons());
    for (TextLabel *const label : {m_count, m_selectionCount}) {
        place(*label, rest);
    }
    const QRect second = first.translated(0, smallControlHeight + gap);
    place(*m_gridSizeTitle, placePickerAtEnd(second));
}

QRect GalleryToolbar::placePickerAtEnd(QRect row) const
{
    constexpr int outset = SegmentedPicker::outset;
    const int width = m_gridSize->sizeHint().width() - 2 * outset;
    const QRect box(row.right() + 1 - width, row.top(), width, row.height());
    place(*m_gridSize, box.adjusted(-outset, -outset, outset, outset));
    row.setRight(box.left() - 1);
    return row;
}

/// `box` is given for a desktop that writes from left to right.
void GalleryToolbar::place(QWidget &widget, const QRect &box) const
{
    widget.setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
}

void GalleryToolbar::paintEvent(QPaintEvent * /*event*/)
{
    // The contents scroll under it.
    QPainter(this).fillRect(rect(), Theme::current().window);
}
