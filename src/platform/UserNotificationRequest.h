#pragma once

#include <QString>

/// What a notification says. Plain text: nothing in it is markup, whatever it looks like.
struct UserNotificationContent {
    /// One line; line breaks are shown as spaces.
    QString title;
    /// May have several lines. What goes beyond a thousand characters is cut off.
    QString body;
    /// A label of the program's own, which is neither shown nor sent.
    QString categoryIdentifier;

    bool operator==(const UserNotificationContent &) const = default;
};

/// A notification that is to be shown at once.
struct UserNotificationRequest {
    /// A request with the identifier of a notification that is still shown replaces it.
    QString identifier;
    UserNotificationContent content;

    bool operator==(const UserNotificationRequest &) const = default;
};
