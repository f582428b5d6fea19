#pragma once

#include <QtGlobal>

class PopUpMenu;

/// A menu of the deletion timeframes, with `current` checked if it is among them. The items' data are their
/// minutes. Deletes itself when it closes.
[[nodiscard]] PopUpMenu *makeTimeframeMenu(qint64 current);
