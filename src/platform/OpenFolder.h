#pragma once

#include "Error.h"
#include "FileAttributes.h"

#include <QStringView>

/// A folder that was opened once, so that the attributes of many of its entries can be read without walking
/// along their paths each time. Any thread; closed with the value.
class OpenFolder final {
public:
    /// Cocoa errors 4 and 257 as `FileManager` gives them.
    [[nodiscard]] static Result<OpenFolder> open(const QString &path);

    OpenFolder(OpenFolder &&other) noexcept;
    OpenFolder &operator=(OpenFolder &&other) = delete;
    OpenFolder(const OpenFolder &) = delete;
    OpenFolder &operator=(const OpenFolder &) = delete;
    ~OpenFolder();

    /// The same as `FileManager::attributesOfItem` of the entry's path.
    [[nodiscard]] Result<FileAttributes> attributesOfItem(QStringView name) const;

private:
    explicit OpenFolder(int descriptor) : m_descriptor(descriptor) {}

    /// -1 in a value that was moved from.
    int m_descriptor;
};
