#include "whenWindowActivated.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

void whenWindowActivated(QWidget &widget, std::function<void()> then)
{
    QObject::connect(
        qGuiApp, &QGuiApplication::focusWindowChanged, &widget,
        [&widget, then = std::move(then)](const QWindow *focused) {
            if (focused != nullptr && focused == widget.window()->windowHandle() && widget.isVisible()) {
                then();
            }
        });
}
