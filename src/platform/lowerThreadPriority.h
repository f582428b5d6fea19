#pragma once

/// Lets the calling thread stand back behind all others of normal priority, the main thread above all, for as
/// long as it lives. For the threads of a queue that keeps every processor busy.
void lowerThreadPriority();
