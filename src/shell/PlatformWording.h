#pragma once

#include <QTranslator>

/// Says what is different on this platform, such as the keys that take a screenshot, in the platform's own
/// words: from `install` on until the object is destroyed, whatever the user's language. Main thread.
class PlatformWording final {
public:
    /// Before the first text is shown, and before any other wording: what is installed later goes first.
    void install();

private:
    QTranslator m_catalogue;
};
