#include "OpenPanelFixture.h"
#include "savePicture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QKeySequence>
#include <QLabel>
#include <QListView>

namespace {

bool hasAccessibleName(QWidget &widget)
{
    const QAccessibleInterface *const control = QAccessible::queryAccessibleInterface(&widget);
    if (control == nullptr || control->text(QAccessible::Name).isEmpty()) {
        return false;
    }
    // What a combo box shows counts as its name, so that it needs a label.
    return control->role() != QAccessible::ComboBox || !control->relations(QAccessible::Label).isEmpty();
}

} // namespace

/// The dialog of the toolkit's, that a panel shows where there is no portal.
class FolderDialogTest final : public OpenPanelFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { makeHome(); }

    void cleanup() { waitUntilNoDialogIsShown(); }

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
};

int main(int argc, char *argv[])
{
    return runWithoutInstalledPortals<FolderDialogTest>(argc, argv);
}

#include "FolderDialogTest.moc"
