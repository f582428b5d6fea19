#pragma once

#include <functional>

class QWidget;

/// Calls `then` each time the window that the widget is in becomes the active one while the widget is to be
/// seen, for as long as the widget lives. The toolkit tells its events of activation to windows alone.
void whenWindowActivated(QWidget &widget, std::function<void()> then);
