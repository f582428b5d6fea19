#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

/// The full path of a folder's entry whose name is a screenshot's; empty for every other entry. `prefix` is
/// the folder's path with a slash at its end, `name` the raw bytes of the entry's name. A name that isn't
/// valid UTF-8 is no screenshot's name: it couldn't be shown or found again.
[[nodiscard]] std::optional<QString> screenshotPath(const QString &prefix, QByteArrayView name);
