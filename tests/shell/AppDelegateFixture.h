#pragma once

#include "AppDelegate.h"
#include "CapturedOutput.h"
#include "PopUpMenu.h"
#include "TemporaryHome.h"
#include "files.h"
#include "waitForBackground.h"

#include <QApplication>
#include <QDir>
#include <QTest>

#include <memory>
#include <utility>

/// What the tests of the launched program share, without a panel: real folders, real preferences, real views.
class AppDelegateFixture : public QObject {
protected:
    static constexpr int patience = 15'000;

    void begin()
    {
        for (const QString &folder : {m_home->desktop(), m_home->pictures(), m_home->downloads()}) {
            files::makeFolder(folder);
        }
        m_output = std::make_unique<CapturedOutput>();
    }

    void end()
    {
        m_delegate.reset();
        waitForBackground();
        m_output.reset();
        for (const QString &folder :
             {QStringLiteral("/Desktop"), QStringLiteral("/.local/share/Trash"),
              QStringLiteral("/.config/Deskbroom")}) {
            QDir(m_home->path() + folder).removeRecursively();
        }
    }

    void launch(WindowViews views = {})
    {
        m_delegate = std::make_unique<AppDelegate>(std::move(views));
        m_delegate->applicationDidFinishLaunching();
    }

    QString makeScreenshot(const QString &name = QStringLiteral("Screenshot 1.png")) const
    {
        const QString path = m_home->desktop() + u'/' + name;
        files::write(path);
        return path;
    }

    [[nodiscard]] static PopUpMenu *openMenu()
    {
        return qobject_cast<PopUpMenu *>(QApplication::activePopupWidget());
    }

    const std::unique_ptr<TemporaryHome> m_home = std::make_unique<TemporaryHome>();
    std::unique_ptr<CapturedOutput> m_output;
    std::unique_ptr<AppDelegate> m_delegate;
};
