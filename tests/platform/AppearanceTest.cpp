#include "Appearance.h"

#include "PrivateBus.h"
#include "SettingsPortal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

struct Accent {
    double red = 0;
    double green = 0;
    double blue = 0;
};
Q_DECLARE_METATYPE(Accent)

static QDBusArgument &operator<<(QDBusArgument &argument, const Accent &accent)
{
    argument.beginStructure();
    argument << accent.red << accent.green << accent.blue;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, Accent &accent)
{
    argument.beginStructure();
    argument >> accent.red >> accent.green >> accent.blue;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): the toolkit's signature
}

class AppearanceTest : public QObject {
    Q_OBJECT

private:
    static void setPalette(QColor window)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        QGuiApplication::setPalette(palette);
    }

private Q_SLOTS:

    void initTestCase() { qDBusRegisterMetaType<Accent>(); }

    void init() { setPalette(Qt::white); }

    void withoutAPortalThePaletteTells()
    {
        Appearance appearance;
        QSignalSpy changed(&appearance, &Appearance::changed);
        QVERIFY(appearance.colorScheme() == Appearance::ColorScheme::Light);
        QVERIFY(!appearance.accentColor());
        QVERIFY(!appearance.reducesMotion());
        QVERIFY(!appearance.increasesContrast());

        setPalette(QColor(30, 30, 30));
        QTRY_COMPARE(changed.size(), 1);
        QVERIFY(appearance.colorScheme() == Appearance::ColorScheme::Dark);
    }

    void thePortalIsFollowed()
    {
        SettingsPortal portal;
        portal.setAppearance(QStringLiteral("color-scheme"), 1U);
        Appearance appearance;
        QVERIFY2(appearance.colorScheme() == Appearance::ColorScheme::Light, "not waited for");
        QTRY_VERIFY(appearance.colorScheme() == Appearance::ColorScheme::Dark);

        portal.setAppearance(QStringLiteral("color-scheme"), 2U);
        QTRY_VERIFY(appearance.colorScheme() == Appearance::ColorScheme::Light);

        portal.setAppearance(QStringLiteral("contrast"), 1U);
        QTRY_VERIFY(appearance.increasesContrast());
        portal.setAppearance(QStringLiteral("reduced-motion"), 1U);
        QTRY_VERIFY(appearance.reducesMotion());
        portal.setAppearance(QStringLiteral("accent-color"), QVariant::fromValue(Accent{1, 0.5, 0}));
        QTRY_VERIFY(appearance.accentColor().has_value());
        QCOMPARE(appearance.accentColor()->toRgb().red(), 255);
        QCOMPARE(appearance.accentColor()->toRgb().green(), 128);

        portal.setAppearance(QStringLiteral("accent-color"), QVariant::fromValue(Accent{-1, -1, -1}));
        QTRY_VERIFY(!appearance.accentColor().has_value());
        portal.setAppearance(QStringLiteral("accent-color"), QStringLiteral("#ff0000"));
        portal.setAppearance(QStringLiteral("contrast"), 0U);
        QTRY_VERIFY(!appearance.increasesContrast());
        QVERIFY2(!appearance.accentColor().has_value(), "a value of another type is none");
    }

    void lightIsLightOnADarkPalette()
    {
        setPalette(Qt::black);
        SettingsPortal portal;
        portal.setAppearance(QStringLiteral("color-scheme"), 2U);
        Appearance appearance;
        QTRY_VERIFY(appearance.colorScheme() == Appearance::ColorScheme::Light);
        portal.setAppearance(QStringLiteral("color-scheme"), 0U);
        QTRY_VERIFY(appearance.colorScheme() == Appearance::ColorScheme::Dark);
    }

    void switchedOffAnimationsAreReducedMotion()
    {
        SettingsPortal portal;
        const QString gnome = QStringLiteral("org.gnome.desktop.interface");
        portal.set(gnome, QStringLiteral("enable-animations"), false);
        Appearance appearance;
        QTRY_VERIFY(appearance.reducesMotion());
        portal.set(gnome, QStringLiteral("enable-animations"), true);
        QTRY_VERIFY(!appearance.reducesMotion());
    }

    void aPortalMayComeLater()
    {
        Appearance appearance;
        QSignalSpy changed(&appearance, &Appearance::changed);
        SettingsPortal portal;
        portal.setAppearance(QStringLiteral("contrast"), 1U);
        QTRY_VERIFY(appearance.increasesContrast());
        QCOMPARE(changed.size(), 1);
    }

    void theSharedOneIsOne()
    {
        QCOMPARE(&Appearance::shared(), &Appearance::shared());
        QCOMPARE(Appearance::shared().parent(), QCoreApplication::instance());
    }
};

int main(int argc, char *argv[])
{
    // A portal that is installed here would be started by the first question to it.
    const PrivateBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    const QGuiApplication application(argc, argv);
    AppearanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "AppearanceTest.moc"
