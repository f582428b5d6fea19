#include "OpenPanelFixture.h"

#include <QSignalSpy>

/// What a panel answers when its dialog goes, and how often it can be used.
class OpenPanelTest final : public OpenPanelFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { makeHome(); }

    void cleanup() { waitUntilNoDialogIsShown(); }

    void itHasTheValuesOfItsResponses()
    {
        QCOMPARE(int(ModalResponse::Cancel), 0);
        QCOMPARE(int(ModalResponse::OK), 1);
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

    void whatEndsTwiceAnswersOnce()
    {
        const auto panel = makePanel();
        Answers answers;
        panel->begin(answers.take());
        QTRY_VERIFY(shownDialog() != nullptr);
        QLineEdit &path = pathField(*shownDialog());
        type(*shownDialog(), QStringLiteral("Archive"));
        // Two presses that have waited for a busy program.
        QTest::keyClick(&path, Qt::Key_Return);
        QTest::keyClick(&path, Qt::Key_Return);
        QTRY_COMPARE(answers.responses, QList{ModalResponse::OK});
        QTRY_VERIFY(shownDialog() == nullptr);
        QCOMPARE(answers.responses.size(), 1);
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
};

int main(int argc, char *argv[])
{
    return runWithoutInstalledPortals<OpenPanelTest>(argc, argv);
}

#include "OpenPanelTest.moc"
