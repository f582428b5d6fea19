#include "OpenPanel.h"

#include "CapturedOutput.h"
#include "PrivateBus.h"
#include "RecordingFileChooser.h"
#include "TemporaryHome.h"
#include "files.h"
#include "savePicture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using ModalResponse = OpenPanel::ModalResponse;
using Response = RecordingFileChooser::Response;

namespace {

const QString message = QStringLiteral(
    "Deskbroom watches the folder that your screenshots are saved in. Choose the folder that <b>you</b> save "
    "them in & Deskbroom tidies up after you.");

/// The dialog of the toolkit's that is shown; null while there is none.
QFileDialog *shownDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QFileDialog *>(window); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

QLineEdit &pathField(const QFileDialog &dialog)
{
    return *dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
}

QPushButton &acceptButton(const QFileDialog &dialog)
{
    return *dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open);
}

void type(QFileDialog &dialog, const QString &path)
{
    QLineEdit &field = pathField(dialog);
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, path);
    field.setModified(true);
}

bool hasAccessibleName(QWidget &widget)
{
    const QAccessibleInterface *const control = QAccessible::queryAccessibleInterface(&widget);
    if (control == nullptr || control->text(QAccessible::Name).isEmpty()) {
        return false;
    }
    // What a combo box shows counts as its name, so that it needs a label.
    return control->role() != QAccessible::ComboBox || !control->relations(QAccessible::Label).isEmpty();
}

/// What a panel answered.
struct Answers {
    QList<ModalResponse> responses;

    std::function<void(ModalResponse)> take()
    {
        return [this](ModalResponse response) { responses.append(response); };
    }
};

} // namespace

class OpenPanelTest : public QObject {
    Q_OBJECT

private:
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

    /// The bus keeps the order: once a further question has arrived, so has everything before it, both ways.
    static void settle(const RecordingFileChooser &portal)
    {
        const qsizetype before = portal.questions().size();
        OpenPanel panel;
        panel.begin(Answers().take());
        QTRY_COMPARE(portal.questions().size(), before + 1);
    }

    std::unique_ptr<TemporaryHome> m_home;

private Q_SLOTS:

    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_home->path());
        for (const QString &name : {QStringLiteral("Archive"), QStringLiteral("Screenshots")}) {
            files::makeFolder(m_home->path() + u'/' + name);
        }
        files::makeFolder(m_home->path() + QStringLiteral("/.hidden"));
        files::write(m_home->path() + QStringLiteral("/picture.png"));
    }

    void cleanup() { QTRY_VERIFY(shownDialog() == nullptr); }

    void itHasTheValuesOfItsResponses()
    {
        QCOMPARE(int(ModalResponse::Cancel), 0);
        QCOMPARE(int(ModalResponse::OK), 1);
    }

    void withoutAPortalTheToolkitsDialogHasTheWords()
    {
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QFileDialog &dialog = *shownDialog();
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Screenshot Folder"));
        QCOMPARE(dialog.windowType(), Qt::Dialog);
        QVERIFY(!dialog.isModal());
        QVERIFY2(!dialog.testAttribute(Qt::WA_QuitOnClose), "it doesn't decide when the program ends");
        QCOMPARE(dialog.directory().path(), m_home->path());
        QCOMPARE(acceptButton(dialog).text(), QStringLiteral("Grant && Use_It"));
        const auto *const label = dialog.findChild<QLabel *>(QStringLiteral("messageLabel"));
        QVERIFY(label != nullptr);
        QCOMPARE(label->text(), message);
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QVERIFY(label->isVisible());
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
        const auto *const list = dialog.findChild<QListView *>(QStringLiteral("listView"));
        QVERIFY(label->geometry().bottom() < list->mapTo(&dialog, QPoint()).y());
        QVERIFY2(answers.responses.isEmpty(), "not before the user answers");
        QTRY_VERIFY(list->model()->rowCount(list->rootIndex()) > 0);
        savePicture(dialog, QStringLiteral("folder-dialog"));
    }

    void withoutAMessageThereIsNoRowForIt()
    {
        OpenPanel panel;
        panel.begin(Answers().take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QVERIFY(shownDialog()->findChild<QLabel *>(QStringLiteral("messageLabel")) == nullptr);
        QVERIFY(!acceptButton(*shownDialog()).text().isEmpty());
        QCOMPARE(shownDialog()->directory().path(), m_home->path());
    }

    void aFolderToStartInThatIsGoneIsTheHomeFolder()
    {
        OpenPanel panel;
        panel.setDirectoryUrl(QUrl::fromLocalFile(m_home->path() + QStringLiteral("/gone")));
        panel.begin(Answers().take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QCOMPARE(shownDialog()->directory().path(), m_home->path());
    }

    void onlyFoldersThatArentHiddenAreListed()
    {
        const auto panel = makePanel();
        panel->begin(Answers().take());
        QTRY_VERIFY(shownDialog() != nullptr);
        const auto *const list = shownDialog()->findChild<QListView *>(QStringLiteral("listView"));
        QVERIFY(list->isVisible());
        const auto names = [list] {
            QStringList rows;
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
                rows.append(list->model()->index(row, 0, list->rootIndex()).data().toString());
            }
            rows.sort();
            return rows;
        };
        QTRY_VERIFY(names().contains(QStringLiteral("Screenshots")));
        QVERIFY(names().contains(QStringLiteral("Archive")));
        QVERIFY(!names().contains(QStringLiteral("picture.png")));
        QVERIFY(!names().contains(QStringLiteral(".hidden")));
    }

    void everyControlHasANameAndNoneAShortcut()
    {
        const auto panel = makePanel();
        panel->begin(Answers().take());
        QTRY_VERIFY(shownDialog() != nullptr);
        int reachable = 0;
        for (QWidget *widget : shownDialog()->findChildren<QWidget *>()) {
            if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0) {
                continue;
            }
            ++reachable;
            QVERIFY2(hasAccessibleName(*widget), qPrintable(widget->objectName()));
        }
        QVERIFY(reachable >= 6);
        for (const auto *const button : shownDialog()->findChildren<QAbstractButton *>()) {
            QVERIFY2(QKeySequence::mnemonic(button->text()).isEmpty(), qPrintable(button->text()));
        }
        for (const auto *const label : shownDialog()->findChildren<QLabel *>()) {
            QVERIFY2(
                !label->isVisible() || label->textFormat() == Qt::PlainText ||
                    QKeySequence::mnemonic(label->text()).isEmpty(),
                qPrintable(label->text()));
        }
    }

    void theTabKeyWalksFromThePathToTheButtonsAndAround()
    {
        const auto panel = makePanel();
        panel->begin(Answers().take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QFileDialog &dialog = *shownDialog();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTRY_VERIFY(pathField(dialog).hasFocus());
        type(dialog, m_home->path());
        QTRY_VERIFY(acceptButton(dialog).isEnabled());
        QStringList walked;
        do {
            // Whether one can go back depends on where earlier dialogs were.
            if (const QString name = QApplication::focusWidget()->objectName();
                name != QStringLiteral("backButton")) {
                walked.append(name);
            }
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        } while (!pathField(dialog).hasFocus() && walked.size() < 20);
        const QStringList expected = {
            QStringLiteral("fileNameEdit"),
            QString(),
            QString(),
            QStringLiteral("lookInCombo"),
            QStringLiteral("toParentButton"),
            QStringLiteral("sidebar"),
            QStringLiteral("listView")};
        QCOMPARE(walked.join(u' '), expected.join(u' '));
    }

    void aTypedFolderIsChosen_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("path") << QStringLiteral("%1/Screenshots") << QStringLiteral("%1/Screenshots");
        QTest::newRow("slash at the end")
            << QStringLiteral("%1/Screenshots/") << QStringLiteral("%1/Screenshots");
        QTest::newRow("name") << QStringLiteral("Archive") << QStringLiteral("%1/Archive");
        QTest::newRow("hidden") << QStringLiteral("%1/.hidden") << QStringLiteral("%1/.hidden");
        QTest::newRow("home") << QStringLiteral("~/Archive") << QStringLiteral("%1/Archive");
        QTest::newRow("nothing: the folder that is shown") << QString() << QStringLiteral("%1");
        QTest::newRow("root") << QStringLiteral("/") << QStringLiteral("/");
    }

    void aTypedFolderIsChosen()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        type(*shownDialog(), typed.replace(QStringLiteral("%1"), m_home->path()));
        QVERIFY(panel->url().isEmpty());
        QTest::keyClick(&pathField(*shownDialog()), Qt::Key_Return);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::OK});
        QCOMPARE(panel->url(), QUrl::fromLocalFile(expected.replace(QStringLiteral("%1"), m_home->path())));
        QTRY_VERIFY2(shownDialog() == nullptr, "it goes when it is done");
        QCOMPARE(answers.responses.size(), 1);
    }

    void whatIsNoFolderIsntAccepted_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("file") << QStringLiteral("/picture.png");
        QTest::newRow("file with a slash") << QStringLiteral("/picture.png/");
        QTest::newRow("nothing there") << QStringLiteral("/gone");
        QTest::newRow("nothing there, with a slash") << QStringLiteral("/gone/");
    }

    void whatIsNoFolderIsntAccepted()
    {
        QFETCH(const QString, typed);
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QFileDialog &dialog = *shownDialog();
        type(dialog, m_home->path() + typed);
        QTest::keyClick(&pathField(dialog), Qt::Key_Return);
        QVERIFY(dialog.isVisible());
        QVERIFY2(QApplication::activeModalWidget() == nullptr, "no message box over it");
        QTRY_VERIFY(!acceptButton(dialog).isEnabled());
        QCOMPARE(pathField(dialog).selectedText(), m_home->path() + typed);
        QVERIFY(answers.responses.isEmpty());

        type(dialog, QStringLiteral("Archive"));
        QTest::keyClick(&pathField(dialog), Qt::Key_Return);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::OK});
    }

    void theListIsWalkedByTheKeyboard()
    {
        files::makeFolder(m_home->path() + QStringLiteral("/Archive/Old"));
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QFileDialog &dialog = *shownDialog();
        auto &list = *dialog.findChild<QListView *>(QStringLiteral("listView"));
        QTRY_COMPARE(list.model()->index(0, 0, list.rootIndex()).data(), QStringLiteral("Archive"));
        list.setFocus();
        QTest::keyClick(&list, Qt::Key_Home);
        QTRY_COMPARE(list.currentIndex().data().toString(), QStringLiteral("Archive"));
        QTest::keyClick(&list, Qt::Key_Return);
        QTRY_COMPARE(dialog.directory().path(), m_home->path() + QStringLiteral("/Archive"));
        QVERIFY(answers.responses.isEmpty());
        QTRY_COMPARE(list.model()->rowCount(list.rootIndex()), 1);
        QTest::keyClick(&list, Qt::Key_Home);
        QTRY_COMPARE(pathField(dialog).text(), QStringLiteral("Old"));
        QTest::keyClick(&acceptButton(dialog), Qt::Key_Return);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::OK});
        QCOMPARE(panel->url(), QUrl::fromLocalFile(m_home->path() + QStringLiteral("/Archive/Old")));
    }

    void escapeCancels()
    {
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        type(*shownDialog(), QStringLiteral("Archive"));
        QTest::keyClick(shownDialog(), Qt::Key_Escape);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::Cancel});
        QVERIFY(panel->url().isEmpty());
    }

    void closingTheWindowCancels()
    {
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        const QSignalSpy lastWindowClosed(qApp, &QGuiApplication::lastWindowClosed);
        shownDialog()->close();
        QTRY_COMPARE(answers.responses, QList{ModalResponse::Cancel});
        QVERIFY(panel->url().isEmpty());
        QVERIFY(lastWindowClosed.isEmpty());
    }

    void aPanelCanBeUsedAgain()
    {
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        type(*shownDialog(), QStringLiteral("Archive"));
        QTest::keyClick(&pathField(*shownDialog()), Qt::Key_Return);
        QTRY_COMPARE(answers.responses.size(), 1);
        QTRY_VERIFY(shownDialog() == nullptr);

        panel->begin(answers.take());
        QVERIFY(panel->url().isEmpty());
        QTRY_VERIFY(shownDialog() != nullptr);
        shownDialog()->reject();
        QTRY_COMPARE(answers.responses.size(), 2);
        QCOMPARE(answers.responses.last(), ModalResponse::Cancel);
        QVERIFY(panel->url().isEmpty());
    }

    void theCompletionMayDestroyThePanel()
    {
        std::unique_ptr<OpenPanel> panel = makePanel();
        int calls = 0;
        panel->begin([&](ModalResponse) {
            ++calls;
            panel.reset();
        });
        QTRY_VERIFY(shownDialog() != nullptr);
        shownDialog()->reject();
        QTRY_COMPARE(calls, 1);
        QVERIFY(panel == nullptr);
    }

    void aDestroyedPanelTakesTheDialogAwayAndCallsNothing()
    {
        auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        panel.reset();
        QVERIFY(shownDialog() == nullptr);
        QVERIFY(answers.responses.isEmpty());
    }

    void theToolkitsSettingsStayAsTheyWere()
    {
        const QStringList places = {QStringLiteral("file:///usr")};
        {
            QSettings settings(QSettings::UserScope, QStringLiteral("QtProject"));
            settings.setValue(QStringLiteral("FileDialog/shortcuts"), places);
            settings.setValue(QStringLiteral("FileDialog/viewMode"), QStringLiteral("Detail"));
            // Without the rest, the toolkit reads none of them.
            settings.setValue(QStringLiteral("FileDialog/sidebarWidth"), 100);
        }
        auto panel = makePanel();
        panel->begin(Answers().take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QVERIFY(shownDialog()->sidebarUrls().contains(QUrl::fromLocalFile(m_home->pictures())));
        panel.reset();
        const QSettings settings(QSettings::UserScope, QStringLiteral("QtProject"));
        QCOMPARE(settings.value(QStringLiteral("FileDialog/shortcuts")).toStringList(), places);
        QCOMPARE(settings.value(QStringLiteral("FileDialog/viewMode")).toString(), QStringLiteral("Detail"));
        QVERIFY2(settings.contains(QStringLiteral("FileDialog/qtVersion")), "the toolkit wrote them");
    }

    void thePortalIsAskedForOneFolder()
    {
        const RecordingFileChooser portal;
        const auto panel = makePanel();
        panel->begin(Answers().take());
        QTRY_COMPARE(portal.questions().size(), 1);
        const RecordingFileChooser::Question &question = portal.questions().constFirst();
        QCOMPARE(question.parentWindow, QString());
        QCOMPARE(question.title, QStringLiteral("Screenshot Folder"));
        QVariantMap options = question.options;
        QVERIFY(!options.take(QStringLiteral("handle_token")).toString().isEmpty());
        const QVariantMap expected = {
            {QStringLiteral("accept_label"), QStringLiteral("Grant & Use__It")},
            {QStringLiteral("modal"), false},
            {QStringLiteral("multiple"), false},
            {QStringLiteral("directory"), true},
            {QStringLiteral("current_folder"), QByteArray(m_home->path().toUtf8() + '\0')},
        };
        QCOMPARE(options, expected);
        QVERIFY(shownDialog() == nullptr);
    }

    void wordsThatArentSetAreLeftToThePortal()
    {
        const RecordingFileChooser portal;
        OpenPanel panel;
        panel.begin(Answers().take());
        QTRY_COMPARE(portal.questions().size(), 1);
        const QVariantMap options = portal.questions().constFirst().options;
        QVERIFY(!options.contains(QStringLiteral("accept_label")));
        QVERIFY(!options.contains(QStringLiteral("current_folder")));
    }

    void theFolderOfThePortalIsTheUrl_data()
    {
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << QStringLiteral("file:///home/a/Pictures")
                               << QStringLiteral("/home/a/Pictures");
        QTest::newRow("slash at the end") << QStringLiteral("file:///home/a/") << QStringLiteral("/home/a");
        QTest::newRow("root") << QStringLiteral("file:///") << QStringLiteral("/");
        QTest::newRow("space and percent")
            << QStringLiteral("file:///a%20b%2525") << QStringLiteral("/a b%25");
        QTest::newRow("line break") << QStringLiteral("file:///a%0Ab") << QStringLiteral("/a\nb");
        QTest::newRow("question mark and hash")
            << QStringLiteral("file:///a%3Fb%23c") << QStringLiteral("/a?b#c");
        QTest::newRow("markup") << QStringLiteral("file:///%3Cb%3E&amp;") << QStringLiteral("/<b>&amp;");
        QTest::newRow("right to left")
            << QStringLiteral("file:///%E2%80%AEgnp") << QStringLiteral("/\u202Egnp");
    }

    void theFolderOfThePortalIsTheUrl()
    {
        QFETCH(const QString, uri);
        RecordingFileChooser portal;
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal.questions().size(), 1);
        QVERIFY(answers.responses.isEmpty());
        portal.respond(Response::Success, {uri});
        QTRY_COMPARE(answers.responses, QList{ModalResponse::OK});
        QTEST(panel->url().toLocalFile(), "path");
    }

    void anAnswerWithoutALocalFolderIsACancel_data()
    {
        QTest::addColumn<QStringList>("uris");
        QTest::addColumn<int>("lines");
        QTest::newRow("none") << QStringList() << 1;
        QTest::newRow("another computer's") << QStringList(QStringLiteral("smb://server/share")) << 1;
        QTest::newRow("no URI") << QStringList(QStringLiteral("Pictures")) << 1;
    }

    void anAnswerWithoutALocalFolderIsACancel()
    {
        QFETCH(const QStringList, uris);
        RecordingFileChooser portal;
        const CapturedOutput output;
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal.questions().size(), 1);
        portal.respond(Response::Success, uris);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::Cancel});
        QVERIFY(panel->url().isEmpty());
        QTEST(int(output.lines().size()), "lines");
    }

    void cancellingInThePortalIsACancel()
    {
        RecordingFileChooser portal;
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal.questions().size(), 1);
        const QString first = portal.request();
        portal.respond(Response::Cancelled);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::Cancel});
        QVERIFY(panel->url().isEmpty());
        QVERIFY(shownDialog() == nullptr);
        portal.respond(Response::Success, {QStringLiteral("file:///tmp")});
        settle(portal);
        QVERIFY2(!portal.closedRequests().contains(first), "nothing is left to close");
        QCOMPARE(answers.responses.size(), 1);
    }

    void anOldPortalsOwnRequestIsFollowed()
    {
        RecordingFileChooser portal;
        portal.setHandle(RecordingFileChooser::Handle::OfItsOwn);
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal.questions().size(), 1);
        // Answers are told apart by the path that came with the reply, so that has to have arrived.
        QTRY_VERIFY(
            (portal.respond(Response::Success, {QStringLiteral("file:///tmp")}),
             !answers.responses.isEmpty()));
        QCOMPARE(answers.responses.first(), ModalResponse::OK);
        QCOMPARE(answers.responses.size(), 1);
    }

    void withoutAUsablePortalTheToolkitsDialogComes_data()
    {
        using Manner = RecordingFileChooser::Manner;
        QTest::addColumn<uint>("version");
        QTest::addColumn<Manner>("manner");
        QTest::addColumn<int>("questions");
        QTest::addColumn<int>("closed");
        QTest::newRow("too old for folders") << 2U << Manner::Accepts << 0 << 0;
        QTest::newRow("refuses") << 3U << Manner::Refuses << 1 << 1;
        QTest::newRow("never answers") << 3U << Manner::KeepsSilent << 1 << 1;
    }

    void withoutAUsablePortalTheToolkitsDialogComes()
    {
        QFETCH(const uint, version);
        QFETCH(const RecordingFileChooser::Manner, manner);
        const RecordingFileChooser portal(version, manner);
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QVERIFY(shownDialog() == nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(shownDialog() != nullptr, 10000);
        QTEST(int(portal.questions().size()), "questions");
        // A portal that is only slow mustn't show a second dialog.
        QFETCH(const int, closed);
        QTRY_COMPARE(int(portal.closedRequests().size()), closed);
        QVERIFY(answers.responses.isEmpty());
        shownDialog()->reject();
        QTRY_COMPARE(answers.responses, QList{ModalResponse::Cancel});
    }

    void aPortalThatFailsToShowItsDialogIsReplaced()
    {
        RecordingFileChooser portal;
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal.questions().size(), 1);
        portal.respond(Response::Other);
        QTRY_VERIFY(shownDialog() != nullptr);
        QVERIFY(answers.responses.isEmpty());
    }

    void aPortalThatGoesAwayIsReplaced()
    {
        auto portal = std::make_unique<RecordingFileChooser>();
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal->questions().size(), 1);
        portal.reset();
        QTRY_VERIFY(shownDialog() != nullptr);
        QVERIFY(answers.responses.isEmpty());
    }

    void aDestroyedPanelClosesThePortalsDialog()
    {
        RecordingFileChooser portal;
        auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_COMPARE(portal.questions().size(), 1);
        panel.reset();
        QTRY_COMPARE(portal.closedRequests(), QStringList{portal.request()});
        portal.respond(Response::Success, {QStringLiteral("file:///tmp")});
        settle(portal);
        QVERIFY(answers.responses.isEmpty());
        QVERIFY(shownDialog() == nullptr);
    }

    void aPanelThatIsDestroyedAtOnceAsksNothing()
    {
        const RecordingFileChooser portal;
        makePanel()->begin(Answers().take());
        QTRY_COMPARE(portal.versionReads(), 1);
        settle(portal);
        QCOMPARE(portal.questions().size(), 1);
    }
};

int main(int argc, char *argv[])
{
    // A portal that is installed here would be started by the first question to it.
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    const QApplication application(argc, argv);
    OpenPanelTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OpenPanelTest.moc"
