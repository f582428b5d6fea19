#pragma once

/// How the process treats the memory that it has used: it rests in a panel for weeks and works for seconds.
namespace processMemory {

/// Called first in `main`: large blocks, such as decoded pictures, go back to the system as soon as they are
/// freed.
void keepLow();

/// Gives back what was freed in small pieces, and what the toolkit keeps of pictures in case they are drawn
/// again. For the moment when a window has gone; about a millisecond. Main thread.
void returnUnused();

} // namespace processMemory
