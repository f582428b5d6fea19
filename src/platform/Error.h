#pragma once

#include <QString>

#include <expected>

/// A failure as a value: told apart by domain and code, shown by its description.
///
/// Failures of the file system are in the Cocoa domain with the codes below; what isn't the file system's
/// keeps a domain of its own.
struct Error {
    static inline const QString cocoaDomain = QStringLiteral("NSCocoaErrorDomain");

    enum CocoaCode {
        FileNoSuchFile = 4,
        FileReadUnknown = 256,
        FileNoPermission = 257,
        FileWriteUnknown = 512,
        FileInUse = 516,
        FileWriteOutOfSpace = 640,
        FileWriteVolumeReadOnly = 642,
    };

    QString domain;
    int code = 0;
    /// A sentence for a person.
    QString localizedDescription;

    /// The error of a system call, in the Cocoa domain; `otherwise` is the code for what has none of its own
    /// (FileReadUnknown or FileWriteUnknown).
    [[nodiscard]] static Error fromErrno(int errorNumber, CocoaCode otherwise);

    /// `Error Domain=… Code=… "…"`, as log lines print it in full.
    [[nodiscard]] QString description() const;

    [[nodiscard]] bool isCocoa(CocoaCode cocoaCode) const
    {
        return domain == cocoaDomain && code == cocoaCode;
    }

    bool operator==(const Error &) const = default;
};

template <typename T> using Result = std::expected<T, Error>;
