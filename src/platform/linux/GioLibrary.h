#pragma once

#include "Error.h"

#include <QByteArray>
#include <QFunctionPointer>

#include <expected>

// As GLib declares them, so that its headers stay in one file.
using GError = struct _GError;

/// The Trash as GIO knows it: the home Trash, other volumes' Trash, the Trash portal in a sandbox.
///
/// The library is loaded at the first deletion and not when the program starts, because it takes more than
/// a megabyte of memory that most runs never need. Only its local file system is used, without the modules
/// that file managers plug into it. One instance, any thread.
class GioLibrary final {
public:
    struct TrashFailure {
        Error error;
        /// GIO didn't try: it keeps away from mounts that it takes for the system's own, it can't shorten a
        /// long name, or it isn't installed. A plain move into the home Trash may still work.
        bool isRefusal = false;
    };

    [[nodiscard]] static const GioLibrary &instance();

    /// Moves what lies at the absolute path to the Trash; blocks for as long as the disk or the portal takes.
    [[nodiscard]] std::expected<void, TrashFailure> trash(const QByteArray &path) const;

private:
    GioLibrary();

    [[nodiscard]] TrashFailure failure(const GError &error) const;

    struct Functions;
    /// Lives as long as the program; null if the library is missing.
    const Functions *m_functions;
};
