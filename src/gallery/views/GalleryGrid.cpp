#include "GalleryGrid.h"

#include "GalleryGridAccessible.h"
#include "ScreenshotGalleryViewModel.h"
#include "galleryDrag.h"
#include "galleryKeys.h"
#include "outgoingDrag.h"
#include "screenshotDescription.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHelpEvent>
#include <QMimeData>
#include <QPointer>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace {

/// How far a focus ring stands out of its cell.
constexpr int focusRingReach = 4;

bool isTapKey(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

GalleryGrid::GalleryGrid(ScreenshotGalleryViewModel &model, QWidget *parent)
    : QWidget(parent),
      m_model(model),
      m_selection(model),
      m_cells(*this, model, [this](const ScreenshotItem &screenshot) { tapScreenshot(screenshot); })
{
    GalleryGridAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    ThumbnailLoader &loader = ThumbnailLoader::shared();
    connect(&loader, &ThumbnailLoader::dropped, this, [this](const QString &path) { reload(path); });
}

GalleryGrid::~GalleryGrid() = default;

void GalleryGrid::setMetrics(const GalleryGridMetrics &metrics)
{
    m_metrics = metrics;
    updateGeometry();
    updateCells();
}

void GalleryGrid::render()
{
    if (!m_model.isSelectionMode()) {
        m_selection.forget();
    }
    const bool hasMoved = findCurrentAgain();
    updateGeometry();
    updateCells();
    GalleryGridAccessible::update(*this);
    if (hasMoved && hasFocus()) {
        GalleryGridAccessible::tellFocus(*this);
    }
}

int GalleryGrid::count() const
{
    return static_cast<int>(m_model.displayedScreenshots().size());
}

const ScreenshotItem &GalleryGrid::screenshotAt(int index) const
{
    return m_model.displayedScreenshots().at(index);
}

int GalleryGrid::gridWidth(int availableWidth) const
{
    return m_metrics.widthOf(m_metrics.columnCountFitting(availableWidth));
}

GalleryGridGeometry GalleryGrid::geometryFor(int width) const
{
    return {
        .metrics = m_metrics,
        .cellCount = count(),
        .outset = outset,
        .width = width,
        .direction = layoutDirection(),
    };
}

int GalleryGrid::heightForWidth(int width) const
{
    return geometryFor(width).height();
}

QSize GalleryGrid::sizeHint() const
{
    const int width = m_metrics.widthOf(m_metrics.columnCount) + 2 * outset;
    return {width, heightForWidth(width)};
}

QSize GalleryGrid::minimumSizeHint() const
{
    return {m_metrics.cellWidth + 2 * outset, 0};
}

QRect GalleryGrid::cellRect(int index) const
{
    return layout().cell(index);
}

int GalleryGrid::indexAt(QPoint point) const
{
    return layout().indexAt(point);
}

QRect GalleryGrid::rectInSight() const
{
    if (!isVisible()) {
        return {};
    }
    QRect inSight = rect();
    QPoint origin;
    for (const QWidget *widget = this; !widget->isWindow(); widget = widget->parentWidget()) {
        origin -= widget->pos();
        inSight &= QRect(origin, widget->parentWidget()->size());
    }
    return inSight;
}

int GalleryGrid::cellInSight() const
{
    const QRect inSight = rectInSight();
    if (m_currentIndex >= 0 && inSight.intersects(cellRect(m_currentIndex))) {
        return m_currentIndex;
    }
    const GalleryGridGeometry::Range range = layout().rowsIn(inSight);
    for (int index = range.first; index < range.end; ++index) {
        if (inSight.contains(cellRect(index))) {
            return index;
        }
    }
    return -1;
}

GalleryThumbnail *GalleryGrid::thumbnailAt(int index) const
{
    return index >= 0 && index < count() ? m_cells.find(screenshotAt(index).id) : nullptr;
}

/// A scroll area moves its contents, which may be any ancestor.
void GalleryGrid::watchAncestors()
{
    for (const QWidget *widget = this; !widget->isWindow(); widget = widget->parentWidget()) {
        widget->parentWidget()->installEventFilter(this);
    }
}

bool GalleryGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
        updateCells();
    }
    return QWidget::eventFilter(watched, event);
}

void GalleryGrid::updateCells()
{
    if (isVisible()) {
        m_cells.update(layout(), rectInSight());
        updateAttention();
    }
}

/// Hidden, it would take the threads from what is in sight: then it waits until it is shown.
void GalleryGrid::reload(const QString &path)
{
    if (isVisible()) {
        m_cells.reload(path);
    } else if (m_cells.find(path) != nullptr) {
        m_changedWhileHidden.insert(path);
    }
}

void GalleryGrid::updateAttention()
{
    const int hovered = m_pointer ? indexAt(mapFromGlobal(*m_pointer)) : -1;
    const QString hoveredID = hovered < 0 ? QString() : screenshotAt(hovered).id;
    const bool showsFocus = hasFocus() && m_focusRing == FocusRing::Shown;
    m_cells.updateAttention([&](const QString &id) {
        const bool isHovered = id == hoveredID;
        return GalleryThumbnail::Attention{
            .isHovered = isHovered,
            .isPressed = isHovered && id == m_pressedID,
            .hasFocus = showsFocus && id == m_currentID,
        };
    });
}

bool GalleryGrid::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ToolTip:
        showToolTip(static_cast<QHelpEvent &>(*event));
        return true;
    case QEvent::LayoutDirectionChange:
        updateCells();
        break;
    case QEvent::EnabledChange:
        m_pressedID.clear();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void GalleryGrid::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_use = ThumbnailLoader::shared().use();
    watchAncestors();
    const QSet<QString> changed = std::exchange(m_changedWhileHidden, {});
    for (const QString &path : changed) {
        m_cells.reload(path);
    }
    updateCells();
}

void GalleryGrid::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_use.reset();
    m_pointer.reset();
    m_pressedID.clear();
}

void GalleryGrid::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    updateCells();
}

void GalleryGrid::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    updateCells();
}

void GalleryGrid::showToolTip(const QHelpEvent &event)
{
    const int index = indexAt(event.pos());
    if (index < 0) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(
        event.globalPos(), screenshotDescription::toolTip(screenshotAt(index)), this, cellRect(index));
}

void GalleryGrid::mousePressEvent(QMouseEvent *event)
{
    m_focusRing = FocusRing::Hidden;
    m_pointer = event->globalPosition().toPoint();
    const int index = indexAt(event->position().toPoint());
    if (index >= 0) {
        makeCurrent(index);
        if (event->button() == Qt::LeftButton) {
            m_pressPoint = event->position().toPoint();
            m_pressedID = screenshotAt(index).id;
        }
    }
    updateAttention();
}

/// Two clicks in quick succession are two clicks.
void GalleryGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

void GalleryGrid::mouseMoveEvent(QMouseEvent *event)
{
    m_pointer = event->globalPosition().toPoint();
    const QPoint way = event->position().toPoint() - m_pressPoint;
    if (!m_pressedID.isEmpty() && way.manhattanLength() >= QApplication::startDragDistance()) {
        startDrag();
        return;
    }
    updateAttention();
}

void GalleryGrid::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const QString pressedID = std::exchange(m_pressedID, {});
    const int index = indexAt(event->position().toPoint());
    updateAttention();
    if (index < 0 || screenshotAt(index).id != pressedID) {
        return;
    }
    if (m_model.isSelectionMode() && event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_selection.extendTo(index, index);
    } else if (const GalleryThumbnail *cell = thumbnailAt(index)) {
        cell->onTap();
    }
}

void GalleryGrid::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    m_pointer.reset();
    updateAttention();
}

void GalleryGrid::startDrag()
{
    const GalleryThumbnail *cell = m_cells.find(std::exchange(m_pressedID, {}));
    if (cell == nullptr) {
        return;
    }
    QDrag *const drag = outgoingDrag::make();
    drag->setMimeData(galleryDrag::files(galleryDrag::screenshots(m_model, cell->screenshot())).release());
    drag->setPixmap(galleryDrag::picture(*cell));
    drag->setHotSpot(m_pressPoint - cell->pos() - QPoint(GalleryThumbnail::outset, GalleryThumbnail::outset));
    m_pointer.reset();
    updateAttention();
    drag->exec(Qt::CopyAction);
}

void GalleryGrid::tapScreenshot(const ScreenshotItem &screenshot)
{
    if (m_model.isSelectionMode()) {
        m_model.toggleSelection(screenshot);
        m_selection.setAnchor(screenshot.id);
    } else {
        m_model.copyToClipboard(screenshot);
    }
}

void GalleryGrid::tap(int index)
{
    if (index < 0 || index >= count()) {
        return;
    }
    reveal(index);
    if (const GalleryThumbnail *cell = thumbnailAt(index)) {
        cell->onTap();
    } else {
        tapScreenshot(screenshotAt(index));
    }
}

void GalleryGrid::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const int index = isByKeyboard ? m_currentIndex : indexAt(event->pos());
    if (index < 0 || !onContextMenu) {
        event->ignore();
    } else if (isByKeyboard) {
        showContextMenu(index);
    } else {
        onContextMenu(screenshotAt(index), event->globalPos());
    }
}

void GalleryGrid::showContextMenu(int index)
{
    if (index < 0 || index >= count() || !onContextMenu) {
        return;
    }
    reveal(index);
    onContextMenu(screenshotAt(index), mapToGlobal(cellRect(index).center()));
}

std::optional<int> GalleryGrid::currentIndex() const
{
    return m_currentIndex < 0 ? std::nullopt : std::optional(m_currentIndex);
}

void GalleryGrid::setCurrentIndex(int index)
{
    if (index >= 0 && index < count()) {
        makeCurrent(index);
        reveal(index);
    }
}

void GalleryGrid::makeCurrent(int index)
{
    m_currentIndex = index;
    m_currentID = screenshotAt(index).id;
    updateAttention();
    if (hasFocus()) {
        GalleryGridAccessible::tellFocus(*this);
    }
}

bool GalleryGrid::findCurrentAgain()
{
    if (m_currentIndex < 0) {
        return false;
    }
    const QList<ScreenshotItem> &screenshots = m_model.displayedScreenshots();
    if (m_currentIndex < count() && screenshotAt(m_currentIndex).id == m_currentID) {
        return false;
    }
    const auto found = std::ranges::find(screenshots, m_currentID, &ScreenshotItem::id);
    m_currentIndex = found != screenshots.end() ? static_cast<int>(found - screenshots.begin())
                                                : std::min(m_currentIndex, count() - 1);
    m_currentID = m_currentIndex < 0 ? QString() : screenshotAt(m_currentIndex).id;
    return true;
}

void GalleryGrid::reveal(int index)
{
    if (onReveal) {
        onReveal(ringRect(index));
    }
}

QRect GalleryGrid::ringRect(int index) const
{
    constexpr int reach = focusRingReach;
    return cellRect(index).adjusted(-reach, -reach, reach, reach);
}

QVariant GalleryGrid::inputMethodQuery(Qt::InputMethodQuery query) const
{
    // What a scroll area brings into sight when Tab comes here: else the middle of the grid.
    if (query == Qt::ImCursorRectangle && m_currentIndex >= 0) {
        return ringRect(m_currentIndex);
    }
    return QWidget::inputMethodQuery(query);
}

void GalleryGrid::keyPressEvent(QKeyEvent *event)
{
    m_focusRing = FocusRing::Shown;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int rowsPerPage = std::max(1, rectInSight().height() / m_metrics.rowPitch());
    const auto next = galleryIndexForKey(*event, m_currentIndex, layout(), rowsPerPage);
    if (next) {
        if (modifiers.testFlag(Qt::ShiftModifier) && m_model.isSelectionMode()) {
            m_selection.extendTo(*next, std::max(0, m_currentIndex));
        }
        setCurrentIndex(*next);
    } else if (event->key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier && m_currentIndex >= 0) {
        showContextMenu(m_currentIndex);
    } else if (isTapKey(event->key()) && modifiers == Qt::NoModifier && m_currentIndex >= 0) {
        if (!event->isAutoRepeat()) {
            tap(m_currentIndex);
        }
    } else {
        QWidget::keyPressEvent(event);
    }
    updateAttention();
}

void GalleryGrid::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_focusRing = FocusRing::Shown;
        if (m_currentIndex >= 0) {
            reveal(m_currentIndex);
        }
        break;
    case Qt::MouseFocusReason:
        m_focusRing = FocusRing::Hidden;
        break;
    default:
        // A window that comes to the front, or a sheet that has gone, leaves it as it was.
        break;
    }
    if (m_currentIndex < 0 && count() > 0 && m_focusRing == FocusRing::Shown) {
        setCurrentIndex(0);
    } else if (m_currentIndex >= 0) {
        GalleryGridAccessible::tellFocus(*this);
    }
    updateAttention();
}

void GalleryGrid::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    updateAttention();
}
