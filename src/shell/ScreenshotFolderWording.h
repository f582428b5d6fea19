#pragma once

#include <QTranslator>

/// Says "screenshot folder" wherever the program would say "Desktop folder", as long as the folder that it
/// works with isn't the Desktop. Main thread.
class ScreenshotFolderWording final {
public:
    /// `isDesktopElsewhere` is FileManager's.
    void use(bool isDesktopElsewhere);

private:
    QTranslator m_catalogue;
    bool m_isInstalled = false;
};
