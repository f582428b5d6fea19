#pragma once

#include <QProcessEnvironment>

/// What this program sets in its own environment before anything reads it, and programs that it starts are
/// not to inherit.
namespace processEnvironment {

/// Called first in `main`, while there is one thread.
void prepare();

/// The environment as the desktop gave it to us.
[[nodiscard]] QProcessEnvironment forChildren();

} // namespace processEnvironment
