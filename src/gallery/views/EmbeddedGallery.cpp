#include "EmbeddedGallery.h"

#include "GalleryGrid.h"
#include "GalleryPlaceholder.h"
#include "Hairline.h"
#include "OverflowCount.h"
#include "PushButton.h"
#include "ScreenshotGalleryViewModel.h"
#include "TextLabel.h"
#include "galleryTexts.h"

#include <QStyle>

#include <algorithm>

namespace {

constexpr int cellWidth = 80;
constexpr int spacing = 4;

/// In points, from the top down.
constexpr QSize viewSize(280, 355);
constexpr int side = 16;
constexpr int innerWidth = viewSize.width() - 2 * side;
constexpr int headTop = 14;
constexpr int headHeight = 31;
constexpr int gridTop = headTop + headHeight + 12;
constexpr int gridHeight = 188;
constexpr int moreTop = gridTop + gridHeight + spacing;
constexpr int moreHeight = 28;
constexpr int hintTop = moreTop + moreHeight + 10;
constexpr int hintHeight = 13;
constexpr int footHeight = 44;
constexpr int footTop = viewSize.height() - footHeight;
constexpr int smallButtonHeight = 26;
constexpr int buttonGap = 8;
/// A button without a face has its text flush with the margin.
constexpr int plainButtonPadding = 8;

constexpr QRect footRow(side, footTop + (footHeight - smallButtonHeight) / 2, innerWidth, smallButtonHeight);

/// A box as high as `row` at its end, as wide as the button likes to be.
QRect atEnd(const QRect &row, const PushButton &button)
{
    const int width = std::min(row.width(), button.sizeHint().width() - 2 * PushButton::outset);
    return {row.right() + 1 - width, row.top(), width, row.height()};
}

QRect atBeginning(const QRect &row, const PushButton &button)
{
    QRect box = atEnd(row, button);
    box.moveLeft(row.left());
    return box;
}

PushButton *smallButton(PushButton::Kind kind, const QString &text, const QString &symbol, QWidget *parent)
{
    auto *const button = new PushButton(kind, text, parent);
    button->setSize(PushButton::Size::Small);
    button->setSymbol(symbol);
    return button;
}

} // namespace

EmbeddedGallery::EmbeddedGallery(
    ScreenshotGalleryViewModel &model, const GalleryActions &actions, QWidget *parent)
    : GalleryLayout(parent),
      m_model(model),
      m_title(new TextLabel(TextStyle::Headline, tr("Recent Screenshots"), this)),
      m_count(new TextLabel(TextStyle::Subheadline, {}, this)),
      m_expand(smallButton(
          PushButton::Kind::Plain, tr("Expand"), QStringLiteral("arrow.up.left.and.arrow.down.right"), this)),
      m_cancel(smallButton(PushButton::Kind::Bordered, tr("Cancel"), {}, this)),
      m_grid(new GalleryGrid(model, this)),
      m_placeholder(new GalleryPlaceholder(GalleryMode::Embedded, this)),
      m_overflow(new OverflowCount(this)),
      m_viewAll(new PushButton(PushButton::Kind::Bordered, tr("View All"), this)),
      m_hint(new TextLabel(TextStyle::Caption, tr("Click on any screenshot to copy it to clipboard"), this)),
      m_hairline(new Hairline(Qt::Horizontal, this)),
      m_selectMultiple(smallButton(PushButton::Kind::Bordered, tr("Select Multiple"), {}, this)),
      m_refresh(smallButton(PushButton::Kind::Plain, tr("Refresh"), {}, this)),
      m_copyAll(
          smallButton(PushButton::Kind::Bordered, tr("Copy All"), QStringLiteral("doc.on.clipboard"), this)),
      m_deleteAll(
          smallButton(PushButton::Kind::BorderedDestructive, tr("Delete All"), QStringLiteral("trash"), this))
{
    for (TextLabel *const label : {m_title, m_count}) {
        label->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
        label->setMaximumLineCount(1);
    }
    m_count->setColor(TextColor::Secondary);
    m_hint->setColor(TextColor::Secondary);
    m_hint->setMaximumLineCount(1);
    m_grid->setMetrics(GalleryGridMetrics::embedded());
    m_viewAll->setSize(PushButton::Size::Compact);
    connectButtons(actions);
    setFixedSize(viewSize);
}

void EmbeddedGallery::connectButtons(const GalleryActions &actions)
{
    connect(m_expand, &PushButton::clicked, this, actions.expandToFull);
    connect(m_viewAll, &PushButton::clicked, this, actions.expandToFull);
    connect(m_refresh, &PushButton::clicked, this, actions.refresh);
    connect(m_cancel, &PushButton::clicked, this, actions.cancelSelection);
    connect(m_selectMultiple, &PushButton::clicked, this, [this] { m_model.setSelectionMode(true); });
    connect(m_copyAll, &PushButton::clicked, this, [this] { m_model.copySelectedToClipboard(); });
    connect(m_deleteAll, &PushButton::clicked, this, [this] { m_model.setShowBulkDeleteConfirmation(true); });
}

QSize EmbeddedGallery::sizeHint() const
{
    return viewSize;
}

void EmbeddedGallery::render(const GalleryViewState & /*state*/)
{
    renderHeader();
    renderContents();
    renderFoot();
    layOut();
    m_grid->render();
}

void EmbeddedGallery::renderHeader()
{
    const bool isSelecting = m_model.isSelectionMode();
    m_count->setVisible(!m_model.isLoading());
    m_count->setText(
        isSelecting ? galleryTexts::selectionCount(m_model.selectedScreenshots().size())
                    : galleryTexts::screenshotCount(m_model.allScreenshots().size()));
    m_expand->setVisible(!isSelecting);
    m_cancel->setVisible(isSelecting);
}

void EmbeddedGallery::renderContents()
{
    const bool isFilled = !m_model.displayedScreenshots().isEmpty();
    m_placeholder->setState(
        m_model.isLoading() ? GalleryPlaceholder::State::Loading : GalleryPlaceholder::State::Empty);
    m_placeholder->setVisible(!isFilled);
    m_grid->setVisible(isFilled);
    m_viewAll->setVisible(isFilled);
    m_overflow->setVisible(m_model.remainingCount() > 0);
    m_overflow->setText(galleryTexts::overflow(m_model.remainingCount()));
    m_hint->setVisible(isFilled && !m_model.isSelectionMode());
}

void EmbeddedGallery::renderFoot()
{
    const bool isSelecting = m_model.isSelectionMode();
    m_selectMultiple->setVisible(!isSelecting);
    m_selectMultiple->setEnabled(!m_model.displayedScreenshots().isEmpty());
    m_refresh->setVisible(!isSelecting);
    m_refresh->setEnabled(!m_model.isLoading());

    const bool isDeleting = m_model.isDeleting();
    m_copyAll->setVisible(isSelecting);
    m_copyAll->setEnabled(!isDeleting);
    m_deleteAll->setVisible(isSelecting);
    m_deleteAll->setEnabled(!isDeleting && !m_model.selectedScreenshots().isEmpty());
    m_deleteAll->setText(isDeleting ? tr("Deleting...") : tr("Delete All"));
    m_deleteAll->setProgress(isDeleting);
}

void EmbeddedGallery::resizeEvent(QResizeEvent *event)
{
    GalleryLayout::resizeEvent(event);
    layOut();
}

void EmbeddedGallery::layOut()
{
    const QRect head(side, headTop, innerWidth, headHeight);
    QRect headRow(0, 0, innerWidth, smallButtonHeight);
    headRow.moveCenter(head.center());
    const QRect expand = atEnd(headRow, *m_expand);
    place(*m_expand, expand.translated(plainButtonPadding, 0));
    place(*m_cancel, atEnd(headRow, *m_cancel));
    const int textWidth = innerWidth - expand.width() - buttonGap;
    const int titleHeight = lineHeight(TextStyle::Headline);
    place(*m_title, {side, head.top(), textWidth, titleHeight});
    place(*m_count, {side, head.top() + titleHeight + 1, textWidth, lineHeight(TextStyle::Subheadline)});

    constexpr int outset = GalleryGrid::outset;
    place(*m_grid, QRect(side, gridTop, innerWidth, gridHeight).adjusted(-outset, -outset, outset, outset));
    place(*m_placeholder, {side, headTop + headHeight, innerWidth, footTop - headTop - headHeight});
    // What doesn't overflow leaves the whole row to the way to the window.
    const int overflowWidth = m_overflow->isHidden() ? 0 : cellWidth + spacing;
    place(*m_overflow, {side, moreTop, cellWidth, moreHeight});
    place(*m_viewAll, {side + overflowWidth, moreTop, innerWidth - overflowWidth, moreHeight});
    place(*m_hint, {side, hintTop, innerWidth, hintHeight});

    place(*m_hairline, {0, footTop, viewSize.width(), 1});
    place(*m_selectMultiple, atBeginning(footRow, *m_selectMultiple));
    place(*m_refresh, atEnd(footRow, *m_refresh).translated(plainButtonPadding, 0));
    const int half = (innerWidth - buttonGap) / 2;
    place(*m_copyAll, {side, footRow.top(), half, smallButtonHeight});
    place(*m_deleteAll, {side + half + buttonGap, footRow.top(), half, smallButtonHeight});
}

/// `box` is given for a desktop that writes from left to right.
void EmbeddedGallery::place(QWidget &widget, const QRect &box) const
{
    widget.setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
}

void EmbeddedGallery::place(PushButton &button, const QRect &box) const
{
    constexpr int outset = PushButton::outset;
    place(static_cast<QWidget &>(button), box.adjusted(-outset, -outset, outset, outset));
}
