#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <expected>

/// The running desktop's settings program, as far as this program sends its user there. Main thread.
namespace SystemSettings {

enum class Pane { Overview, Privacy, Notifications };

struct Command {
    /// A name for the search path, or a full path.
    QString program;
    QStringList arguments;
    /// The page has another name from release to release: the first of these that `program --list` prints is
    /// appended to the arguments; none if it prints none of them.
    QStringList pages;
};

[[nodiscard]] bool isLink(const QUrl &url);

/// Overview for a link to a pane that isn't known.
[[nodiscard]] Pane paneOf(const QUrl &link);

/// What opens the pane on the desktop that XDG_CURRENT_DESKTOP names, with the program's full path; else why
/// there is nothing. Looked up afresh at each call.
[[nodiscard]] std::expected<Command, QString> command(Pane pane);

/// Starts it, at once or after the program has been asked for its pages. Answers whether something was
/// started; a failure prints one line.
bool start(const Command &command);

} // namespace SystemSettings
