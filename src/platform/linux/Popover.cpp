#include "Popover.h"

#include "EventMonitor.h"
#include "PopoverWindow.h"
#include "processMemory.h"

#include <QGuiApplication>
#include <QTimer>

#include <utility>

namespace {

/// How long a press on the panel waits for the item to say that it was meant: panels answer on release.
constexpr int panelPressMilliseconds = 400;

} // namespace

Popover::Popover(Behavior behavior, std::unique_ptr<PopoverAppearance> appearance, QObject *parent)
    : QObject(parent),
      m_behavior(behavior),
      m_appearance(std::move(appearance)),
      m_panelPress(std::make_unique<QTimer>())
{
    m_panelPress->setSingleShot(true);
    m_panelPress->setInterval(panelPressMilliseconds);
    connect(m_panelPress.get(), &QTimer::timeout, this, &Popover::close);
}

Popover::~Popover()
{
    if (m_window) {
        m_window->disconnect(this);
        delete m_window;
    }
    if (m_disappearingWindow) {
        m_disappearingWindow->disconnect(this);
        delete m_disappearingWindow;
    }
}

void Popover::show(std::unique_ptr<QWidget> contentView, const PopoverAnchor &anchor)
{
    // No fading out: the new view takes the old one's place.
    stopWatching();
    delete m_window;

    m_anchor = anchor;
    m_window = new PopoverWindow(*m_appearance, std::move(contentView), anchor);
    connect(m_window, &QObject::destroyed, this, &Popover::stopWatching);
    if (m_behavior == Behavior::Transient) {
        connect(m_window, &PopoverWindow::cancelled, this, &Popover::close);
        watchForClicksElsewhere();
    }
    connect(m_window, &PopoverWindow::cancelled, this, &Popover::cancelled);
    m_window->appear();
}

void Popover::close()
{
    if (!m_window) {
        return;
    }
    stopWatching();
    delete m_disappearingWindow;
    m_disappearingWindow = std::exchange(m_window, nullptr);
    m_disappearingWindow->disconnect(this);
    connect(m_disappearingWindow, &QObject::destroyed, this, &processMemory::returnUnused);
    m_disappearingWindow->disappear();
    Q_EMIT didClose();
}

const QWidget *Popover::window() const
{
    return m_window;
}

void Popover::takeKeyboard()
{
    m_panelPress->stop();
    if (m_window) {
        m_window->takeKeyboard();
    }
}

bool Popover::contains(const QWidget &window) const
{
    if (!m_window) {
        return false;
    }
    // While a menu is open there is no other window of ours that a click could reach.
    if (window.windowType() == Qt::Popup) {
        return true;
    }
    // A window's parent is what it was opened on, which is in another window.
    const QWidget *widget = &window;
    while (widget != nullptr && widget != m_window) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

QPainterPath Popover::outlineOf(const QWidget &window)
{
    const auto *const popover = qobject_cast<const PopoverWindow *>(&window);
    return popover == nullptr ? QPainterPath() : popover->outline();
}

void Popover::watchForClicksElsewhere()
{
    auto global = EventMonitor::addGlobalMonitor([this](QPoint position) { clickedElsewhere(position); });
    if (global) {
        m_monitors.push_back(std::move(global));
    } else {
        // Where other programs' clicks can't be seen, it goes with the keyboard.
        connect(
            qGuiApp, &QGuiApplication::applicationStateChanged, m_window, [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationInactive) {
                    close();
                }
            });
    }
    m_monitors.push_back(EventMonitor::addLocalMonitor(
        [this](const QWidget &window, QPoint position) { clickedInOwnWindow(window, position); }));
}

bool Popover::isOnItem(QPoint position) const
{
    return m_anchor.arrow == PopoverAnchor::Arrow::PointsAtRectangle && m_anchor.rectangle.contains(position);
}

void Popover::clickedElsewhere(QPoint position)
{
    if (isOnItem(position)) {
        return;
    }
    // Not every panel tells where its items are: one may have been meant, and will say so at once.
    const bool isOnPanel = m_anchor.screen.contains(position) && !m_anchor.availableArea.contains(position);
    if (isOnPanel) {
        m_panelPress->start();
    } else {
        close();
    }
}

void Popover::clickedInOwnWindow(const QWidget &window, QPoint position)
{
    if (&window == m_window) {
        if (m_window->takesClicks()) {
            takeKeyboard();
        }
        return;
    }
    // An item may be a window of ours.
    if (!contains(window) && !isOnItem(position)) {
        close();
    }
}

void Popover::stopWatching()
{
    m_panelPress->stop();
    m_monitors.clear();
}
