// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/ConsoleAppender.h"
#include "platform/velk/Logger.h"
#include "platform/velk/RollingFileAppender.h"

#include <QDir>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#ifndef QT_NO_DEBUG
#error "Build this test as a release is built: that is where Qt leaves out file, function and line by itself."
#endif

using namespace Qt::StringLiterals;
using namespace Velk::Core;

namespace {

const QString lineFormat =
    u"[%{time}{yyyy-MM-dd, HH:mm:ss.zzz}] [%{type:-7}] [%{file}=>%{function}: %{line}] %{message}\n"_s;

QStringList linesOf(const QString& path)
{
    QFile file(path);
    const bool open = file.open(QIODevice::ReadOnly);
    return open ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts) : QStringList();
}

/// When the test function began, lest midnight comes between two of its steps.
QDateTime beginning;

void writeFileOfDay(const QString& path, const QByteArray& content, int daysAgo)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    QVERIFY(file.flush());
    const QDateTime day = beginning.addDays(-daysAgo);
    QVERIFY(file.setFileTime(day, QFileDevice::FileModificationTime));
}

QString dayBefore(int days)
{
    return beginning.addDays(-days).toString(u"yyyy-MM-dd"_s);
}

} // namespace

/// Something that logs as the product does.
class Sample
{
public:
    static void report(const QString& value, int& line)
    {
        line = __LINE__ + 1;
        qInfo() << "gui locale: " << value;
    }
};

/// An appender of the one logger cannot be taken away again: this one writes wherever the test is.
class FollowingAppender : public AbstractAppender
{
public:
    std::unique_ptr<RollingFileAppender> target;

protected:
    void write(const QByteArray& line, const QDateTime& time) override
    {
        if (target) {
            target->append({QtDebugMsg, QMessageLogContext(), QString::fromUtf8(line.chopped(1)), time});
        }
    }
};

class LoggerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void format_data();
    void format();
    void fullSignature();
    void everyThread();
    void consoleGoesOnWithoutFile();
    void rollsByTheDayOfTheFile();
    void emptyFileIsNotKept();
    void keepsFive();
    void sameDayTwice();
    void survivesReplacement_data();
    void survivesReplacement();

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(u"some.log"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
    FollowingAppender* m_following = nullptr;
};

void LoggerTest::initTestCase()
{
    m_following = new FollowingAppender;
    m_following->setFormat(lineFormat);
    Logger::globalInstance()->registerAppender(m_following);
}

void LoggerTest::init()
{
    beginning = QDateTime::currentDateTime();
    m_folder = std::make_unique<QTemporaryDir>();
    m_following->target = std::make_unique<RollingFileAppender>(path());
    m_following->target->setDatePattern(RollingFileAppender::DatePattern::DailyRollover);
    m_following->target->setLogFilesLimit(5);
}

void LoggerTest::format_data()
{
    QTest::addColumn<QtMsgType>("type");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("line");
    const QString common = u"[./src/a.cpp=>void A::b(const QString&): 7] 100 %{line} %1 done\n"_s;
    QTest::newRow("debug") << QtDebugMsg << lineFormat << u"[2026-01-02, 03:04:05.006] [Debug  ] "_s + common;
    QTest::newRow("info") << QtInfoMsg << lineFormat << u"[2026-01-02, 03:04:05.006] [Info   ] "_s + common;
    QTest::newRow("warning") << QtWarningMsg << lineFormat << u"[2026-01-02, 03:04:05.006] [Warning] "_s + common;
    QTest::newRow("critical") << QtCriticalMsg << lineFormat << u"[2026-01-02, 03:04:05.006] [Critical] "_s + common;
    QTest::newRow("fatal") << QtFatalMsg << lineFormat << u"[2026-01-02, 03:04:05.006] [Fatal  ] "_s + common;
    QTest::newRow("no field") << QtInfoMsg << u"%{odd} %line 5% {x}"_s << u"%{odd} %line 5% {x}"_s;
    QTest::newRow("right") << QtInfoMsg << u"%{line:3}|%{time}{yyyy}"_s << u"  7|2026"_s;
}

void LoggerTest::format()
{
    QFETCH(QtMsgType, type);
    QFETCH(QString, format);
    const QMessageLogContext context("./src/a.cpp", 7, "void A::b(const QString&)", "default");
    const QString text = u"100 %{line} %1 done"_s;
    const QDateTime time(QDate(2026, 1, 2), QTime(3, 4, 5, 6));
    QTEST(formatLogMessage(format, {type, context, text, time}), "line");
}

void LoggerTest::fullSignature()
{
    int line = 0;
    Sample::report(u"zh_CN"_s, line);
    const QStringList lines = linesOf(path());
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].section(u"] "_s, 1),
        uR"([Info   ] [./tests/platform/tst_logger.cpp=>static void Sample::report(const QString&, int&): %1] )"
        uR"(gui locale:  "zh_CN")"_s.arg(line));
    QVERIFY(QDateTime::fromString(lines[0].mid(1, 24), u"yyyy-MM-dd, HH:mm:ss.zzz"_s).isValid());
}

// Lines of several threads arrive whole, none twice and none lost.
void LoggerTest::everyThread()
{
    m_following->setFormat(u"%{message}\n"_s);
    QList<QThread*> threads;
    for (int number = 0; number < 4; ++number) {
        threads << QThread::create([number] {
            for (int i = 0; i < 200; ++i) {
                qDebug("thread %d line %d", number, i);
            }
        });
        threads.last()->start();
    }
    for (QThread* thread : std::as_const(threads)) {
        thread->wait();
    }
    qDeleteAll(threads);
    m_following->setFormat(lineFormat);
    QStringList lines = linesOf(path());
    QCOMPARE(lines.size(), 800);
    QCOMPARE(lines.removeDuplicates(), 0);
    QCOMPARE(lines.filter(QRegularExpression(u"^thread [0-3] line \\d+$"_s)).size(), 800);
}

void LoggerTest::consoleGoesOnWithoutFile()
{
    // The same program again, with a path that nobody can write.
    QProcess child;
    child.setProgram(QCoreApplication::applicationFilePath());
    child.setArguments({u"--log-to"_s, u"/proc/no/such.log"_s});
    child.start();
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(child.readAllStandardError(), QByteArray("before\nafter\n"));
}

// What counts is the day on which the file was last written before this run.
void LoggerTest::rollsByTheDayOfTheFile()
{
    writeFileOfDay(path(), "three days ago\n", 3);
    qDebug("today");
    qDebug("today again");
    QCOMPARE(linesOf(path()).size(), 2);
    QCOMPARE(linesOf(path() + u'.' + dayBefore(3)), QStringList{u"three days ago"_s});
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 2);

    // Midnight passes: the file was last written on another day, and the run goes on in it.
    writeFileOfDay(path(), "before midnight\n", 1);
    qDebug("after midnight");
    QCOMPARE(linesOf(path()).size(), 2);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 2);
}

void LoggerTest::emptyFileIsNotKept()
{
    writeFileOfDay(path(), "", 1);
    qDebug("today");
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
}

void LoggerTest::keepsFive()
{
    for (int day = 2; day <= 8; ++day) {
        writeFileOfDay(path() + u'.' + dayBefore(day), "old\n", day);
    }
    writeFileOfDay(path() + u".startedFlag"_s, "ok", 9);
    writeFileOfDay(path(), "yesterday\n", 1);
    qDebug("today");
    QStringList expected{u"some.log"_s, u"some.log.startedFlag"_s};
    for (int day = 1; day <= 5; ++day) {
        expected << u"some.log."_s + dayBefore(day);
    }
    expected.sort();
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files, QDir::Name), expected);
}

// A machine whose clock was set back writes one day twice; nothing of the first time is lost.
void LoggerTest::sameDayTwice()
{
    writeFileOfDay(path() + u'.' + dayBefore(1), "first\n", 1);
    writeFileOfDay(path(), "second\n", 1);
    qDebug("today");
    QCOMPARE(linesOf(path() + u'.' + dayBefore(1)), (QStringList{u"first"_s, u"second"_s}));
    QCOMPARE(linesOf(path()).size(), 1);
}

void LoggerTest::survivesReplacement_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<int>("lines");
    QTest::newRow("edited in place") << QStringList{u"sed"_s, u"-i"_s, u"s?first?FIRST?"_s} << 2;
    QTest::newRow("removed") << QStringList{u"rm"_s} << 1;
}

void LoggerTest::survivesReplacement()
{
    QFETCH(QStringList, command);
    QFETCH(int, lines);
    qDebug("first");
    QCOMPARE(QProcess::execute(command[0], command.sliced(1) + QStringList{path()}), 0);
    qDebug("second");
    QCOMPARE(linesOf(path()).size(), lines);
    QVERIFY(linesOf(path()).last().endsWith(u"] second"_s));
}

namespace {

int logTo(const QString& path)
{
    Logger::globalInstance()->registerAppender(new ConsoleAppender);
    qDebug("before");
    Logger::globalInstance()->registerAppender(new RollingFileAppender(path));
    qDebug("after");
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--log-to"_s) {
        return logTo(arguments.value(2));
    }
    LoggerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_logger.moc"
