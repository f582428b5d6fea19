#pragma once

#include <QString>

/// How a notification server reads the body: with the few tags of the Desktop Notifications Specification
/// ("Markup"), or as it is.
enum class BodyFormat { Plain, Markup };

/// Text of any origin as notification servers take it: valid Unicode without control characters, cut with an
/// ellipsis where it is too long. Pure functions; any thread.
namespace notificationText {

/// In UTF-16 units, without the ellipsis.
constexpr qsizetype longestTitle = 200;
constexpr qsizetype longestBody = 1000;

/// One line. Servers never read tags in it.
[[nodiscard]] QString title(const QString &text);

/// Keeps its line breaks. For a server that reads tags, the characters that make them are escaped, so that
/// the user sees the text and nothing of it becomes a link or a picture.
[[nodiscard]] QString body(const QString &text, BodyFormat format);

} // namespace notificationText
