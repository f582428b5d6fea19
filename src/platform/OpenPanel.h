#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

class FolderDialog;
class PortalFolderChooser;

/// Asks the user for one existing folder with the desktop's own dialog, beside the program's other windows:
/// neither those nor the event loop wait for it. Files can't be chosen.
///
/// The words are what the caller sets before `begin`; an empty one leaves the desktop's. Destroying the panel
/// before the answer takes the dialog away and calls nothing. Main thread.
class OpenPanel final : public QObject {
    Q_OBJECT

public:
    enum class ModalResponse { Cancel = 0, OK = 1 };

    explicit OpenPanel(QObject *parent = nullptr);
    ~OpenPanel() override;
    Q_DISABLE_COPY_MOVE(OpenPanel)

    /// The title of the window.
    void setTitle(const QString &title) { m_title = title; }

    /// Plain text that says what the folder is for. Dialogs that have no place for it leave it out.
    void setMessage(const QString &message) { m_message = message; }

    /// The button that accepts. Plain text: no character of it marks a shortcut.
    void setPrompt(const QString &prompt) { m_prompt = prompt; }

    /// Where the dialog starts. Empty: where the desktop thinks best.
    void setDirectoryUrl(const QUrl &folder) { m_directory = folder; }

    /// Shows the dialog in front of other windows. `completion` is called once, on the main thread and never
    /// from within this call, after `url` has its value; it may destroy the panel. To begin again before that
    /// is a programming error.
    void begin(std::function<void(ModalResponse)> completion);

    /// The chosen folder after OK, a local file's URL without a slash at its end; empty before and otherwise.
    [[nodiscard]] QUrl url() const { return m_url; }

private:
    void askPortal();
    void showDialog();
    void complete(const QUrl &folder);

    QString m_title;
    QString m_message;
    QString m_prompt;
    QUrl m_directory;
    QUrl m_url;
    std::function<void(ModalResponse)> m_completion;
    /// At most one of the two is there: the dialog takes over where there is no portal.
    std::unique_ptr<PortalFolderChooser> m_portal;
    std::unique_ptr<FolderDialog> m_dialog;
};
