// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/job.h"
#include "gui/tasks/progress.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

class JobsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arguments_data();
    void arguments();
    void pathParts_data();
    void pathParts();
    void percentsAtStart_data();
    void percentsAtStart();
    void clonePercents_data();
    void clonePercents();
    void roundedFitsAnInt();
    void highestNeverFalls();
};

void JobsTest::arguments_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("expected");
    QTest::newRow("clone") << 0 << u"kestro-clone|--tui|/a/from/opt|/b/to/var"_s;
    QTest::newRow("create") << 1 << u"tar|--xattrs|--xattrs-include=*|-cpf|/b/to/var|-C|/a/from/|opt"_s;
    QTest::newRow("extract") << 2 << u"tar|--xattrs|--xattrs-include=*|-xpf|/a/from/opt|-C|/b/to/|var"_s;
    QTest::newRow("append") << 3 << u"tar|--xattrs|--xattrs-include=*|-rpf|/b/to/var|-C|/a/from/|opt"_s;
    QTest::newRow("below the enumeration") << -1 << QString();
    QTest::newRow("above the enumeration") << 4 << QString();
}

void JobsTest::arguments()
{
    QFETCH(const int, type);
    const QStringList result = jobArguments(static_cast<JobType>(type), u"/a/from/opt"_s, u"/b/to/var"_s);
    QTEST(result.join(u'|'), "expected");
}

void JobsTest::pathParts_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<bool>("isOnlyAtEnd");
    QTest::newRow("plain") << u"/tmp/arx/root/opt"_s << u"opt"_s << u"/tmp/arx/root/"_s << true;
    QTest::newRow("name occurs earlier") << u"/opt/x/opt"_s << u"opt"_s << u"//x/"_s << false;
    QTest::newRow("name within a part") << u"/media/optical/opt"_s << u"opt"_s << u"/media/ical/"_s << false;
    QTest::newRow("other case stays") << u"/Opt/opt"_s << u"opt"_s << u"/Opt/"_s << true;
    QTest::newRow("ends in a slash") << u"/media/x/"_s << QString() << u"/media/x/"_s << false;
    QTest::newRow("two inner blanks") << u"/media/a  b"_s << u"a b"_s << u"/media/a  b"_s << false;
    QTest::newRow("doubled slash") << u"/media/x//opt.tar"_s << u"opt.tar"_s << u"/media/x//"_s << true;
}

void JobsTest::pathParts()
{
    QFETCH(const QString, path);
    QTEST(nameOfPath(path), "name");
    QTEST(directoryOfPath(path), "directory");
    QTEST(isNameOnlyAtEnd(path), "isOnlyAtEnd");
}

void JobsTest::percentsAtStart_data()
{
    QTest::addColumn<bool>("onlyClones");
    QTest::addColumn<int>("jobs");
    QTest::addColumn<QList<int>>("expected");
    // A mixed task deliberately climbs twice as fast for two jobs, past 100 where there are few.
    QTest::newRow("one") << false << 1 << QList<int>{198};
    QTest::newRow("two") << false << 2 << QList<int>{99, 198};
    QTest::newRow("three") << false << 3 << QList<int>{66, 132, 99};
    QTest::newRow("four") << false << 4 << QList<int>{49, 99, 99, 99};
    QTest::newRow("five") << false << 5 << QList<int>{39, 79, 99, 99, 99};
    QTest::newRow("eight") << false << 8 << QList<int>{24, 49, 99, 99, 99, 99, 99, 99};
    QTest::newRow("images only") << true << 4 << QList<int>{24, 49, 74, 99};
}

void JobsTest::percentsAtStart()
{
    QFETCH(const bool, onlyClones);
    QFETCH(const int, jobs);
    QList<int> percents;
    for (int job = 1; job <= jobs; ++job) {
        const float share = Progress::fraction(onlyClones, static_cast<float>(job), static_cast<float>(jobs));
        percents.append(Progress::percentAtStart(share));
    }
    QTEST(percents, "expected");
}

void JobsTest::clonePercents_data()
{
    QTest::addColumn<QByteArray>("chunk");
    QTest::addColumn<float>("expected");
    const auto row = [](const char* chunk, float expected) { QTest::newRow(chunk) << QByteArray(chunk) << expected; };
    row("12.5", 12.5F);
    row("done: 12.5", 12.5F);
    row("45.67%", 45.6F);
    row("99.999999", 99.9F);
    row("10 20.00%", 20.0F);
    row("100.00%", 100.0F);
    row("100", 100.0F);
    // Four characters with a "%" are no number.
    row("100%", 0.0F);
    row("45%", 0.0F);
    row("5.0%", 0.0F);
    row("5%\n", 0.0F);
    row("50.00% ", 0.0F);
    row("12,5", 0.0F);
    // What one reading brings begins and ends anywhere.
    row("cloned 12.34% 56.78%", 56.7F);
    row("cloned 12.34% 5", 5.0F);
    row("6.78%", 6.78F);
    row("", 0.0F);
    row("\xff\xfe 7", 7.0F);
    row("\xff\xfe\xfd", 0.0F);
}

void JobsTest::clonePercents()
{
    QFETCH(const QByteArray, chunk);
    QTEST(Progress::clonePercent(chunk), "expected");
}

void JobsTest::roundedFitsAnInt()
{
    QCOMPARE(Progress::rounded(1.0F), 1);
    QCOMPARE(Progress::rounded(33.5F), 34);
    QCOMPARE(Progress::rounded(33.4F), 33);
    QCOMPARE(Progress::rounded(-5.0F), 0);
    QCOMPARE(Progress::rounded(INFINITY), 2147483520);
    QCOMPARE(Progress::rounded(1e30F), 2147483520);
}

void JobsTest::highestNeverFalls()
{
    // One story, because the value lives as long as the process.
    QCOMPARE(Progress::highest(0.0F), 1.0F);
    QCOMPARE(Progress::highest(40.0F), 40.0F);
    QCOMPARE(Progress::highest(12.0F), 40.0F);
    QCOMPARE(Progress::highest(std::nanf("")), 40.0F);
    QCOMPARE(Progress::highest(41.0F), 41.0F);
}

QTEST_APPLESS_MAIN(JobsTest)

#include "tst_jobs.moc"
