#include "replaceFile.h"

#include "TemporaryHome.h"
#include "files.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <atomic>
#include <latch>
#include <thread>
#include <vector>

/// Files that take the place of others, and the folders that they need.
class replaceFileTest : public QObject {
    Q_OBJECT

private:
    const TemporaryHome m_home;

private Q_SLOTS:

    void itTakesThePlaceOfWhatWasThere()
    {
        const QString path = m_home.path() + QStringLiteral("/settings");
        files::write(path, "before");
        QVERIFY(replaceFile(QFile::encodeName(path), "after").has_value());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("after"));
        QVERIFY(!(file.permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther)));
    }

    void manyAtOnceMakeTheFoldersThatTheyNeed()
    {
        constexpr int threadCount = 8;
        constexpr int rounds = 100;
        std::atomic<int> failures = 0;
        for (int round = 0; round < rounds; ++round) {
            const QByteArray folder =
                QFile::encodeName(m_home.path() + QStringLiteral("/%1/a/b/c").arg(round));
            std::latch start(threadCount);
            std::vector<std::jthread> threads;
            for (int thread = 0; thread < threadCount; ++thread) {
                const QByteArray path = folder + '/' + QByteArray::number(thread);
                threads.emplace_back([&failures, &start, path] {
                    start.arrive_and_wait();
                    if (!replaceFile(path, "contents")) {
                        ++failures;
                    }
                });
            }
            threads.clear();
            QCOMPARE(QDir(QFile::decodeName(folder)).entryList(QDir::Files).size(), threadCount);
        }
        QCOMPARE(failures.load(), 0);
    }

    void aFileInTheWayOfAFolderIsAFailure()
    {
        const QString path = m_home.path() + QStringLiteral("/file");
        files::write(path);
        QVERIFY(!replaceFile(QFile::encodeName(path + QStringLiteral("/below/entry")), "contents"));
        QVERIFY(files::exists(path));
    }
};

QTEST_APPLESS_MAIN(replaceFileTest)
#include "replaceFileTest.moc"
