#pragma once

#include "FileAccessManager.h"
#include "OnboardingBackButton.h"
#include "OnboardingHeader.h"
#include "OnboardingPageStage.h"
#include "OnboardingView.h"
#include "TemporaryHome.h"
#include "TextLabel.h"
#include "onboardingPage.h"
#include "runInBackground.h"

#include <QApplication>
#include <QIcon>
#include <QTest>

#include <functional>
#include <memory>
#include <utility>

/// The first run's view over a home of its own, and the ways through its pages. One for all tests of a
/// program.
class OnboardingFixture final {
public:
    /// As at launch.
    OnboardingFixture()
    {
        QApplication::setWindowIcon(
            QIcon(QStringLiteral(DESKBROOM_SOURCE_FOLDER "/resources/icons/org.deskbroom.Deskbroom.svg")));
        FileAccessManager::shared();
    }

    /// In place of the one before.
    void show(std::function<void()> onFinished)
    {
        m_view = std::make_unique<OnboardingView>(std::move(onFinished));
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }

    /// A view that counts how often it finishes.
    void show()
    {
        m_finished = 0;
        show([this] { ++m_finished; });
    }

    void close()
    {
        m_view.reset();
        background::pool(BackgroundQueue::Listing).waitForDone();
    }

    [[nodiscard]] OnboardingView &view() const { return *m_view; }

    /// For a view that goes otherwise than by `close`.
    [[nodiscard]] std::unique_ptr<OnboardingView> take() { return std::move(m_view); }

    [[nodiscard]] int finished() const { return m_finished; }

    /// The only one of its kind in the view.
    template <typename Part> [[nodiscard]] Part &part() const { return *m_view->findChild<Part *>(); }

    [[nodiscard]] QWidget &page() const { return *part<OnboardingPageStage>().page(); }

    [[nodiscard]] OnboardingBackButton &back() const { return part<OnboardingBackButton>(); }

    [[nodiscard]] TextLabel &captionLabel() const
    {
        return *part<OnboardingHeader>().findChild<TextLabel *>();
    }

    [[nodiscard]] QString caption() const { return captionLabel().text(); }

    [[nodiscard]] bool isAtRest() const
    {
        const auto pages =
            part<OnboardingPageStage>().findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        return pages.size() == 1 && page().pos() == QPoint() && page().graphicsEffect() == nullptr;
    }

    /// By what leads on from each page.
    void goOn() const
    {
        const bool hasLink = page().findChild<OnboardingSkipLink *>() != nullptr;
        (hasLink ? static_cast<OnboardingButton &>(onboardingPage::secondary(page()))
                 : onboardingPage::primary(page()))
            .click();
    }

    void goTo(OnboardingStep step) const
    {
        while (m_view->step() != step) {
            goOn();
        }
        QTRY_VERIFY(isAtRest());
    }

private:
    const TemporaryHome m_home;
    std::unique_ptr<OnboardingView> m_view;
    int m_finished = 0;
};
