#pragma once

#include "PopoverPlacement.h"
#include "StatusItem.h"

/// Where popovers hang: on the status item, on the side of its screen's inside.
[[nodiscard]] PopoverAnchor popoverAnchor(const StatusItem::Anchor &item);
