#include "GioLibrary.h"

#include <QCoreApplication>
#include <QLibrary>

#include <gio/gio.h>

#include <optional>

struct GioLibrary::Functions {
    decltype(&::g_vfs_get_local) vfsGetLocal = nullptr;
    decltype(&::g_vfs_get_file_for_path) vfsGetFileForPath = nullptr;
    decltype(&::g_file_trash) fileTrash = nullptr;
    decltype(&::g_object_unref) objectUnref = nullptr;
    decltype(&::g_error_free) errorFree = nullptr;
    decltype(&::g_io_error_quark) ioErrorQuark = nullptr;
    decltype(&::g_quark_to_string) quarkToString = nullptr;

    /// Whether the library has them all.
    [[nodiscard]] bool load(QLibrary &library)
    {
        const auto resolve = [&library]<typename Function>(Function &function, const char *name) {
            function = reinterpret_cast<Function>(library.resolve(name));
            return function != nullptr;
        };
        return resolve(vfsGetLocal, "g_vfs_get_local") &&
               resolve(vfsGetFileForPath, "g_vfs_get_file_for_path") && resolve(fileTrash, "g_file_trash") &&
               resolve(objectUnref, "g_object_unref") && resolve(errorFree, "g_error_free") &&
               resolve(ioErrorQuark, "g_io_error_quark") && resolve(quarkToString, "g_quark_to_string");
    }
};

namespace {

/// The Cocoa code of an error of GIO's own domain; empty for what doesn't come from the file system but from
/// the way to the portal.
std::optional<Error::CocoaCode> cocoaCode(int code)
{
    switch (code) {
    case G_IO_ERROR_NOT_FOUND:
    case G_IO_ERROR_NOT_DIRECTORY:
        return Error::FileNoSuchFile;
    case G_IO_ERROR_PERMISSION_DENIED:
        return Error::FileNoPermission;
    case G_IO_ERROR_BUSY:
        return Error::FileInUse;
    case G_IO_ERROR_NO_SPACE:
        return Error::FileWriteOutOfSpace;
    case G_IO_ERROR_READ_ONLY:
        return Error::FileWriteVolumeReadOnly;
    case G_IO_ERROR_CLOSED:
    case G_IO_ERROR_CANCELLED:
    case G_IO_ERROR_TIMED_OUT:
    case G_IO_ERROR_DBUS_ERROR:
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_CONNECTION_CLOSED:
    case G_IO_ERROR_NOT_CONNECTED:
        return std::nullopt;
    default:
        return Error::FileWriteUnknown;
    }
}

} // namespace

const GioLibrary &GioLibrary::instance()
{
    static const GioLibrary library;
    return library;
}

GioLibrary::GioLibrary()
{
    static Functions functions;
    // The library stays loaded: a QLibrary that goes doesn't unload.
    QLibrary library(QStringLiteral("gio-2.0"), 0);
    m_functions = functions.load(library) ? &functions : nullptr;
}

std::expected<void, GioLibrary::TrashFailure> GioLibrary::trash(const QByteArray &path) const
{
    if (m_functions == nullptr) {
        return std::unexpected(TrashFailure{
            .error =
                {
                    .domain = Error::cocoaDomain,
                    .code = Error::FileWriteUnknown,
                    .localizedDescription = QCoreApplication::translate(
                        "GioLibrary", "This volume has no Trash that can be used"),
                },
            .isRefusal = true,
        });
    }
    GFile *file = m_functions->vfsGetFileForPath(m_functions->vfsGetLocal(), path.constData());
    GError *error = nullptr;
    const bool isMoved = m_functions->fileTrash(file, nullptr, &error) != 0;
    m_functions->objectUnref(file);
    if (isMoved) {
        return {};
    }
    TrashFailure told = failure(*error);
    m_functions->errorFree(error);
    return std::unexpected(std::move(told));
}

GioLibrary::TrashFailure GioLibrary::failure(const GError &error) const
{
    const bool isOwnDomain = error.domain == m_functions->ioErrorQuark();
    const auto cocoa = isOwnDomain ? cocoaCode(error.code) : std::nullopt;
    return {
        .error =
            {
                .domain =
                    cocoa ? Error::cocoaDomain : QString::fromUtf8(m_functions->quarkToString(error.domain)),
                .code = cocoa ? *cocoa : error.code,
                .localizedDescription = QString::fromUtf8(error.message),
            },
        .isRefusal = isOwnDomain &&
                     (error.code == G_IO_ERROR_NOT_SUPPORTED || error.code == G_IO_ERROR_FILENAME_TOO_LONG),
    };
}
