#pragma once

class QWindow;

/// Gives a window of ours that is shown, or is about to be, the keyboard and brings it to the front, because
/// the user asked for it just now. It may be anything the user did: the program needn't have the keyboard,
/// nor have heard of it through a window of its own. GUI thread.
void activateWindow(QWindow &window);
