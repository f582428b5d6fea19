#pragma once

class QDrag;

/// What is dragged out of one of the program's windows. Main thread.
namespace outgoingDrag {

/// A drag of the application, because in the loop that a drag runs every widget can go, also the one that it
/// began in. It deletes itself after its `exec`.
[[nodiscard]] QDrag *make();

/// The one that is under way; else null.
[[nodiscard]] QDrag *current();

} // namespace outgoingDrag
