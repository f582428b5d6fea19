#include "PopUpMenu.h"

#include "Compositor.h"
#include "FloatingSurface.h"
#include "Symbols.h"
#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"
#include "processMemory.h"

#include <QActionEvent>
#include <QCommonStyle>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionMenuItem>

#include <algorithm>
#include <chrono>

namespace {

constexpr qreal cornerRadius = 10;
constexpr int inset = 5;
constexpr int rowHeight = 30;
constexpr qreal rowRadius = 6;
constexpr int separatorHeight = 11;
constexpr int panelGap = 2;

/// Inside a row, from the left: padding, the symbols' column, a gap, the text.
constexpr int leftPadding = 8;
constexpr int symbolColumn = 18;
constexpr int symbolSide = 17;
constexpr int textLeft = leftPadding + symbolColumn + 9;
constexpr int rightPadding = 10;
constexpr int gapBeforeShortcut = 24;
constexpr qreal disabledOpacity = 0.45;

/// The menu's measures, in the way that the toolkit asks for them. All painting is the menu's own.
class MenuStyle final : public QCommonStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        switch (metric) {
        case PM_MenuPanelWidth:
            return inset;
        case PM_MenuHMargin:
        case PM_MenuVMargin:
        case PM_MenuDesktopFrameWidth:
            return 0;
        default:
            return QCommonStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(
        StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *returnData) const override
    {
        if (hint == SH_Menu_MouseTracking) {
            return 1;
        }
        return QCommonStyle::styleHint(hint, option, widget, returnData);
    }

    QSize sizeFromContents(
        ContentsType type, const QStyleOption *option, const QSize &size,
        const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (type != CT_MenuItem || item == nullptr) {
            return QCommonStyle::sizeFromContents(type, option, size, widget);
        }
        if (item->menuItemType == QStyleOptionMenuItem::Separator) {
            return {1, separatorHeight};
        }
        // The toolkit adds the widest shortcut itself.
        const QString text = item->text.section(QLatin1Char('\t'), 0, 0);
        const bool hasShortcut = item->text.size() > text.size();
        const int width = item->fontMetrics.horizontalAdvance(text);
        return {textLeft + width + (hasShortcut ? gapBeforeShortcut : 0) + rightPadding, rowHeight};
    }
};

QString shortcutText(const QAction &action)
{
    return action.shortcut().toString(QKeySequence::NativeText);
}

void paintCheckMark(QPainter &painter, const QPointF &centre, const QColor &color)
{
    const QPolygonF mark{
        centre + QPointF(-4.5, 0.2), centre + QPointF(-1.2, 3.5), centre + QPointF(4.6, -3.5)};
    painter.setPen(QPen(color, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(mark);
}

/// A hairline of half a point, or a pixel where that is more.
void paintSeparator(QPainter &painter, const QRect &row)
{
    const qreal pixel = 1 / painter.device()->devicePixelRatioF();
    const qreal thickness = std::max(0.5, pixel);
    painter.fillRect(
        QRectF(
            row.left() + leftPadding, row.top() + (separatorHeight - 1) / 2.0, row.width() - 2 * leftPadding,
            thickness),
        Theme::current().separator);
}

/// The arrow key that leads into the menu where this key goes: to its first row or to its last.
std::optional<Qt::Key> stepToEnd(const QKeyEvent &event)
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        return std::nullopt;
    }
    switch (event.key()) {
    case Qt::Key_Home:
    case Qt::Key_PageUp:
        return Qt::Key_Down;
    case Qt::Key_End:
    case Qt::Key_PageDown:
        return Qt::Key_Up;
    default:
        return std::nullopt;
    }
}

/// The upper left corner of a menu of this size beside `item`.
QPoint placeBeside(const QRect &item, QSize size, const QRect &area)
{
    const QPoint middle = item.center();
    QPoint corner(item.left(), std::max(item.bottom() + 1, area.top()) + panelGap);
    if (middle.x() < area.left()) {
        corner = {area.left() + panelGap, item.top()};
    } else if (middle.x() > area.right()) {
        corner = {area.right() + 1 - panelGap - size.width(), item.top()};
    } else if (middle.y() > area.bottom() || corner.y() + size.height() > area.bottom() + 1) {
        corner.setY(std::min(item.top(), area.bottom() + 1) - panelGap - size.height());
    }
    const int rightmost = std::max(area.left(), area.right() + 1 - size.width());
    const int lowest = std::max(area.top(), area.bottom() + 1 - size.height());
    return {std::clamp(corner.x(), area.left(), rightmost), std::clamp(corner.y(), area.top(), lowest)};
}

} // namespace

PopUpMenu::PopUpMenu(int leastWidth, QWidget *parent) : QMenu(parent), m_leastWidth(leastWidth)
{
    auto *style = new MenuStyle;
    style->setParent(this);
    setStyle(style);
    setFont(::font(TextStyle::Body));
    setToolTipsVisible(true);
    setWindowFlag(Qt::FramelessWindowHint);
    setWindowFlag(Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setShadow(PopoverAppearance::Shadow::None);
    repaintWithTheme(*this);
}

void PopUpMenu::setShadow(PopoverAppearance::Shadow shadow)
{
    m_shadow = shadow;
    const bool drawn = shadow == PopoverAppearance::Shadow::Drawn;
    const QMargins margins = drawn ? FloatingSurface::shadowMargins() : QMargins();
    setContentsMargins(margins);
    setMinimumWidth(m_leastWidth + margins.left() + margins.right());
    updateMask();
}

void PopUpMenu::updateMask()
{
    if (m_shadow == PopoverAppearance::Shadow::Drawn) {
        clearMask();
    } else {
        setMask(QRegion(continuousRoundedRect(body(), cornerRadius).toFillPolygon().toPolygon()));
    }
}

void PopUpMenu::popUpBeside(const QRect &item)
{
    using Shadow = PopoverAppearance::Shadow;
    popUpBeside(item, compositorIsActive() ? Shadow::Drawn : Shadow::None);
}

void PopUpMenu::popUpBeside(const QRect &item, PopoverAppearance::Shadow shadow)
{
    setShadow(shadow);
    const QScreen *screen = QGuiApplication::screenAt(item.center());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    const QSize size = sizeHint().shrunkBy(contentsMargins());
    const QPoint corner = placeBeside(item, size, screen->availableGeometry());
    m_position = corner - QPoint(contentsMargins().left(), contentsMargins().top());
    popup(m_position);
}

void PopUpMenu::showEvent(QShowEvent *event)
{
    m_windowRelease.reset();
    move(m_position);
    QMenu::showEvent(event);
}

void PopUpMenu::hideEvent(QHideEvent *event)
{
    QMenu::hideEvent(event);
    // A menu that is kept needs no window until it is opened again; its picture is shared memory. Later,
    // because the toolkit isn't done with it yet: it tells assistive programs of each key before the window
    // gets it, and the release of a key that has closed the menu would be leaked if the window went meanwhile
    // (Qt 6.4).
    constexpr std::chrono::seconds delay(1);
    m_windowRelease.emplace(delay, [this] {
        destroy();
        processMemory::returnUnused();
    });
}

void PopUpMenu::resizeEvent(QResizeEvent *event)
{
    QMenu::resizeEvent(event);
    updateMask();
}

void PopUpMenu::actionEvent(QActionEvent *event)
{
    if (event->type() == QEvent::ActionAdded) {
        // Some desktops hide them in menus that hang on nothing.
        event->action()->setShortcutVisibleInContextMenu(true);
    }
    QMenu::actionEvent(event);
}

QAction *PopUpMenu::actionForKey(const QKeyEvent &event) const
{
    const QKeySequence pressed(event.keyCombination());
    const QList<QAction *> candidates = actions();
    const auto found = std::ranges::find_if(candidates, [&pressed](const QAction *action) {
        return action->isEnabled() && action->isVisible() && action->shortcuts().contains(pressed);
    });
    return found == candidates.end() ? nullptr : *found;
}

void PopUpMenu::keyPressEvent(QKeyEvent *event)
{
    if (QAction *action = actionForKey(*event)) {
        // As if the row were chosen with the arrow keys: the menu closes, then the action runs.
        setActiveAction(action);
        QKeyEvent choose(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QMenu::keyPressEvent(&choose);
        event->accept();
        return;
    }
    if (const auto step = stepToEnd(*event)) {
        // Where no row is highlighted, the arrow keys begin at either end.
        setActiveAction(nullptr);
        QKeyEvent arrow(QEvent::KeyPress, *step, Qt::NoModifier);
        QMenu::keyPressEvent(&arrow);
        event->accept();
        return;
    }
    QMenu::keyPressEvent(event);
}

void PopUpMenu::mousePressEvent(QMouseEvent *event)
{
    if (!body().contains(event->position().toPoint())) {
        close();
        return;
    }
    QMenu::mousePressEvent(event);
    update();
}

void PopUpMenu::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    FloatingSurface::paint(painter, continuousRoundedRect(body(), cornerRadius), m_shadow);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QAction *action : actions()) {
        const QRect row = actionGeometry(const_cast<QAction *>(action));
        if (!action->isVisible() || !row.intersects(event->rect())) {
            continue;
        }
        if (action->isSeparator()) {
            paintSeparator(painter, row);
        } else {
            paintRow(painter, *action);
        }
    }
}

void PopUpMenu::paintRow(QPainter &painter, const QAction &action) const
{
    const Theme &theme = Theme::current();
    const QRect row = actionGeometry(const_cast<QAction *>(&action));
    const bool highlighted = &action == activeAction() && action.isEnabled();
    if (highlighted) {
        const bool pressed = QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
        painter.fillPath(continuousRoundedRect(row, rowRadius), pressed ? theme.accentPressed : theme.accent);
    }
    const QColor textColor = highlighted ? theme.onAccent : theme.primary;
    const QColor secondColor = highlighted ? theme.onAccent : theme.secondary;
    painter.setOpacity(action.isEnabled() ? 1 : disabledOpacity);

    const QRect column = QStyle::visualRect(
        layoutDirection(), row, QRect(row.left() + leftPadding, row.top(), symbolColumn, row.height()));
    const QPointF centre = QRectF(column).center();
    const QString symbol = action.icon().name();
    if (action.isChecked()) {
        paintCheckMark(painter, centre, secondColor);
    } else if (!symbol.isEmpty()) {
        Symbols::paint(painter, symbol, centre, symbolSide, secondColor);
    }
    const QRect texts =
        QStyle::visualRect(layoutDirection(), row, row.adjusted(textLeft, 0, -rightPadding, 0));
    painter.setPen(textColor);
    painter.setFont(font());
    painter.drawText(texts, Qt::AlignVCenter | Qt::TextSingleLine, action.text());
    painter.setPen(secondColor);
    painter.setFont(::font(TextStyle::Shortcut));
    painter.drawText(texts, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, shortcutText(action));
    painter.setOpacity(1);
}
