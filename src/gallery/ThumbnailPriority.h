#pragma once

/// Which thumbnails are made first: in the order of the cases, and within a case in the order asked for.
enum class ThumbnailPriority {
    Visible,
    /// Not in sight, but soon perhaps.
    Nearby,
};
