#pragma once

#include <QFont>

/// The desktop's own font family, upright. A point is a logical pixel: the desktop's font size doesn't change
/// it, its scale does. To be called once there is an application.
[[nodiscard]] QFont systemFont(int points, QFont::Weight weight);
