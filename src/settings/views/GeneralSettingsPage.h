#pragma once

#include "FolderAccessCheck.h"

#include <QWidget>

class FileAccessManager;
class FolderAccessStatus;
class PopUpButton;
class ScreenshotManager;
class SettingsApplicationDelegate;
class SettingsCard;
class SettingsRow;
class Switch;

/// The page with what can be set: the watched folder, the deletion delay, the screenshot tool's preview, the
/// clipboard. It follows what changes elsewhere in the program; each change takes effect at once.
class GeneralSettingsPage final : public QWidget {
    Q_OBJECT

public:
    explicit GeneralSettingsPage(SettingsApplicationDelegate &appDelegate, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] SettingsCard *makeFolderCard();
    [[nodiscard]] SettingsCard *makeManagementCard();
    [[nodiscard]] SettingsCard *makeDetectionCard();

    void render();
    void renderAccess();

    void setPreviewDisabled(bool isDisabled);
    void setAutoCopyToClipboard(bool isOn);

    SettingsApplicationDelegate &m_appDelegate;
    FileAccessManager &m_fileAccessManager;
    ScreenshotManager &m_screenshotManager;
    FolderAccessCheck m_folderAccess;

    FolderAccessStatus *m_accessStatus;
    SettingsRow *m_accessRow = nullptr;
    PopUpButton *m_delay;
    Switch *m_previewDisabled;
    Switch *m_autoCopy;
};
