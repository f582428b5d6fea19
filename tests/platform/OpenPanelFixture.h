#pragma once

#include "OpenPanel.h"
#include "PrivateBus.h"
#include "TemporaryHome.h"
#include "files.h"
#include "shownFolderDialog.h"

#include <QApplication>
#include <QSettings>
#include <QTest>

#include <functional>
#include <memory>

using ModalResponse = OpenPanel::ModalResponse;

inline const QString message = QStringLiteral(
    "Deskbroom watches the folder that your screenshots are saved in. Choose the folder that <b>you</b> save "
    "them in & Deskbroom tidies up after you.");

/// What a panel answered.
struct Answers {
    QList<ModalResponse> responses;

    std::function<void(ModalResponse)> take()
    {
        return [this](ModalResponse response) { responses.append(response); };
    }
};

/// What the tests of the panel share: a home with some folders, and panels.
class OpenPanelFixture : public QObject {
protected:
    void makeHome()
    {
        m_home = std::make_unique<TemporaryHome>();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_home->path());
        for (const QString &name : {QStringLiteral("Archive"), QStringLiteral("Screenshots")}) {
            files::makeFolder(m_home->path() + u'/' + name);
        }
        files::makeFolder(m_home->path() + QStringLiteral("/.hidden"));
        files::write(m_home->path() + QStringLiteral("/picture.png"));
    }

    static void waitUntilNoDialogIsShown() { QTRY_VERIFY(shownDialog() == nullptr); }

    /// A panel with all words, that starts in the home folder.
    [[nodiscard]] std::unique_ptr<OpenPanel> makePanel() const
    {
        auto panel = std::make_unique<OpenPanel>();
        panel->setTitle(QStringLiteral("Screenshot Folder"));
        panel->setMessage(message);
        panel->setPrompt(QStringLiteral("Grant & Use_It"));
        panel->setDirectoryUrl(QUrl::fromLocalFile(m_home->path()));
        return panel;
    }

    std::unique_ptr<TemporaryHome> m_home;
};

/// The tests of a class, on a bus of their own: a portal that is installed here would be started by the first
/// question to it.
template <typename Test> int runWithoutInstalledPortals(int argc, char *argv[])
{
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    const QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
