#include "StatusItem.h"

#include "RecordingStatusNotifierWatcher.h"
#include "StatusNotifierItem.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Watcher = RecordingStatusNotifierWatcher;
using Source = StatusItem::Anchor::Source;

namespace {

StatusItemImage cameraImage()
{
    QImage pixel(1, 1, QImage::Format_ARGB32);
    pixel.fill(QColor(1, 2, 3, 4));
    return {
        .iconName = QStringLiteral("camera.fill-symbolic"),
        .iconThemePath = QStringLiteral("/icons"),
        .pixmaps = {pixel},
        .icon = {},
        .accessibilityDescription = QStringLiteral("Deskbroom")};
}

template <typename Type> Type itemProperty(const Watcher &watcher, const char *name)
{
    return qdbus_cast<Type>(watcher.itemProperty(QString::fromLatin1(name)));
}

} // namespace

class StatusItemTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isNotOnTheBusBeforeItsImage();
    void comesBackWhenThePanelRestarts();
    void hasTheProtocolsProperties();
    void sendsPixelsInNetworkOrder();
    void announcesANewImage();
    void everyButtonHasItsMeaning_data();
    void everyButtonHasItsMeaning();
    void scrollingIsNoClick();
    void remembersAPlausibleClick();
    void forgetsTheClickWithItsPanel();
    void exportsItsMenu();
    void survivesItsMenu();
};

void StatusItemTest::isNotOnTheBusBeforeItsImage()
{
    const Watcher watcher;
    StatusItem item;
    QMenu menu;
    item.setMenu(&menu);
    // Whatever the item's connection had sent would have arrived before this answer.
    const QDBusMessage ping = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    const QDBusPendingCallWatcher answer(QDBusConnection::sessionBus().asyncCall(ping));
    QSignalSpy answered(&answer, &QDBusPendingCallWatcher::finished);
    QVERIFY(answered.wait());
    QCOMPARE(watcher.registeredItems(), QStringList());

    item.setImage(cameraImage());

    QTRY_COMPARE(watcher.registeredItems().size(), 1);
}

void StatusItemTest::comesBackWhenThePanelRestarts()
{
    StatusItem item;
    item.setImage(cameraImage());
    for (int start = 0; start < 3; ++start) {
        const Watcher watcher;
        QTRY_COMPARE(watcher.registeredItems().size(), 1);
        QCOMPARE(itemProperty<QString>(watcher, "Title"), QStringLiteral("Deskbroom"));
    }
}

void StatusItemTest::hasTheProtocolsProperties()
{
    const Watcher watcher;
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);

    QCOMPARE(itemProperty<QString>(watcher, "Category"), QStringLiteral("ApplicationStatus"));
    QCOMPARE(itemProperty<QString>(watcher, "Id"), QStringLiteral("org.deskbroom.Deskbroom"));
    QCOMPARE(itemProperty<QString>(watcher, "Status"), QStringLiteral("Active"));
    QCOMPARE(watcher.itemProperty(QStringLiteral("WindowId")), QVariant(0));
    QCOMPARE(itemProperty<QString>(watcher, "IconName"), QStringLiteral("camera.fill-symbolic"));
    QCOMPARE(itemProperty<QString>(watcher, "IconThemePath"), QStringLiteral("/icons"));
    QCOMPARE(itemProperty<QString>(watcher, "IconAccessibleDesc"), QStringLiteral("Deskbroom"));
    QCOMPARE(itemProperty<StatusNotifierToolTip>(watcher, "ToolTip").title, QStringLiteral("Deskbroom"));
    QCOMPARE(watcher.itemProperty(QStringLiteral("ItemIsMenu")), QVariant(false));
    QCOMPARE(itemProperty<QDBusObjectPath>(watcher, "Menu").path(), QStringLiteral("/MenuBar"));
}

void StatusItemTest::sendsPixelsInNetworkOrder()
{
    const Watcher watcher;
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);

    const auto pixmaps = itemProperty<QList<StatusNotifierPixmap>>(watcher, "IconPixmap");

    QCOMPARE(pixmaps.size(), 1);
    QCOMPARE(pixmaps.first().width, 1);
    QCOMPARE(pixmaps.first().height, 1);
    QCOMPARE(pixmaps.first().pixels, QByteArray("\x04\x01\x02\x03"));
}

void StatusItemTest::announcesANewImage()
{
    const Watcher watcher;
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);
    const qsizetype before = watcher.receivedSignals().count(QStringLiteral("NewIcon"));
    StatusItemImage other = cameraImage();
    other.iconName = QStringLiteral("other-symbolic");

    item.setImage(other);

    QTRY_COMPARE(watcher.receivedSignals().count(QStringLiteral("NewIcon")), before + 1);
    QCOMPARE(itemProperty<QString>(watcher, "IconName"), QStringLiteral("other-symbolic"));
}

void StatusItemTest::everyButtonHasItsMeaning_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<int>("clicks");
    QTest::addColumn<int>("menuRequests");
    QTest::newRow("left") << QStringLiteral("Activate") << 1 << 0;
    QTest::newRow("middle") << QStringLiteral("SecondaryActivate") << 1 << 0;
    QTest::newRow("right, in a panel without exported menus") << QStringLiteral("ContextMenu") << 0 << 1;
}

void StatusItemTest::everyButtonHasItsMeaning()
{
    QFETCH(const QString, method);
    QFETCH(const int, clicks);
    QFETCH(const int, menuRequests);
    const Watcher watcher;
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);
    const QSignalSpy clicked(&item, &StatusItem::clicked);
    const QSignalSpy menuRequested(&item, &StatusItem::menuRequested);

    const QDBusMessage reply = watcher.callItem(method, {10, 10});

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(clicked.count(), clicks);
    QCOMPARE(menuRequested.count(), menuRequests);
}

void StatusItemTest::scrollingIsNoClick()
{
    const Watcher watcher;
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);
    const QSignalSpy clicked(&item, &StatusItem::clicked);

    const QDBusMessage reply = watcher.callItem(QStringLiteral("Scroll"), {120, QStringLiteral("vertical")});

    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(clicked.count(), 0);
}

void StatusItemTest::remembersAPlausibleClick()
{
    const Watcher watcher;
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);
    QCOMPARE(item.anchor().source, Source::ScreenCorner);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QSignalSpy clicked(&item, &StatusItem::clicked);

    watcher.activate(screen.center());
    QVERIFY(clicked.wait());
    QCOMPARE(item.anchor().source, Source::ScreenCorner);

    const QPoint place(screen.right() - 100, screen.top() + 12);
    watcher.activate(place);
    QVERIFY(clicked.wait());
    QCOMPARE(item.anchor().source, Source::Click);
    QVERIFY(item.anchor().rectangle.contains(place));

    watcher.activate(QPoint(0, 0));
    QVERIFY(clicked.wait());
    QVERIFY(item.anchor().rectangle.contains(place));
}

void StatusItemTest::forgetsTheClickWithItsPanel()
{
    auto watcher = std::make_unique<Watcher>();
    StatusItem item;
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher->registeredItems().size(), 1);
    watcher->activate(QGuiApplication::primaryScreen()->geometry().topRight() + QPoint(-100, 12));
    QTRY_COMPARE(item.anchor().source, Source::Click);

    watcher.reset();

    QTRY_COMPARE(item.anchor().source, Source::ScreenCorner);
}

void StatusItemTest::exportsItsMenu()
{
    const Watcher watcher;
    QMenu menu;
    const QAction *gallery = menu.addAction(QStringLiteral("Gallery"));
    QSignalSpy triggered(gallery, &QAction::triggered);
    StatusItem item;
    item.setMenu(&menu);
    item.setImage(cameraImage());
    QTRY_COMPARE(watcher.registeredItems().size(), 1);

    const QDBusMessage layout = watcher.callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList()});
    QCOMPARE(layout.signature(), QStringLiteral("u(ia{sv}av)"));
    const QDBusMessage clicked = watcher.callMenu(
        QStringLiteral("Event"), {1, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});

    QCOMPARE(clicked.type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(triggered.count(), 1);
}

void StatusItemTest::survivesItsMenu()
{
    const Watcher watcher;
    StatusItem item;
    {
        QMenu menu;
        menu.addAction(QStringLiteral("Gallery"));
        item.setMenu(&menu);
        item.setImage(cameraImage());
        QTRY_COMPARE(watcher.registeredItems().size(), 1);
    }

    const QDBusMessage layout = watcher.callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList()});

    QCOMPARE(layout.type(), QDBusMessage::ReplyMessage);
}

QTEST_MAIN(StatusItemTest)

#include "StatusItemTest.moc"
