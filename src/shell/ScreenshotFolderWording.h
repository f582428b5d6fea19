#pragma once

#include <QTranslator>

/// Says "screenshot folder" wherever the program would say "Desktop folder", as long as the folder that it
/// works with isn't the Desktop. Main thread.
class ScreenshotFolderWording final {
public:
    /// Looks which folder it is now. Reads the settings of the desktop's capture tool.
    void update();

private:
    QTranslator m_catalogue;
    bool m_isInstalled = false;
};
