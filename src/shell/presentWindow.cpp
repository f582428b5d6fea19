#include "presentWindow.h"

#include "SettingsWindowDelegate.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

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

std::unique_ptr<QWidget> makeWindow(const WindowDescription &description, std::unique_ptr<QWidget> view)
{
    auto window = std::make_unique<QWidget>(nullptr, flags(description.controls));
    window->setWindowTitle(description.title);
    auto *const layout = new QVBoxLayout(window.get());
    layout->setContentsMargins({});
    layout->addWidget(view.release());
    if (description.controls == WindowDescription::Controls::CloseMinimizeAndResize) {
        window->setMinimumSize(description.minimumSize);
        window->resize(description.contentSize);
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
    window.activateWindow();
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
    fields.window = window;
    centre(*window);
    bringToFront(*window);
}
