#pragma once

#include "FolderAccessCheck.h"
#include "OnboardingStepLayout.h"

#include <functional>

class FileAccessManager;

/// The first-run page that asks for the folder with the screenshots. It follows a grant from anywhere in the
/// program; it never moves on by itself.
class OnboardingFolderAccessStepView final : public OnboardingStepLayout {
    Q_OBJECT

public:
    /// The manager has to live as long as the process.
    OnboardingFolderAccessStepView(
        FileAccessManager &manager, std::function<void()> onContinue, QWidget *parent = nullptr);

    /// False until it is known.
    [[nodiscard]] bool hasAccess() const { return m_hasAccess; }

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void takeAnswer();
    void takeGrant();
    void render();

    std::function<void()> m_onContinue;
    FolderAccessCheck m_check;
    bool m_hasAccess = false;
    /// A folder was granted while the page is there, which no answer to an earlier question undoes.
    bool m_isGranted = false;
};
