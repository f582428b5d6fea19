#include "CapturedOutput.h"
#include "OpenPanelFixture.h"
#include "RecordingFileChooser.h"

using Response = RecordingFileChooser::Response;

/// What a panel asks a portal, and what it does with the answers and without.
class PortalFolderChooserTest final : public OpenPanelFixture {
    Q_OBJECT

private:
    /// The bus keeps the order: once a further question has arrived, so has everything before it, both ways.
    static void settle(const RecordingFileChooser &portal)
    {
        const qsizetype before = portal.questions().size();
        OpenPanel panel;
        panel.begin(Answers().take());
        QTRY_COMPARE(portal.questions().size(), before + 1);
    }

private Q_SLOTS:

    void init() { makeHome(); }

    void cleanup() { waitUntilNoDialogIsShown(); }

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
    return runWithoutInstalledPortals<PortalFolderChooserTest>(argc, argv);
}

#include "PortalFolderChooserTest.moc"
