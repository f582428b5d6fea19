#include "OpenPanel.h"

#include "FolderDialog.h"
#include "PortalFolderChooser.h"
#include "fatalError.h"

#include <utility>

namespace {

/// Takes leave of whoever is in the middle of telling `listener` something, and shall tell nothing more: a
/// key that is pressed twice ends a dialog twice.
template <typename Teller> void dismiss(std::unique_ptr<Teller> teller, const QObject *listener)
{
    if (teller) {
        teller->disconnect(listener);
        teller.release()->deleteLater();
    }
}

} // namespace

OpenPanel::OpenPanel(QObject *parent) : QObject(parent)
{
}

OpenPanel::~OpenPanel() = default;

void OpenPanel::begin(std::function<void(ModalResponse)> completion)
{
    if (m_completion) {
        fatalError(QStringLiteral("An open panel that is shown can't be begun again"));
    }
    m_url.clear();
    m_completion = std::move(completion);
    askPortal();
}

void OpenPanel::askPortal()
{
    m_portal = std::make_unique<PortalFolderChooser>();
    connect(m_portal.get(), &PortalFolderChooser::chosen, this, &OpenPanel::complete);
    connect(m_portal.get(), &PortalFolderChooser::cancelled, this, [this] { complete({}); });
    connect(m_portal.get(), &PortalFolderChooser::unavailable, this, &OpenPanel::showDialog);
    m_portal->open({.title = m_title, .acceptLabel = m_prompt, .folder = m_directory});
}

void OpenPanel::showDialog()
{
    dismiss(std::move(m_portal), this);
    m_dialog = std::make_unique<FolderDialog>(
        FolderDialog::Words{.title = m_title, .message = m_message, .acceptLabel = m_prompt});
    m_dialog->startIn(m_directory);
    connect(m_dialog.get(), &FolderDialog::finished, this, [this] { complete(m_dialog->folder()); });
    m_dialog->present();
}

void OpenPanel::complete(const QUrl &folder)
{
    m_url = folder;
    dismiss(std::move(m_portal), this);
    dismiss(std::move(m_dialog), this);
    // The last thing here, because it may destroy the panel.
    const auto completion = std::exchange(m_completion, nullptr);
    completion(m_url.isEmpty() ? ModalResponse::Cancel : ModalResponse::OK);
}
