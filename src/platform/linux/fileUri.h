#pragma once

#include <QByteArray>

/// The `file:` URI of an absolute path, byte for byte the one that GIO's `g_file_get_uri` makes of it,
/// because other programs know the file by that: `.`, `..`, doubled and trailing slashes are resolved in the
/// text alone, and every byte is escaped but letters, digits and -_.~!$&'()*+,=:@/. The name may hold any
/// bytes.
[[nodiscard]] QByteArray fileUri(const QByteArray &absolutePath);

/// The path in that URI.
[[nodiscard]] QByteArray canonicalPath(const QByteArray &absolutePath);
