#include "DBusMenuExporter.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

const QString clicked = QStringLiteral("clicked");

} // namespace

/// Calls the exporter as the bus does. How its answers look on the wire: StatusItemTest.
class DBusMenuExporterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theLayoutHasTheItemsInOrder();
    void theLayoutGoesAsDeepAsAsked();
    void theLayoutHasOnlyTheWantedProperties();
    void anUnknownParentHasAnEmptyLayout();
    void aGroupHasTheItemsThatExist();
    void onePropertyAlone();
    void aClickTriggersTheActionAfterwards();
    void clicksThatAreIgnored_data();
    void clicksThatAreIgnored();
    void aGroupOfEventsNamesTheUnknownItems();
    void anAddedActionUpdatesTheLayoutOnce();
    void aRemovedActionLosesItsId();
    void changesOfOneTurnAreAnnouncedTogether();
    void aPropertyBackAtItsDefaultIsRemoved();
    void aChangeThatPanelsCannotSeeIsNotAnnounced();
    void nothingIsAnnouncedOfItemsThatNobodyAskedFor();
    void showingLetsTheMenuPrepareItself();
    void anotherMenuIsANewLayout();

private:
    [[nodiscard]] DBusMenuLayout layout(int parent = 0, int depth = -1, const QStringList &names = {});

    void click(int id) { m_exporter->Event(id, clicked, QDBusVariant(0), 0); }

    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<DBusMenuExporter> m_exporter;
    QAction *m_gallery = nullptr;
    QAction *m_timeframe = nullptr;
};

void DBusMenuExporterTest::init()
{
    m_menu = std::make_unique<QMenu>();
    m_gallery = m_menu->addAction(QStringLiteral("Gallery"));
    m_menu->addSeparator();
    QMenu *submenu = m_menu->addMenu(QStringLiteral("Deletion Timeframe"));
    m_timeframe = submenu->addAction(QStringLiteral("1 minute"));
    m_timeframe->setCheckable(true);
    m_exporter = std::make_unique<DBusMenuExporter>(
        QDBusConnection::sessionBus(), QStringLiteral("/DBusMenuExporterTest"));
    m_exporter->setMenu(m_menu.get());
    QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::LayoutUpdated);
    QVERIFY(updated.wait());
}

void DBusMenuExporterTest::cleanup()
{
    m_exporter.reset();
    m_menu.reset();
}

DBusMenuLayout DBusMenuExporterTest::layout(int parent, int depth, const QStringList &names)
{
    DBusMenuLayout layout;
    m_exporter->GetLayout(parent, depth, names, layout);
    return layout;
}

void DBusMenuExporterTest::theLayoutHasTheItemsInOrder()
{
    const DBusMenuLayout root = layout();

    QCOMPARE(root.id, 0);
    QCOMPARE(root.properties.value(QStringLiteral("children-display")), QVariant(QStringLiteral("submenu")));
    QCOMPARE(root.children.size(), 3);
    QCOMPARE(
        root.children.at(0).properties.value(QStringLiteral("label")), QVariant(QStringLiteral("Gallery")));
    QCOMPARE(
        root.children.at(1).properties.value(QStringLiteral("type")), QVariant(QStringLiteral("separator")));
    const DBusMenuLayout submenu = root.children.at(2);
    QCOMPARE(
        submenu.properties.value(QStringLiteral("children-display")), QVariant(QStringLiteral("submenu")));
    QCOMPARE(submenu.children.size(), 1);
    QCOMPARE(submenu.children.first().properties.value(QStringLiteral("toggle-state")), QVariant(0));
    // An item keeps its id.
    QCOMPARE(layout().children.at(0).id, root.children.at(0).id);
    QCOMPARE(layout(submenu.id).children.first().id, submenu.children.first().id);
}

void DBusMenuExporterTest::theLayoutGoesAsDeepAsAsked()
{
    QCOMPARE(layout(0, 0).children.size(), 0);
    QCOMPARE(layout(0, 1).children.size(), 3);
    QCOMPARE(layout(0, 1).children.at(2).children.size(), 0);
    QCOMPARE(layout(0, 2).children.at(2).children.size(), 1);
}

void DBusMenuExporterTest::theLayoutHasOnlyTheWantedProperties()
{
    const DBusMenuLayout root = layout(0, 1, {QStringLiteral("type"), QStringLiteral("visible")});
    QCOMPARE(root.children.at(0).properties, QVariantMap());
    QCOMPARE(root.children.at(1).properties.keys(), QStringList{QStringLiteral("type")});
}

void DBusMenuExporterTest::anUnknownParentHasAnEmptyLayout()
{
    QCOMPARE(layout(77).children.size(), 0);
}

void DBusMenuExporterTest::aGroupHasTheItemsThatExist()
{
    const int gallery = layout().children.at(0).id;
    const auto group = m_exporter->GetGroupProperties({gallery, 77}, {});
    QCOMPARE(group.size(), 1);
    QCOMPARE(group.first().id, gallery);
    // No ids mean all of them: the menu, its three items and the submenu's one.
    QCOMPARE(m_exporter->GetGroupProperties({}, {}).size(), 5);
}

void DBusMenuExporterTest::onePropertyAlone()
{
    const int gallery = layout().children.at(0).id;
    QCOMPARE(
        m_exporter->GetProperty(gallery, QStringLiteral("label")).variant(),
        QVariant(QStringLiteral("Gallery")));
}

void DBusMenuExporterTest::aClickTriggersTheActionAfterwards()
{
    const int gallery = layout().children.at(0).id;
    const QSignalSpy triggered(m_gallery, &QAction::triggered);

    click(gallery);

    QCOMPARE(triggered.count(), 0);
    QTRY_COMPARE(triggered.count(), 1);
}

void DBusMenuExporterTest::clicksThatAreIgnored_data()
{
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("isVisible");
    QTest::addColumn<QString>("event");
    QTest::newRow("disabled item") << false << true << clicked;
    QTest::newRow("hidden item") << true << false << clicked;
    QTest::newRow("other event") << true << true << QStringLiteral("hovered");
}

void DBusMenuExporterTest::clicksThatAreIgnored()
{
    QFETCH(const bool, isEnabled);
    QFETCH(const bool, isVisible);
    QFETCH(const QString, event);
    const int gallery = layout().children.at(0).id;
    const int timeframe = layout().children.at(2).children.first().id;
    m_gallery->setEnabled(isEnabled);
    m_gallery->setVisible(isVisible);
    const QSignalSpy ignored(m_gallery, &QAction::triggered);
    const QSignalSpy triggered(m_timeframe, &QAction::triggered);

    m_exporter->Event(gallery, event, QDBusVariant(0), 0);
    click(timeframe);

    // The later click has run, so the earlier would have.
    QTRY_COMPARE(triggered.count(), 1);
    QCOMPARE(ignored.count(), 0);
}

void DBusMenuExporterTest::aGroupOfEventsNamesTheUnknownItems()
{
    const int gallery = layout().children.at(0).id;
    const QSignalSpy triggered(m_gallery, &QAction::triggered);

    const QList<int> unknown = m_exporter->EventGroup(
        {{.id = 77, .name = clicked, .data = {}, .timestamp = 0},
         {.id = gallery, .name = clicked, .data = {}, .timestamp = 0}});

    QCOMPARE(unknown, QList<int>{77});
    QTRY_COMPARE(triggered.count(), 1);
}

void DBusMenuExporterTest::anAddedActionUpdatesTheLayoutOnce()
{
    DBusMenuLayout ignored;
    const uint before = m_exporter->GetLayout(0, -1, {}, ignored);
    QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::LayoutUpdated);

    m_menu->addAction(QStringLiteral("Settings"));
    m_menu->addAction(QStringLiteral("Quit Deskbroom"));

    QVERIFY(updated.wait());
    QCOMPARE(updated.count(), 1);
    QCOMPARE(updated.first(), (QVariantList{before + 1, 0}));
    QCOMPARE(layout().children.size(), 5);
}

void DBusMenuExporterTest::aRemovedActionLosesItsId()
{
    const int gallery = layout().children.at(0).id;
    QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::LayoutUpdated);

    delete m_gallery;

    QVERIFY(updated.wait());
    QCOMPARE(layout().children.size(), 2);
    QCOMPARE(m_exporter->GetGroupProperties({gallery}, {}).size(), 0);
    QCOMPARE(
        m_exporter->EventGroup({{.id = gallery, .name = clicked, .data = {}, .timestamp = 0}}),
        QList<int>{gallery});
}

void DBusMenuExporterTest::changesOfOneTurnAreAnnouncedTogether()
{
    const DBusMenuLayout root = layout();
    QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::ItemsPropertiesUpdated);
    const QSignalSpy layoutUpdated(m_exporter.get(), &DBusMenuExporter::LayoutUpdated);

    m_gallery->setEnabled(false);
    m_timeframe->setChecked(true);

    QVERIFY(updated.wait());
    QCOMPARE(updated.count(), 1);
    QMap<int, QVariantMap> changes;
    for (const auto &item : updated.first().first().value<QList<DBusMenuItemProperties>>()) {
        changes.insert(item.id, item.properties);
    }
    const QMap<int, QVariantMap> expected = {
        {root.children.at(0).id, {{QStringLiteral("enabled"), false}}},
        {root.children.at(2).children.first().id, {{QStringLiteral("toggle-state"), 1}}}};
    QCOMPARE(changes, expected);
    QCOMPARE(layoutUpdated.count(), 0);
}

void DBusMenuExporterTest::aPropertyBackAtItsDefaultIsRemoved()
{
    m_gallery->setEnabled(false);
    const int gallery = layout().children.at(0).id;
    QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::ItemsPropertiesUpdated);

    m_gallery->setEnabled(true);

    QVERIFY(updated.wait());
    const auto removed = updated.first().at(1).value<QList<DBusMenuRemovedProperties>>();
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.first().id, gallery);
    QCOMPARE(removed.first().names, QStringList{QStringLiteral("enabled")});
}

void DBusMenuExporterTest::aChangeThatPanelsCannotSeeIsNotAnnounced()
{
    QVERIFY(!layout().children.isEmpty());
    const QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::ItemsPropertiesUpdated);

    m_gallery->setToolTip(QStringLiteral("no panel shows it"));

    QVERIFY(m_exporter->AboutToShow(0));
    QCOMPARE(updated.count(), 0);
}

void DBusMenuExporterTest::nothingIsAnnouncedOfItemsThatNobodyAskedFor()
{
    const QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::ItemsPropertiesUpdated);

    m_gallery->setEnabled(false);

    QVERIFY(m_exporter->AboutToShow(0));
    QCOMPARE(updated.count(), 0);
}

void DBusMenuExporterTest::showingLetsTheMenuPrepareItself()
{
    QVERIFY(!layout().children.isEmpty());
    QVERIFY(!m_exporter->AboutToShow(0));
    connect(m_menu.get(), &QMenu::aboutToShow, m_gallery, [this] {
        m_gallery->setText(QStringLiteral("Prepared"));
    });

    QList<int> unknown;
    QCOMPARE(m_exporter->AboutToShowGroup({0, 77}, unknown), QList<int>{0});

    QCOMPARE(unknown, QList<int>{77});
    QCOMPARE(
        layout().children.at(0).properties.value(QStringLiteral("label")),
        QVariant(QStringLiteral("Prepared")));
}

void DBusMenuExporterTest::anotherMenuIsANewLayout()
{
    QVERIFY(!layout().children.isEmpty());
    QSignalSpy updated(m_exporter.get(), &DBusMenuExporter::LayoutUpdated);

    m_exporter->setMenu(nullptr);

    QVERIFY(updated.wait());
    QCOMPARE(layout().children.size(), 0);
}

QTEST_MAIN(DBusMenuExporterTest)

#include "DBusMenuExporterTest.moc"
