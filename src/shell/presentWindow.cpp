#include "presentWindow.h"

#include "ScrollArea.h"
#include "SettingsWindowDelegate.h"
#include "TitledWindow.h"
#include "activateWindow.h"
#include "processMemory.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace {

Qt::WindowFlags flags(WindowDescription::Controls controls)
{
    const Qt::WindowFlags titled = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    const Qt::WindowFlags closable = titled | Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint;
    switch (controls) {
    case WindowDescription::Controls::TitleOnly:
        return titled;
    case WindowDescription::Controls::CloseAndMinimize:
        return closable;
    case WindowDescription::Controls::CloseMinimizeAndResize:
        return closable | Qt::WindowMaximizeButtonHint;
    }
    Q_UNREACHABLE();
}

/// How much of `wanted` the screen has room for.
QSize fitting(QSize wanted)
{
    // Frames are known only once a window is shown; the usual ones are smaller.
    constexpr QMargins frame(8, 40, 8, 8);
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry().marginsRemoved(frame);
    return wanted.boundedTo(room.size());
}

/// Whether the view has said that it can be that small.
bool mayBe(const QWidget &view, QSize size)
{
    const QSize least = view.minimumSize();
    return !least.isEmpty() && least.boundedTo(size) == least;
}

/// For a screen without room for all of a view that can't be smaller.
std::unique_ptr<QWidget> scrolled(std::unique_ptr<QWidget> view, QSize size)
{
    auto area = std::make_unique<ScrollArea>();
    view->setMinimumHeight(size.height());
    area->setWidget(view.release());
    return area;
}

std::unique_ptr<QWidget> makeWindow(const WindowDescription &description, std::unique_ptr<QWidget> view)
{
    const bool isFixed = description.controls != WindowDescription::Controls::CloseMinimizeAndResize;
    const QSize size = fitting(description.contentSize);
    if (isFixed && size != description.contentSize && !mayBe(*view, size)) {
        view = scrolled(std::move(view), description.contentSize);
    }
    auto window =
        std::make_unique<TitledWindow>(description.title, flags(description.controls), std::move(view));
    if (description.controls == WindowDescription::Controls::CloseMinimizeAndResize) {
        window->setMinimumSize(fitting(description.minimumSize));
        window->resize(size);
    } else {
        window->setFixedSize(size);
    }
    return window;
}

void centre(QWidget &window)
{
    QRect frame(QPoint(), window.size());
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    frame.moveCenter(room.center());
    window.move(std::max(frame.left(), room.left()), std::max(frame.top(), room.top()));
}

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    activateWindow(*window.windowHandle());
}

} // namespace

void presentWindow(
    QObject &owner, WindowFields fields, const WindowDescription &description,
    const std::function<std::unique_ptr<QWidget>()> &makeView)
{
    if (fields.window) {
        bringToFront(*fields.window);
        return;
    }
    QWidget *const window = makeWindow(description, makeView()).release();
    // The fields are the owner's: as long as it lives, so do they.
    fields.delegate = std::make_unique<SettingsWindowDelegate>([owner = QPointer<QObject>(&owner), fields] {
        if (owner) {
            fields.window->deleteLater();
            fields.window.clear();
            fields.delegate.release()->deleteLater();
        }
    });
    window->installEventFilter(fields.delegate.get());
    QObject::connect(window, &QObject::destroyed, &processMemory::returnUnused);
    fields.window = window;
    centre(*window);
    bringToFront(*window);
}
