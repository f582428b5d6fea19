#include "GeneralSettingsPage.h"

#include "FileAccessManager.h"
#include "FolderAccessStatus.h"
#include "PopUpButton.h"
#include "Preferences.h"
#include "ScreenshotManager.h"
#include "ScreenshotSaving.h"
#include "SettingsApplicationDelegate.h"
#include "SettingsCard.h"
#include "SettingsRow.h"
#include "SettingsRowDivider.h"
#include "Switch.h"
#include "SystemScreenshotPreview.h"
#include "UserDefaults.h"
#include "fatalError.h"
#include "fileNameText.h"
#include "renderOnChange.h"
#include "timeframeTitle.h"
#include "whenWindowActivated.h"

#include <QEvent>
#include <QVBoxLayout>

namespace {

/// In points.
constexpr int padding = 20;
constexpr int gapBetweenCards = 20;
constexpr int delayWidth = 130;

QStringList delayTitles()
{
    QStringList titles;
    for (const int minutes : preferences::timeframeChoices) {
        titles.append(timeframeTitle(minutes));
    }
    return titles;
}

QString accessTitle()
{
    return GeneralSettingsPage::tr("Desktop folder access");
}

QString accessSubtitle()
{
    return GeneralSettingsPage::tr(
        "Deskbroom needs access to your Desktop folder to detect new screenshots automatically.");
}

/// What there is to know where the switch makes no difference.
QString previewHint()
{
    switch (screenshotSaving()) {
    case ScreenshotSaving::AtOnce:
        return GeneralSettingsPage::tr(
            "This desktop's screenshot tool never holds a screenshot back: there is nothing to disable.");
    case ScreenshotSaving::OnRequest:
        return GeneralSettingsPage::tr(
            "This desktop's screenshot tool asks before it saves, which can't be disabled here.");
    case ScreenshotSaving::AfterPreview:
    case ScreenshotSaving::Unknown:
        break;
    }
    return {};
}

/// The long-lived object that a control works on. A window without it would change nothing.
template <typename Manager> Manager &present(Manager *manager)
{
    if (manager == nullptr) {
        fatalError(QStringLiteral("The settings are shown before the program has launched"));
    }
    return *manager;
}

/// Rows under each other, as a card's content.
QWidget *stacked(std::initializer_list<QWidget *> rows)
{
    auto *const content = new QWidget;
    auto *const column = new QVBoxLayout(content);
    column->setContentsMargins({});
    column->setSpacing(0);
    for (QWidget *const row : rows) {
        column->addWidget(row);
    }
    return content;
}

} // namespace

GeneralSettingsPage::GeneralSettingsPage(SettingsApplicationDelegate &appDelegate, QWidget *parent)
    : QWidget(parent),
      m_appDelegate(appDelegate),
      m_fileAccessManager(present(appDelegate.fileAccessManager())),
      m_screenshotManager(present(appDelegate.screenshotManager())),
      m_folderAccess(m_fileAccessManager),
      m_accessStatus(new FolderAccessStatus),
      m_delay(new PopUpButton(delayTitles(), delayWidth)),
      m_previewDisabled(new Switch),
      m_autoCopy(new Switch)
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(gapBetweenCards);
    column->addWidget(makeFolderCard());
    column->addWidget(makeManagementCard());
    column->addWidget(makeDetectionCard());
    column->addStretch();

    connect(&m_folderAccess, &FolderAccessCheck::answered, this, &GeneralSettingsPage::renderAccess);
    renderOnChange(m_appDelegate, *this, [this] { render(); });
    renderOnChange(m_screenshotManager, *this, [this] { render(); });
    whenWindowActivated(*this, [this] { render(); });
    render();
}

SettingsCard *GeneralSettingsPage::makeFolderCard()
{
    connect(m_accessStatus, &FolderAccessStatus::folderRequested, this, [this] {
        m_fileAccessManager.requestFolderAccess();
    });
    m_accessRow = new SettingsRow(accessTitle(), accessSubtitle(), m_accessStatus);
    return new SettingsCard(tr("Folder Access"), m_accessRow);
}

SettingsCard *GeneralSettingsPage::makeManagementCard()
{
    connect(m_delay, &PopUpButton::choiceMade, this, [this](int index) {
        m_appDelegate.updateTimeframe(preferences::timeframeChoices.at(static_cast<std::size_t>(index)));
    });
    return new SettingsCard(
        tr("Screenshot Management"),
        new SettingsRow(
            tr("Auto-delete after"),
            tr("How long a detected screenshot waits before it's moved to the Trash."), m_delay));
}

SettingsCard *GeneralSettingsPage::makeDetectionCard()
{
    connect(m_previewDisabled, &Switch::switched, this, &GeneralSettingsPage::setPreviewDisabled);
    connect(m_autoCopy, &Switch::switched, this, &GeneralSettingsPage::setAutoCopyToClipboard);
    const QString subtitle =
        tr("macOS delays saving a screenshot until its floating thumbnail is dismissed or auto-saves. "
           "Disabling it (system-wide) lets Deskbroom detect screenshots the instant they're taken.");
    const QString hint = previewHint();
    m_previewDisabled->setToolTip(hint);
    // Who hears the page learns what a pointer finds.
    m_previewDisabled->setAccessibleDescription(hint.isEmpty() ? subtitle : subtitle + u' ' + hint);
    auto *const preview =
        new SettingsRow(tr("Disable floating screenshot preview"), subtitle, m_previewDisabled);
    auto *const clipboard = new SettingsRow(
        tr("Auto-copy to clipboard"),
        tr("Automatically copy new screenshots to the clipboard for easy pasting."), m_autoCopy);
    return new SettingsCard(
        tr("Detection & Clipboard"), stacked({preview, new SettingsRowDivider, clipboard}));
}

void GeneralSettingsPage::render()
{
    m_delay->setShownText(timeframeTitle(m_appDelegate.timeframeInMinutes()));
    m_previewDisabled->setOn(SystemScreenshotPreview::isDisabled());
    m_autoCopy->setOn(m_screenshotManager.autoCopyToClipboard());
    m_folderAccess.ask();
    renderAccess();
}

void GeneralSettingsPage::renderAccess()
{
    m_accessStatus->setAccess(m_folderAccess.lastAnswer());
    const auto &folder = m_fileAccessManager.persistentAccessUrl();
    m_accessRow->setToolTip(
        folder && m_folderAccess.lastAnswer() == true ? fileNameText::toolTip(folder->toLocalFile())
                                                      : QString());
}

void GeneralSettingsPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    render();
}

void GeneralSettingsPage::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        // Another folder may have got another name.
        m_accessRow->setTexts(accessTitle(), accessSubtitle());
    }
}

void GeneralSettingsPage::setPreviewDisabled(bool isDisabled)
{
    SystemScreenshotPreview::setDisabled(isDisabled);
    // Where that was refused, the switch goes back.
    render();
}

void GeneralSettingsPage::setAutoCopyToClipboard(bool isOn)
{
    m_screenshotManager.setAutoCopyToClipboard(isOn);
    m_screenshotManager.preferences().setBoolean(preferences::autoCopyToClipboard, isOn);
}
