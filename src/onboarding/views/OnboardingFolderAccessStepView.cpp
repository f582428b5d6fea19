#include "OnboardingFolderAccessStepView.h"

#include "FileAccessManager.h"
#include "NotificationCenter.h"
#include "OnboardingFooter.h"
#include "OnboardingPrimaryButton.h"
#include "OnboardingSkipLink.h"

#include <QEvent>

#include <utility>

namespace {

QString description()
{
    return OnboardingFolderAccessStepView::tr(
        "By default, Deskbroom watches your Desktop, Downloads, and Pictures folders. Grant access below, or "
        "choose a different folder anytime in Settings.");
}

} // namespace

OnboardingFolderAccessStepView::OnboardingFolderAccessStepView(
    FileAccessManager &manager, std::function<void()> onContinue, QWidget *parent)
    : OnboardingStepLayout(
          QStringLiteral("folder.fill"), tr("Point it at your screenshots."), description(),
          new OnboardingFooter(QString(), QString()), parent),
      m_onContinue(std::move(onContinue)),
      m_check(manager)
{
    connect(&m_check, &FolderAccessCheck::changed, this, &OnboardingFolderAccessStepView::takeAnswer);
    NotificationCenter::defaultCenter().addObserver(
        FileAccessManager::folderAccessGranted, this, [this](const ProcessNotification &) { takeGrant(); });
    connect(
        &footer(), &OnboardingFooter::primaryPressed, this, [&manager] { manager.requestFolderAccess(); });
    connect(&footer(), &OnboardingFooter::secondaryPressed, this, [this] { m_onContinue(); });
    render();
}

void OnboardingFolderAccessStepView::showEvent(QShowEvent *event)
{
    OnboardingStepLayout::showEvent(event);
    m_check.ask();
}

void OnboardingFolderAccessStepView::changeEvent(QEvent *event)
{
    OnboardingStepLayout::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        // Another folder may have got another name.
        setDescription(description());
    }
}

void OnboardingFolderAccessStepView::takeAnswer()
{
    if (!m_isGranted) {
        m_hasAccess = m_check.lastAnswer().value_or(false);
        render();
    }
}

void OnboardingFolderAccessStepView::takeGrant()
{
    m_isGranted = true;
    m_hasAccess = true;
    render();
}

void OnboardingFolderAccessStepView::render()
{
    footer().primary().setText(m_hasAccess ? tr("Access Granted") : tr("Grant Folder Access"));
    footer().primary().setEnabled(!m_hasAccess);
    footer().secondary()->setText(m_hasAccess ? tr("Continue") : tr("I'll do this later"));
}
