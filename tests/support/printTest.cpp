#include "print.h"

#include <QTest>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <thread>
#include <vector>

namespace {

/// Catches what goes to standard output while it lives. Packets keep the writes apart.
class CapturedWrites {
public:
    CapturedWrites()
    {
        // Each packet takes a page of the pipe.
        constexpr int capacity = 256 * 4096;
        if (::pipe2(m_pipe.data(), O_DIRECT | O_CLOEXEC) != 0 ||
            ::fcntl(m_pipe[1], F_SETPIPE_SZ, capacity) < capacity) {
            qFatal("Can't make a pipe");
        }
        m_previous = ::dup(STDOUT_FILENO);
        ::dup2(m_pipe[1], STDOUT_FILENO);
    }

    ~CapturedWrites()
    {
        restore();
        ::close(m_pipe[0]);
    }

    Q_DISABLE_COPY_MOVE(CapturedWrites)

    /// Every write since the beginning.
    QByteArrayList writes()
    {
        restore();
        QByteArrayList result;
        std::array<char, 4096> packet = {};
        for (ssize_t size = 0; (size = ::read(m_pipe[0], packet.data(), packet.size())) > 0;) {
            result += QByteArray(packet.data(), size);
        }
        return result;
    }

private:
    void restore()
    {
        if (m_previous >= 0) {
            ::dup2(m_previous, STDOUT_FILENO);
            ::close(m_previous);
            ::close(m_pipe[1]);
            m_previous = -1;
        }
    }

    std::array<int, 2> m_pipe = {};
    int m_previous = -1;
};

} // namespace

class printTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void aLineIsOneWrite_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("plain") << QStringLiteral("Screenshot moved to Trash: a.png")
                               << QByteArray("Screenshot moved to Trash: a.png\n");
        QTest::newRow("empty") << QString() << QByteArray("\n");
        QTest::newRow("line break") << QStringLiteral("a\nb\r.png") << QByteArray("a\\nb\\x0d.png\n");
        QTest::newRow("terminal control")
            << QStringLiteral("\u001b[31m\u0007") << QByteArray("\\x1b[31m\\x07\n");
        QTest::newRow("tab and nul") << QString(QStringLiteral("\t") + QChar(u'\0'))
                                     << QByteArray("\\t\\x00\n");
        QTest::newRow("C1 control") << QStringLiteral("\u009b") << QByteArray("\\x9b\n");
        QTest::newRow("right to left") << QStringLiteral("\u202egnp.exe") << QByteArray("\\u202egnp.exe\n");
        QTest::newRow("line separator") << QStringLiteral("a\u2028b") << QByteArray("a\\u2028b\n");
        QTest::newRow("backslash") << QStringLiteral("a\\nb") << QByteArray("a\\nb\n");
        QTest::newRow("any script") << QStringLiteral("Снимок 截图 😀.png")
                                    << QStringLiteral("Снимок 截图 😀.png\n").toUtf8();
    }

    void aLineIsOneWrite()
    {
        QFETCH(const QString, line);
        CapturedWrites output;
        print(line);
        QFETCH(const QByteArray, written);
        QCOMPARE(output.writes(), QByteArrayList{written});
    }

    void linesOfSeveralThreadsDoNotMix()
    {
        constexpr int lines = 50;
        CapturedWrites output;
        std::vector<std::thread> threads;
        for (const char16_t letter : {u'a', u'b', u'c'}) {
            threads.emplace_back([letter] {
                for (int line = 0; line < lines; ++line) {
                    print(QString(200, QChar(letter)));
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        const QByteArrayList writes = output.writes();
        QCOMPARE(writes.size(), 3 * lines);
        for (const QByteArray &write : writes) {
            QCOMPARE(write, QByteArray(200, write.front()) + '\n');
        }
    }

    void aClosedOutputIsIgnored()
    {
        std::signal(SIGPIPE, SIG_IGN);
        const int previous = ::dup(STDOUT_FILENO);
        if (previous < 0) {
            QFAIL("Standard output is closed already");
        }
        ::close(STDOUT_FILENO);
        print(QStringLiteral("nowhere"));
        ::dup2(previous, STDOUT_FILENO);
        ::close(previous);
        QVERIFY(::fcntl(STDOUT_FILENO, F_GETFD) >= 0);
    }
};

QTEST_GUILESS_MAIN(printTest)
#include "printTest.moc"
