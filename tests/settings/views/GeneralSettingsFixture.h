#pragma once

#include "GeneralSettingsPage.h"
#include "PushButton.h"
#include "SettingsFixture.h"
#include "waitForBackground.h"

#include <QTest>

#include <algorithm>
#include <memory>

/// What the page calls its parts.
inline const QString delayTitle = QStringLiteral("Auto-delete after");
inline const QString previewTitle = QStringLiteral("Disable floating screenshot preview");
inline const QString clipboardTitle = QStringLiteral("Auto-copy to clipboard");
inline const QString granted = QStringLiteral("Granted");

/// Hidden or not.
[[nodiscard]] inline PushButton *buttonNamed(const QWidget &view, const QString &text)
{
    const auto buttons = view.findChildren<PushButton *>();
    const auto found =
        std::ranges::find_if(buttons, [&text](const PushButton *button) { return button->text() == text; });
    return found != buttons.end() ? *found : nullptr;
}

[[nodiscard]] inline bool hasButton(const QWidget &view, const QString &text)
{
    const PushButton *const button = buttonNamed(view, text);
    return button != nullptr && button->isVisible();
}

/// The General page over a real home: preferences, folders, the screenshot tool's settings. One for all tests
/// of a program.
class GeneralSettingsFixture final {
public:
    /// Makes the managers anew, as the program does: they read what is stored.
    void launch() { m_delegate = std::make_unique<TestApplicationDelegate>(); }

    /// Ends what a test has left under way, and puts everything back.
    void end()
    {
        m_delegate.reset();
        waitForBackground();
        m_home.clear();
        UserDefaults::standard().setBoolean(preferences::autoCopyToClipboard, false);
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    [[nodiscard]] const TemporaryHome &home() const { return m_home.home(); }

    [[nodiscard]] TestApplicationDelegate &delegate() const { return *m_delegate; }

    [[nodiscard]] std::unique_ptr<GeneralSettingsPage> shown() const
    {
        auto page = std::make_unique<GeneralSettingsPage>(*m_delegate);
        page->resize(449, 480);
        page->show();
        page->activateWindow();
        std::ignore = QTest::qWaitForWindowActive(page.get());
        return page;
    }

    /// Once it is known whether the folder can be read.
    [[nodiscard]] std::unique_ptr<GeneralSettingsPage> shownWithAnswer() const
    {
        auto page = shown();
        const auto isKnown = [&page] {
            return texts(*page).contains(granted) || hasButton(*page, QStringLiteral("Grant Access"));
        };
        [&isKnown] { QTRY_VERIFY_WITH_TIMEOUT(isKnown(), patience); }();
        return page;
    }

private:
    GalleryHome m_home;
    std::unique_ptr<TestApplicationDelegate> m_delegate;
};
