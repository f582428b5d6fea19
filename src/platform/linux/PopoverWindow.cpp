#include "PopoverWindow.h"

#include "Appearance.h"
#include "Compositor.h"
#include "Popover.h"
#include "activateWindow.h"
#include "setInputShape.h"

#include <QCoreApplication>
#include <QEasingCurve>
#include <QKeyEvent>
#include <QPainter>
#include <QWindow>

namespace {

constexpr int appearMilliseconds = 140;
constexpr int disappearMilliseconds = 100;
constexpr int reducedMotionMilliseconds = 100;

} // namespace

PopoverWindow::PopoverWindow(
    const PopoverAppearance &appearance, std::unique_ptr<QWidget> contentView, const PopoverAnchor &anchor)
    // A utility window that refuses the keyboard: a popup would grab both keyboard and pointer.
    : QWidget(
          nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                       Qt::NoDropShadowWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_appearance(appearance),
      m_contentView(contentView.release()),
      m_anchor(anchor),
      m_isTranslucent(compositorIsActive())
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground, m_isTranslucent);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QCoreApplication::applicationName());
    m_contentView->setParent(this);
    m_contentView->show();
    m_mouseGrace.setSingleShot(true);
    m_mouseGrace.setInterval(Popover::mouseGraceMilliseconds);
    connect(&m_mouseGrace, &QTimer::timeout, this, [this] { setTakesClicks(true); });
    m_fading.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_fading, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        setWindowOpacity(value.toReal());
    });
    connect(&Appearance::shared(), &Appearance::changed, this, qOverload<>(&QWidget::update));
    place();
}

void PopoverWindow::appear()
{
    setTakesClicks(false);
    m_mouseGrace.start();
    if (m_isTranslucent) {
        setWindowOpacity(0);
        fade(1, appearMilliseconds);
    }
    show();
    shapeWindow();
}

void PopoverWindow::disappear()
{
    // What is pressed from now on answers nothing: a second press may wait in the queue already.
    if (QWidget *const focused = focusWidget()) {
        focused->clearFocus();
    }
    m_mouseGrace.stop();
    setTakesClicks(false);
    if (!m_isTranslucent) {
        close();
        return;
    }
    connect(&m_fading, &QVariantAnimation::finished, this, &QWidget::close);
    fade(0, disappearMilliseconds);
}

void PopoverWindow::takeKeyboard()
{
    QWindow *const window = windowHandle();
    window->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    ::activateWindow(*window);
}

bool PopoverWindow::takesClicks() const
{
    return !m_contentView->testAttribute(Qt::WA_TransparentForMouseEvents);
}

void PopoverWindow::setTakesClicks(bool takesClicks)
{
    m_contentView->setAttribute(Qt::WA_TransparentForMouseEvents, !takesClicks);
}

QPainterPath PopoverWindow::outline() const
{
    return m_appearance.outline(m_placement.geometry);
}

bool PopoverWindow::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) {
        place();
    }
    return QWidget::event(event);
}

void PopoverWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        Q_EMIT cancelled();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PopoverWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_appearance.paint(
        painter, m_placement.geometry,
        m_isTranslucent ? PopoverAppearance::Shadow::Drawn : PopoverAppearance::Shadow::None);
}

void PopoverWindow::place()
{
    const QMargins shadow = m_isTranslucent ? m_appearance.shadowMargins() : QMargins();
    m_placement = placePopover(m_contentView->sizeHint(), m_anchor, m_appearance.arrowSize(), shadow);
    setGeometry(m_placement.window);
    m_contentView->setGeometry(m_placement.geometry.body.toRect());
    if (isVisible()) {
        shapeWindow();
        update();
    }
}

void PopoverWindow::shapeWindow()
{
    const QRegion outline(this->outline().toFillPolygon().toPolygon());
    if (m_isTranslucent) {
        // A click on the shadow is a click on what lies under it.
        setInputShape(*windowHandle(), outline);
    } else {
        setMask(outline);
    }
}

void PopoverWindow::fade(qreal opacity, int milliseconds)
{
    m_fading.stop();
    m_fading.setStartValue(windowOpacity());
    m_fading.setEndValue(opacity);
    m_fading.setDuration(Appearance::shared().reducesMotion() ? reducedMotionMilliseconds : milliseconds);
    m_fading.start();
}
