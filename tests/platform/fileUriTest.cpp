#include "fileUri.h"

#include <QTest>

#include <gio/gio.h>

#include <memory>

namespace {

QByteArray gioUri(const QByteArray &path)
{
    const std::unique_ptr<GFile, decltype(&g_object_unref)> file(
        g_file_new_for_path(path.constData()), &g_object_unref);
    const std::unique_ptr<char, decltype(&g_free)> uri(g_file_get_uri(file.get()), &g_free);
    return {uri.get()};
}

} // namespace

class fileUriTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void isTheOneOfGio_data()
    {
        QTest::addColumn<QByteArray>("path");
        const auto row = [](const QByteArray &path) { QTest::newRow(path.toHex(' ').constData()) << path; };
        for (int byte = 1; byte < 256; ++byte) {
            row("/home/a" + QByteArray(1, static_cast<char>(byte)) + "b.png");
        }
        for (const char *const path :
             {"/", "//", "///", "/a", "/a/", "//a//b///c", "///a", "/./a", "/a/./b/.", "/a/../b", "/../a",
              "/a/..", "/a/../..", "/a/b/../../..", "/.a/..b/...", "//../a", "/a%20b#c?d.png",
              "/\xD7\xA9\xE2\x80\xAE.png", "/\xFF\xFE"}) {
            row(path);
        }
    }

    void isTheOneOfGio()
    {
        QFETCH(const QByteArray, path);
        QCOMPARE(fileUri(path), gioUri(path));
    }
};

QTEST_GUILESS_MAIN(fileUriTest)
#include "fileUriTest.moc"
