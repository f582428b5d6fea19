#pragma once

#include <QFileDialog>
#include <QList>
#include <QString>
#include <QUrl>

/// The toolkit's dialog for one existing folder: the platform theme's own where it has one, else made of the
/// toolkit's widgets, with the message above and everything about files left out.
///
/// Not modal, and nothing of it decides when the program ends. GUI thread; `finished` tells that it is over.
///
/// Without `Q_OBJECT` on purpose: the toolkit shows the native dialog only for the class `QFileDialog` itself
/// and what has no class name of its own.
class FolderDialog final : public QFileDialog {
public:
    /// Plain texts; an empty one leaves the toolkit's.
    struct Words {
        QString title;
        QString message;
        QString acceptLabel;
    };

    explicit FolderDialog(const Words &words);
    ~FolderDialog() override;
    Q_DISABLE_COPY_MOVE(FolderDialog)

    /// A folder that isn't there, or isn't local, is the home folder.
    void startIn(const QUrl &folder);

    /// Shows the dialog in front of the other windows.
    void present();

    /// What was accepted, without a slash at its end; empty unless it is an existing local folder.
    [[nodiscard]] QUrl folder() const;

    void accept() override;

private:
    enum class Look { Native, Widgets };

    [[nodiscard]] QUrl selectedFolder() const;
    void hideCompletions();
    void layOut(const QString &message);
    void showFoldersOnly();
    void takeColors();

    Look m_look;
    /// What the toolkit's settings hold for all its programs. They get it back.
    QList<QUrl> m_savedPlaces;
    ViewMode m_savedViewMode;
};
