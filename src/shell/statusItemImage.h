#pragma once

#include "StatusItem.h"

/// What the status item shows: the symbol "camera.fill", in every form that a panel may want.
[[nodiscard]] StatusItemImage statusItemImage();
