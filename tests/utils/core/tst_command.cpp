// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/command.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class CommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resultAndOutput_data();
    void resultAndOutput();
    void argumentsAreNotForAShell();
    void allTriesFail();
    void secondTrySucceeds();
};

void CommandTest::resultAndOutput_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<bool>("succeeds");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error");

    const auto shell = [](const char* name, const QString& script, bool ok, const QString& out, const QString& err) {
        QTest::newRow(name) << u"/bin/sh"_s << QStringList{u"-c"_s, script} << ok << out << err;
    };
    shell("exit 0", u"echo out"_s, true, u"out\n"_s, {});
    shell("exit 1 keeps its output", u"echo out; echo err >&2; exit 1"_s, false, u"out\n"_s, u"err\n"_s);
    shell("standard error and exit 0", u"echo fine >&2"_s, true, {}, u"fine\n"_s);
    shell("no newline", u"printf abc"_s, true, u"abc"_s, {});
    shell("binary bytes", u"printf '\\377a'"_s, true, u"\uFFFDa"_s, {});
    shell("killed after printing", u"echo all; kill -9 $$"_s, false, u"all\n"_s, {});
    QTest::newRow("cannot be started") << u"/nonexistent/program"_s << QStringList{} << false << QString() << QString();
    QTest::newRow("no program name") << QString() << QStringList{} << false << QString() << QString();
}

void CommandTest::resultAndOutput()
{
    QFETCH(QString, program);
    QFETCH(QStringList, args);
    QFETCH(bool, succeeds);
    QFETCH(QString, output);
    QFETCH(QString, error);

    QString out = u"kept "_s;
    QString err = u"kept too "_s;
    QCOMPARE(SpawnCmd(program, args, out, err), succeeds);
    QCOMPARE(out, u"kept "_s + output);
    QCOMPARE(err, u"kept too "_s + error);

    QString outputOnly;
    QCOMPARE(SpawnCmd(program, args, outputOnly), succeeds);
    QCOMPARE(outputOnly, output);
    QCOMPARE(SpawnCmd(program, args), succeeds);
}

void CommandTest::argumentsAreNotForAShell()
{
    QString out;
    QVERIFY(SpawnCmd(u"printf"_s, {u"%s|"_s, u"$(reboot)"_s, u"a b"_s, u"*"_s}, out));
    QCOMPARE(out, u"$(reboot)|a b|*|"_s);
}

void CommandTest::allTriesFail()
{
    const QStringList failing{u"-c"_s, u"echo x >&2; exit 1"_s};
    QString out;
    QString err;
    QVERIFY(!SpawnCmd(u"/bin/sh"_s, failing, out, err, 0));
    QCOMPARE(err, QString());

    for (const char* message : {R"("x\n")", "try again!!!!!", R"("x\nx\n")", "try again!!!!!"}) {
        QTest::ignoreMessage(QtDebugMsg, message);
    }
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!SpawnCmd(u"/bin/sh"_s, failing, out, err, 2));
    QCOMPARE(err, u"x\nx\n"_s);
    QVERIFY(timer.elapsed() >= 1990); // deliberate: it sleeps after the last attempt too
}

void CommandTest::secondTrySucceeds()
{
    const QTemporaryDir folder;
    const QString script = u"echo out; [ -e \"$0\" ] || { : >\"$0\"; echo x >&2; exit 1; }"_s;
    QTest::ignoreMessage(QtDebugMsg, R"("x\n")");
    QTest::ignoreMessage(QtDebugMsg, "try again!!!!!");
    QString out;
    QString err;
    QVERIFY(SpawnCmd(u"/bin/sh"_s, {u"-c"_s, script, folder.filePath(u"mark"_s)}, out, err, 3));
    QCOMPARE(out, u"out\nout\n"_s);
    QCOMPARE(err, u"x\n"_s);
}

QTEST_GUILESS_MAIN(CommandTest)
#include "tst_command.moc"
