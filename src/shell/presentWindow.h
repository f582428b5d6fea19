#pragma once

#include "WindowDescription.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

class SettingsWindowDelegate;

/// Where the application delegate keeps one of its windows: both fields are empty while it isn't open.
struct WindowFields {
    QPointer<QWidget> &window;
    std::unique_ptr<SettingsWindowDelegate> &delegate;
};

/// Brings the window to the front; makes it first, centred on its screen and not larger than it, if it isn't
/// open.
///
/// A closed window clears its fields, the window's first, and the next request makes a new one. `owner` is
/// the object that holds the fields. Main thread.
void presentWindow(
    QObject &owner, WindowFields fields, const WindowDescription &description,
    const std::function<std::unique_ptr<QWidget>()> &makeView);
