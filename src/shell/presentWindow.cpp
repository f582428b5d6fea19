#include "presentWindow.h"

#include "SettingsWindowDelegate.h"
#include "TitledWindow.h"
#include "activateWindow.h"
#include "processMemory.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

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

std::unique_ptr<QWidget> makeWindow(const WindowDescription &description, std::unique_ptr<QWidget> view)
{
    auto window =
        std::make_unique<TitledWindow>(description.title, flags(description.controls), std::move(view));
    if (description.controls == WindowDescription::Controls::CloseMinimizeAndResize) {
        window->setMinimumSize(fitting(description.minimumSize));
        window->resize(fitting(description.contentSize));
    } else {
        window->setFixedSize(description.contentSize);
    }
    return window;
}

void centre(QWidget &window)
{
    QRect frame(QPoint(), window.size());
    frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    window.move(frame.topLeft());
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
