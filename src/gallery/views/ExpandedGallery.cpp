#include "ExpandedGallery.h"

#include "AccessBanner.h"
#include "GalleryGrid.h"
#include "GalleryPlaceholder.h"
#include "GalleryToolbar.h"
#include "Hairline.h"
#include "PushButton.h"
#include "ScreenshotGalleryViewModel.h"
#include "ScrollArea.h"
#include "TextLabel.h"
#include "Theme.h"
#include "galleryTexts.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

/// In points.
constexpr int padding = 24;
constexpr int paddingOfNarrowHost = 20;
constexpr int gapAfterBanner = 20;
constexpr int gapBeforeLoadMore = 28;
constexpr int loadMoreHeight = 28;
constexpr int gapBeforeFooter = 10;
} // namespace

ExpandedGallery::ExpandedGallery(
    ScreenshotGalleryViewModel &model, const GalleryActions &actions, QWidget *parent)
    : GalleryLayout(parent),
      m_model(model),
      m_toolbar(new GalleryToolbar(model, actions, this)),
      m_hairline(new Hairline(Qt::Horizontal, this)),
      m_scrollArea(new ScrollArea(this)),
      m_contents(new QWidget),
      m_banner(new AccessBanner(m_contents)),
      m_grid(new GalleryGrid(model, m_contents)),
      m_placeholder(new GalleryPlaceholder(GalleryMode::Expanded, m_contents)),
      m_loadMore(new PushButton(PushButton::Kind::Bordered, {}, m_contents)),
      m_footer(new TextLabel(TextStyle::Callout, {}, m_contents))
{
    // It fills itself with one colour: what lies behind it needn't be painted.
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_footer->setColor(TextColor::Secondary);
    m_banner->hide();
    m_scrollArea->setWidget(m_contents);
    m_grid->onReveal = [this](const QRect &cell) { reveal(cell); };
    connect(m_banner, &AccessBanner::clicked, this, actions.openAccessSettings);
    connect(m_loadMore, &PushButton::clicked, this, [this] { m_model.loadMore(); });
    m_banner->installEventFilter(this);
    m_loadMore->installEventFilter(this);
    repaintWithTheme(*this);
}

void ExpandedGallery::render(const GalleryViewState &state)
{
    m_toolbar->render(state.gridSize);
    const GalleryGridMetrics metrics = GalleryGridMetrics::expanded(state.gridSize);
    const int kept = metrics == m_grid->metrics() ? -1 : m_grid->cellInSight();
    const int topBefore = kept >= 0 ? topOf(kept) : 0;
    m_grid->setMetrics(metrics);
    renderContents(state);
    renderLoadMore();
    layOut();
    m_grid->render();
    if (kept >= 0) {
        QScrollBar *const bar = m_scrollArea->verticalScrollBar();
        bar->setValue(bar->value() + topOf(kept) - topBefore);
        m_grid->reveal(kept);
    }
}

/// In the coordinates of what is scrolled.
int ExpandedGallery::topOf(int cell) const
{
    return m_grid->y() + m_grid->cellRect(cell).top();
}

void ExpandedGallery::renderContents(const GalleryViewState &state)
{
    const bool isFilled = !m_model.displayedScreenshots().isEmpty();
    m_banner->setVisible(!state.hasFolderAccess);
    m_grid->setVisible(isFilled);
    m_placeholder->setVisible(!isFilled);
    m_placeholder->setState(
        m_model.isLoading() ? GalleryPlaceholder::State::Loading : GalleryPlaceholder::State::Empty);
}

void ExpandedGallery::renderLoadMore()
{
    const bool isLoading = m_model.isLoadingMore();
    if (isLoading && window()->focusWidget() == m_loadMore) {
        // Disabled, it would leave the keyboard to the toolbar.
        m_grid->setFocus();
    }
    m_loadMore->setVisible(m_model.hasMore());
    m_loadMore->setEnabled(!isLoading);
    m_loadMore->setSymbol(QStringLiteral("arrow.down.circle"));
    m_loadMore->setText(isLoading ? tr("Loading...") : galleryTexts::loadMore(m_model.remainingCount()));
    m_loadMore->setProgress(isLoading);
    m_footer->setVisible(m_model.hasMore());
    m_footer->setText(
        galleryTexts::footer(m_model.displayedScreenshots().size(), m_model.allScreenshots().size()));
}

bool ExpandedGallery::eventFilter(QObject *watched, QEvent *event)
{
    // The toolkit scrolls only where Tab has been pressed within what is scrolled.
    if (event->type() == QEvent::FocusIn) {
        m_scrollArea->ensureWidgetVisible(static_cast<QWidget *>(watched));
    }
    return GalleryLayout::eventFilter(watched, event);
}

void ExpandedGallery::resizeEvent(QResizeEvent *event)
{
    GalleryLayout::resizeEvent(event);
    layOut();
}

void ExpandedGallery::layOut()
{
    const int toolbarHeight = m_toolbar->heightForWidth(width());
    m_toolbar->setGeometry(0, 0, width(), toolbarHeight);
    m_hairline->setGeometry(0, toolbarHeight, width(), 1);
    m_hairline->setVisible(width() >= GalleryToolbar::leastWidthOfOneRow);
    m_scrollArea->setGeometry(0, toolbarHeight, width(), height() - toolbarHeight);
    m_hairline->raise();
    layOutContents();
}

void ExpandedGallery::layOutContents()
{
    // The viewport has this size too, but while nothing is shown the toolkit puts off giving it.
    const QSize area = m_scrollArea->size();
    const bool isNarrow = area.width() < GalleryToolbar::leastWidthOfOneRow;
    const int side = isNarrow ? GalleryToolbar::sideMargin(area.width()) : padding;
    const int available = area.width() - 2 * side;
    const int gridWidth = m_grid->gridWidth(available);
    const int left = (area.width() - gridWidth) / 2;

    int top = isNarrow ? paddingOfNarrowHost : padding;
    if (!m_banner->isHidden()) {
        constexpr int outset = AccessBanner::outset;
        m_banner->setGeometry(
            QRect(left, top, gridWidth, AccessBanner::faceHeight).adjusted(-outset, -outset, outset, outset));
        top += AccessBanner::faceHeight + gapAfterBanner;
    }
    // In the middle of the window rather than of what the toolbar leaves of it.
    const int placeholderHeight = area.height() - top - padding - m_toolbar->height();
    m_placeholder->setGeometry(0, top, area.width(), std::max(0, placeholderHeight));
    if (!m_grid->isHidden()) {
        constexpr int outset = GalleryGrid::outset;
        const int gridHeight = m_grid->heightForWidth(gridWidth + 2 * outset) - 2 * outset;
        m_grid->setGeometry(
            QRect(left, top, gridWidth, gridHeight).adjusted(-outset, -outset, outset, outset));
        top += gridHeight;
    }
    if (!m_loadMore->isHidden()) {
        top += gapBeforeLoadMore;
        layOutLoadMore(top, area.width());
        top += loadMoreHeight + gapBeforeFooter + lineHeight(TextStyle::Callout);
    }
    m_contents->setMinimumHeight(top + padding);
}

void ExpandedGallery::layOutLoadMore(int top, int width)
{
    constexpr int outset = PushButton::outset;
    const int buttonWidth = m_loadMore->sizeHint().width();
    m_loadMore->setGeometry(
        (width - buttonWidth) / 2, top - outset, buttonWidth, loadMoreHeight + 2 * outset);
    m_footer->setGeometry(0, top + loadMoreHeight + gapBeforeFooter, width, lineHeight(TextStyle::Callout));
}

/// Scrolls as little as shows the cell with some of what is around it.
void ExpandedGallery::reveal(const QRect &cell)
{
    const QRect place = cell.translated(m_grid->pos());
    m_scrollArea->ensureVisible(
        place.center().x(), place.center().y(), 0, (place.height() + 1) / 2 + padding);
}

void ExpandedGallery::paintEvent(QPaintEvent * /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::current().window);
}
