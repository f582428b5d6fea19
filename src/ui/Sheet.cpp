#include "Sheet.h"

#include "AccessibleRole.h"
#include "ButtonRowLayout.h"
#include "FloatingSurface.h"
#include "Motion.h"
#include "Popover.h"
#include "SymbolLabel.h"
#include "TextLabel.h"
#include "Theme.h"
#include "continuousRoundedRect.h"
#include "fileNameText.h"

#include <QApplication>
#include <QGraphicsEffect>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int cardWidth = 320;
constexpr int narrowCardWidth = 248;
constexpr int narrowHostWidth = 400;
constexpr int leastMargin = 16;
constexpr qreal cornerRadius = 14;
constexpr int padding = 20;
constexpr int symbolSide = 32;
constexpr int gapBelowSymbol = 12;
constexpr int gapBelowTitle = 6;
constexpr int gapAboveButtons = 18;
constexpr int maximumMessageLines = 8;
constexpr std::chrono::milliseconds appearance{150};
constexpr qreal scaleAtFirst = 0.96;

/// What the card's contents look like while the card appears.
class AppearanceEffect final : public QGraphicsEffect {
public:
    using QGraphicsEffect::QGraphicsEffect;

    void set(qreal scale, qreal opacity)
    {
        m_scale = scale;
        m_opacity = opacity;
        update();
    }

protected:
    void draw(QPainter *painter) override
    {
        QPoint offset;
        const QPixmap pixmap = sourcePixmap(Qt::LogicalCoordinates, &offset, PadToEffectiveBoundingRect);
        const QPointF centre = sourceBoundingRect().center();
        painter->save();
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->setOpacity(m_opacity);
        painter->translate(centre);
        painter->scale(m_scale, m_scale);
        painter->translate(-centre);
        painter->drawPixmap(offset, pixmap);
        painter->restore();
    }

private:
    qreal m_scale = 1;
    qreal m_opacity = 1;
};

qreal scaleAt(qreal progress)
{
    return Motion::isReduced() ? 1 : scaleAtFirst + (1 - scaleAtFirst) * progress;
}

bool isInSheet(const QWidget &widget)
{
    for (const QWidget *ancestor = &widget; ancestor != nullptr; ancestor = ancestor->parentWidget()) {
        if (qobject_cast<const Sheet *>(ancestor) != nullptr) {
            return true;
        }
    }
    return false;
}

/// What a sheet keeps from the window under it. Painting, layout and its own life go on.
bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::ToolTip:
    case QEvent::WhatsThis:
        return true;
    default:
        return false;
    }
}

} // namespace

QPointer<Sheet> Sheet::present(QWidget &host, SheetDescription description)
{
    auto *sheet = new Sheet(*host.window(), std::move(description));
    if (!host.isWindow()) {
        connect(&host, &QObject::destroyed, sheet, &Sheet::dismiss);
    }
    sheet->appear();
    return sheet;
}

Sheet::Sheet(QWidget &window, SheetDescription description)
    : QWidget(&window),
      m_description(std::move(description)),
      m_card(new QWidget(this)),
      m_focusedBefore(window.focusWidget())
{
    setFocusPolicy(Qt::NoFocus);
    setAccessibleRole(*this, QAccessible::Dialog);
    setAccessibleName(m_description.title);
    setAccessibleDescription(m_description.message);
    makeCard();
    setGeometry(window.rect());
    window.installEventFilter(this);
    connect(
        qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { keepFocusInside(now); });
    repaintWithTheme(*this);
}

void Sheet::makeCard()
{
    auto *rows = new QVBoxLayout(m_card);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(0);
    const bool isRed = m_description.tone == SheetDescription::Tone::Red;
    rows->addWidget(
        new SymbolLabel(m_description.symbol, symbolSide, isRed ? TextColor::Red : TextColor::Blue, m_card),
        0, Qt::AlignHCenter);
    rows->addSpacing(gapBelowSymbol);
    rows->addWidget(new TextLabel(TextStyle::Headline, m_description.title, m_card));
    rows->addSpacing(gapBelowTitle);
    const QString text = fileNameText::displayedInSentence(m_description.message);
    auto *message = new TextLabel(TextStyle::Callout, text, m_card);
    message->setColor(TextColor::Secondary);
    message->setBreaking(TextLabel::Breaking::AtBlanks);
    message->setMaximumLineCount(maximumMessageLines);
    rows->addWidget(message);
    rows->addSpacing(gapAboveButtons);
    auto *row = new ButtonRowLayout(ButtonRowLayout::Shares::Equal);
    rows->addLayout(row);
    for (qsizetype index = 0; index < m_description.buttons.size(); ++index) {
        const SheetButton &described = m_description.buttons[index];
        auto *button = new PushButton(described.kind, described.text, m_card);
        connect(button, &PushButton::clicked, this, [this, index] { answer(index); });
        row->addButton(*button);
        m_buttons.append(button);
        if (described.role == SheetButton::Role::Cancel) {
            m_cancelIndex = index;
        }
    }
}

void Sheet::appear()
{
    placeCard();
    show();
    raise();
    if (!m_buttons.isEmpty()) {
        m_buttons[m_cancelIndex]->setFocus(Qt::TabFocusReason);
    }
    QAccessibleEvent shown(this, QAccessible::DialogStart);
    QAccessible::updateAccessibility(&shown);
    m_card->setGraphicsEffect(new AppearanceEffect);
    Motion::run(*this, appearance, Motion::Kind::Fade, [this](qreal progress) { setProgress(progress); });
}

void Sheet::setProgress(qreal progress)
{
    m_progress = progress;
    if (progress >= 1) {
        m_card->setGraphicsEffect(nullptr);
    } else if (auto *effect = static_cast<AppearanceEffect *>(m_card->graphicsEffect())) {
        effect->set(scaleAt(progress), progress);
    }
    update();
}

void Sheet::dismiss()
{
    if (m_isDismissed) {
        return;
    }
    m_isDismissed = true;
    disconnect(qApp, nullptr, this, nullptr);
    giveFocusBack();
    hide();
    deleteLater();
}

void Sheet::giveFocusBack()
{
    const QWidget *focused = window()->focusWidget();
    const bool isInside = focused != nullptr && isAncestorOf(focused);
    if (m_focusedBefore && (focused == nullptr || isInside)) {
        m_focusedBefore->setFocus(Qt::OtherFocusReason);
    }
}

void Sheet::answer(qsizetype index)
{
    if (m_isDismissed) {
        return;
    }
    // A copy: what the action does may end the window, and the sheet with it.
    const std::function<void()> action = m_description.buttons[index].action;
    dismiss();
    if (action) {
        action();
    }
}

void Sheet::keepFocusInside(QWidget *focused)
{
    // A second sheet above this one keeps the focus for itself.
    const bool isUnderneath = focused != nullptr && focused->window() == window() && !isInSheet(*focused);
    if (isUnderneath && !m_buttons.isEmpty()) {
        m_buttons[m_cancelIndex]->setFocus(Qt::OtherFocusReason);
    }
}

bool Sheet::focusNextPrevChild(bool next)
{
    const qsizetype count = m_buttons.size();
    if (count > 0) {
        const auto focused = std::ranges::find(m_buttons, window()->focusWidget());
        const qsizetype current = focused == m_buttons.end() ? m_cancelIndex : focused - m_buttons.begin();
        const qsizetype step = next ? 1 : count - 1;
        m_buttons[(current + step) % count]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    }
    return true;
}

bool Sheet::event(QEvent *event)
{
    if (!isInput(event->type())) {
        return QWidget::event(event);
    }
    if (event->type() == QEvent::KeyPress) {
        const auto *keys = static_cast<QKeyEvent *>(event);
        const Qt::KeyboardModifiers modifiers = keys->modifiers() & ~Qt::KeypadModifier;
        if (keys->key() == Qt::Key_Tab || keys->key() == Qt::Key_Backtab) {
            focusNextPrevChild(keys->key() == Qt::Key_Tab && !modifiers.testFlag(Qt::ShiftModifier));
        } else if (keys->key() == Qt::Key_Escape && modifiers == Qt::NoModifier && !m_buttons.isEmpty()) {
            answer(m_cancelIndex);
        }
    }
    event->accept();
    return true;
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

QPainterPath Sheet::scrimOutline() const
{
    QPainterPath outline = Popover::outlineOf(*window());
    if (outline.isEmpty()) {
        outline.addRect(rect());
    }
    return outline;
}

void Sheet::placeCard()
{
    const QRectF area = scrimOutline().boundingRect();
    const int wanted = area.width() < narrowHostWidth ? narrowCardWidth : cardWidth;
    const int width = std::min(wanted, qFloor(area.width()));
    const int height = m_card->layout()->totalHeightForWidth(width);
    // A third of the way down, higher where that leaves too little below.
    const qreal lowest = area.bottom() - leastMargin - height;
    const qreal top = std::max(area.top(), std::min(area.top() + area.height() / 3, lowest));
    m_card->setGeometry(qRound(area.center().x() - width / 2.0), qRound(top), width, height);
}

void Sheet::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeCard();
}

void Sheet::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_progress);
    const QPainterPath outline = scrimOutline();
    painter.fillPath(outline, Theme::current().scrim);
    const QPointF centre = QRectF(m_card->geometry()).center();
    painter.setClipPath(outline);
    painter.translate(centre);
    painter.scale(scaleAt(m_progress), scaleAt(m_progress));
    painter.translate(-centre);
    FloatingSurface::paint(
        painter, continuousRoundedRect(m_card->geometry(), cornerRadius), PopoverAppearance::Shadow::Drawn);
}
