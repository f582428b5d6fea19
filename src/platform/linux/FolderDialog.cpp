#include "FolderDialog.h"

#include "Appearance.h"
#include "darkPalette.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCompleter>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QStandardPaths>

namespace {

constexpr QSize initialSize(640, 460);
constexpr QSize iconSize(16, 16);
constexpr int margin = 16;
constexpr int rowSpacing = 10;
constexpr int placesWidth = 140;

/// The toolkit's grid has three columns.
constexpr int columns = 3;

bool isFolder(const QUrl &url)
{
    return url.isLocalFile() && QFileInfo(url.toLocalFile()).isDir();
}

/// A button's text that shows as it is: a single ampersand would mark a shortcut.
QString buttonText(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

/// The user's folders that screenshots and other pictures are kept in, and everything else.
QList<QUrl> places()
{
    QList<QUrl> urls;
    for (const QStandardPaths::StandardLocation location :
         {QStandardPaths::HomeLocation, QStandardPaths::DesktopLocation, QStandardPaths::PicturesLocation,
          QStandardPaths::DownloadLocation}) {
        const QUrl url = QUrl::fromLocalFile(QStandardPaths::writableLocation(location));
        if (isFolder(url) && !urls.contains(url)) {
            urls.append(url);
        }
    }
    // The toolkit's name for the computer.
    urls.append(QUrl(QStringLiteral("file:")));
    return urls;
}

QLabel *makeMessageLabel(const QString &message)
{
    auto *const label = new QLabel(message);
    label->setObjectName(QStringLiteral("messageLabel"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

FolderDialog::FolderDialog(const Words &words)
    // With a native dialog the toolkit makes no widgets, and this is the only public sign of it.
    : m_look(findChild<QDialogButtonBox *>() == nullptr ? Look::Native : Look::Widgets),
      m_savedPlaces(sidebarUrls()),
      m_savedViewMode(viewMode())
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setModal(false);
    setFileMode(Directory);
    setOption(ShowDirsOnly);
    // Else the toolkit's widgets rename and delete, asking in event loops of their own.
    setOption(ReadOnly);
    if (!words.title.isEmpty()) {
        setWindowTitle(words.title);
    }
    if (!words.acceptLabel.isEmpty()) {
        setLabelText(Accept, buttonText(words.acceptLabel));
    }
    if (m_look == Look::Widgets) {
        setLabelText(FileName, QCoreApplication::translate("FolderDialog", "Folder:"));
        setLabelText(Reject, QCoreApplication::translate("FolderDialog", "Cancel"));
        showFoldersOnly();
        layOut(words.message);
        takeColors();
        resize(initialSize);
    }
}

FolderDialog::~FolderDialog()
{
    if (m_look == Look::Widgets) {
        setSidebarUrls(m_savedPlaces);
        setViewMode(m_savedViewMode);
    }
}

void FolderDialog::showFoldersOnly()
{
    setSidebarUrls(places());
    // The columns of the other view are about files.
    setViewMode(List);
    for (const QString &name :
         {QStringLiteral("newFolderButton"), QStringLiteral("listModeButton"),
          QStringLiteral("detailModeButton"), QStringLiteral("fileTypeLabel"),
          QStringLiteral("fileTypeCombo")}) {
        if (auto *const control = findChild<QWidget *>(name)) {
            control->hide();
        }
    }
    // Their context menus open in event loops of their own, and offer hidden folders and deleting.
    for (auto *const view : findChildren<QAbstractItemView *>()) {
        view->setContextMenuPolicy(Qt::NoContextMenu);
        view->setIconSize(iconSize);
    }
    if (auto *const list = findChild<QListView *>(QStringLiteral("listView"))) {
        list->setWrapping(false);
        list->setAccessibleName(QCoreApplication::translate("FolderDialog", "Folders"));
    }
    if (auto *const sidebar = findChild<QWidget *>(QStringLiteral("sidebar"))) {
        sidebar->setMinimumWidth(placesWidth);
        sidebar->setAccessibleName(QCoreApplication::translate("FolderDialog", "Places"));
    }
    // A combo box takes its accessible name from its label alone.
    if (auto *const label = findChild<QLabel *>(QStringLiteral("lookInLabel"))) {
        label->setBuddy(findChild<QWidget *>(QStringLiteral("lookInCombo")));
    }
}

/// Those that the desktop wishes. The list under the path is a window of its own, which gets none from here.
void FolderDialog::takeColors()
{
    const bool isDark = Appearance::shared().colorScheme() == Appearance::ColorScheme::Dark;
    constexpr int middle = 128;
    if (isDark && palette().color(QPalette::Window).lightness() >= middle) {
        setPalette(darkPalette());
    }
    auto *const path = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (path != nullptr && path->completer() != nullptr) {
        QAbstractItemView *const completions = path->completer()->popup();
        completions->setPalette(palette());
        completions->setIconSize(iconSize);
    }
}

/// The toolkit's grid once more, a row lower: above it the message, below it the buttons side by side.
void FolderDialog::layOut(const QString &message)
{
    auto *const grid = qobject_cast<QGridLayout *>(layout());
    auto *const path = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    auto *const buttons = findChild<QDialogButtonBox *>();
    if (grid == nullptr || path == nullptr) {
        return;
    }

    struct Cell {
        QLayoutItem *item;
        int row, column, rows, columns;
    };

    QList<Cell> cells;
    while (grid->count() > 0) {
        Cell cell = {};
        grid->getItemPosition(0, &cell.row, &cell.column, &cell.rows, &cell.columns);
        cell.item = grid->takeAt(0);
        cells.append(cell);
    }
    for (const Cell &cell : cells) {
        if (cell.item->widget() == buttons) {
            delete cell.item;
            continue;
        }
        const int width = cell.item->widget() == path ? columns - cell.column : cell.columns;
        grid->addItem(cell.item, cell.row + 1, cell.column, cell.rows, width);
    }
    if (!message.isEmpty()) {
        grid->addWidget(makeMessageLabel(message), 0, 0, 1, columns);
        setAccessibleDescription(message);
    }
    buttons->setOrientation(Qt::Horizontal);
    for (QAbstractButton *const button : buttons->buttons()) {
        button->setIcon({});
    }
    grid->addWidget(buttons, grid->rowCount(), 0, 1, columns);
    grid->setColumnStretch(1, 1);
    grid->setContentsMargins(margin, margin, margin, margin);
    grid->setVerticalSpacing(rowSpacing);
    setSizeGripEnabled(false);
}

void FolderDialog::startIn(const QUrl &folder)
{
    if (isFolder(folder)) {
        setDirectoryUrl(folder);
    } else if (m_look == Look::Widgets) {
        setDirectory(QDir::homePath());
    }
}

void FolderDialog::present()
{
    show();
    raise();
    activateWindow();
}

QUrl FolderDialog::folder() const
{
    return result() == Accepted ? selectedFolder() : QUrl();
}

QUrl FolderDialog::selectedFolder() const
{
    const QUrl url = selectedUrls().value(0).adjusted(QUrl::NormalizePathSegments | QUrl::StripTrailingSlash);
    return isFolder(url) ? url : QUrl();
}

/// The toolkit (6.4) misses which window becomes the active one while such a list is open: the next one would
/// be without the keyboard.
void FolderDialog::hideCompletions()
{
    const auto *const path = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (path != nullptr && path->completer() != nullptr) {
        path->completer()->popup()->hide();
    }
}

void FolderDialog::accept()
{
    if (m_look == Look::Widgets && selectedFolder().isEmpty()) {
        // The toolkit would say so in a message box that has an event loop of its own. The button is disabled
        // as long as the path leads nowhere, so only the Enter key comes here.
        if (auto *const path = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))) {
            path->selectAll();
        }
        return;
    }
    hideCompletions();
    QFileDialog::accept();
}
