// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakePrograms.h"
#include "sandbox/Sandbox.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

// Faked from the start, so that none of them can run for real because a test forgot it.
constexpr std::array fakedAlways{"sudo", "reboot", "poweroff", "shutdown", "halt", "mkswap", "swapon", "swapoff",
    "systemctl", "kestro-clone", "mount", "umount", "blkid", "lsblk", "dmsetup", "df", "fsck", "chattr", "setfacl",
    "tar", "cp", "rm", "mv", "dd", "sed", "mkdir", "pkexec", "xrandr", "cryptsetup", "vgchange", "lvs", "wipefs",
    "partprobe", "sfdisk", "parted", "losetup", "udisksctl", "grub-install", "update-grub", "efibootmgr", "chroot"};

constexpr std::array neverReal{"reboot", "poweroff", "shutdown", "halt", "mkswap", "swapon", "swapoff", "systemctl",
    "kestro-clone", "dd", "wipefs", "partprobe", "sfdisk", "parted", "losetup", "cryptsetup", "dmsetup", "udisksctl",
    "grub-install", "efibootmgr"};

void makeFolderOrDie(const QString& path)
{
    if (!QDir().mkpath(path)) {
        qFatal("cannot make %s", qPrintable(path));
    }
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// NUL ends each piece; an empty piece counts.
QStringList splitAtNul(const QByteArray& bytes)
{
    QStringList pieces;
    for (const QByteArray& piece : bytes.split('\0')) {
        pieces << QString::fromUtf8(piece);
    }
    pieces.removeLast();
    return pieces;
}

QByteArray joinWithNul(const QStringList& words)
{
    QByteArray bytes;
    for (const QString& word : words) {
        bytes += word.toUtf8() + '\0';
    }
    return bytes;
}

} // namespace

FakePrograms::FakePrograms()
    : m_formerPath(qgetenv("PATH"))
{
    for (const char* folder : {"bin", "calls", "rules"}) {
        makeFolderOrDie(path(QString::fromLatin1(folder)));
    }
    if (!QFile::copy(QStringLiteral(KESTRO_FAKE_PROGRAM), path(u"fake-program"_s))) {
        qFatal("cannot copy the fake program");
    }
    for (const char* name : fakedAlways) {
        addProgram(QString::fromLatin1(name));
    }
    qputenv("PATH", path(u"bin"_s).toUtf8() + ':' + m_formerPath);
}

FakePrograms::~FakePrograms()
{
    qputenv("PATH", m_formerPath);
    failOfUnexpected();
}

void FakePrograms::reply(const QStringList& call, const Reply& reply)
{
    const QString rule = ruleFolder(call);
    const QString folder =
        rule + u'/' + QString::number(QDir(rule).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    makeFolderOrDie(folder);
    writeWholeFile(folder + u"/ending"_s,
        QByteArray::number(reply.delayMs / 1000.0) + ' ' + QByteArray::number(reply.exitCode) + ' '
            + QByteArray::number(reply.signal) + '\n');
    writeWholeFile(folder + u"/out"_s, reply.out);
    writeWholeFile(folder + u"/err"_s, reply.err);
    writeWholeFile(folder + u"/snippet"_s, reply.snippet);
}

void FakePrograms::reply(const QStringList& call, const QByteArray& out)
{
    reply(call, Reply{.out = out});
}

void FakePrograms::listNoDevices()
{
    for (const QString& program : {u"lsblk"_s, u"blkid"_s, u"dmsetup"_s, u"df"_s, u"ls"_s}) {
        reply({program});
    }
}

void FakePrograms::passThrough(const QStringList& call)
{
    Sandbox::requireInside();
    const QStringList real = call.first() == u"sudo"_s ? call.mid(1) : call;
    const QByteArray program = real.isEmpty() ? QByteArray() : QFileInfo(real.first()).fileName().toLatin1();
    if (program.isEmpty() || std::find(neverReal.begin(), neverReal.end(), program) != neverReal.end()) {
        qFatal("refused: \"%s\" never runs for real in a test", qPrintable(call.join(u' ')));
    }
    writeWholeFile(ruleFolder(call) + u"/pass"_s, {});
}

void FakePrograms::needsRoot(const QStringList& call)
{
    m_needRoot << call;
}

void FakePrograms::installAt(const QString& absolutePath)
{
    Sandbox::requireInside();
    makeFolderOrDie(QFileInfo(absolutePath).path());
    if (!QFile::link(path(u"fake-program"_s), absolutePath)) {
        qFatal("cannot make %s", qPrintable(absolutePath));
    }
}

QList<QStringList> FakePrograms::calls() const
{
    QList<QStringList> calls;
    for (const QString& folder : callFolders()) {
        calls << splitAtNul(readAll(folder + u"/words"_s));
    }
    return calls;
}

QStringList FakePrograms::callLines() const
{
    QStringList lines;
    for (const QStringList& call : calls()) {
        lines << call.join(u' ');
    }
    return lines;
}

QStringList FakePrograms::environment(qsizetype call) const
{
    QStringList lines = splitAtNul(readAll(callFolders().at(call) + u"/environ"_s));
    lines.sort();
    return lines;
}

QStringList FakePrograms::unexpectedCalls()
{
    m_judged = unexpectedLines();
    return m_judged;
}

void FakePrograms::forgetCalls()
{
    // A call that nobody prepared must not be forgotten unseen.
    failOfUnexpected();
    m_judged.clear();
    QDir(path(u"calls"_s)).removeRecursively();
    makeFolderOrDie(path(u"calls"_s));
}

QStringList FakePrograms::callFolders() const
{
    QStringList folders;
    const QDir calls(path(u"calls"_s));
    for (const QString& name : calls.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        folders << calls.filePath(name);
    }
    return folders;
}

QStringList FakePrograms::unexpectedLines() const
{
    QStringList lines;
    for (const QString& folder : callFolders()) {
        const QStringList call = splitAtNul(readAll(folder + u"/words"_s));
        if (QFile::exists(folder + u"/unexpected"_s) || lacksSudo(call)) {
            lines << call.join(u' ');
        }
    }
    return lines;
}

bool FakePrograms::lacksSudo(const QStringList& call) const
{
    return std::any_of(m_needRoot.begin(), m_needRoot.end(),
        [&call](const QStringList& beginning) { return call.first(qMin(call.size(), beginning.size())) == beginning; });
}

void FakePrograms::failOfUnexpected() const
{
    const QStringList unexpected = unexpectedLines();
    if (unexpected.size() > m_judged.size()) {
        QTest::qFail(qPrintable(u"calls that nobody prepared:\n"_s + unexpected.join(u'\n')), __FILE__, __LINE__);
    }
}

QString FakePrograms::ruleFolder(const QStringList& call)
{
    if (call.isEmpty()) {
        qFatal("a call needs at least its program");
    }
    if (!m_rules.contains(call)) {
        m_rules << call;
    }
    QString folder = path(u"rules/%1"_s.arg(m_rules.indexOf(call)));
    makeFolderOrDie(folder);
    writeWholeFile(folder + u"/words"_s, joinWithNul(call));
    if (!call.first().contains(u'/')) {
        addProgram(call.first());
    }
    return folder;
}

void FakePrograms::addProgram(const QString& name) const
{
    const QString link = path(u"bin/"_s + name);
    if (!QFileInfo(link).isSymLink() && !QFile::link(path(u"fake-program"_s), link)) {
        qFatal("cannot make %s", qPrintable(link));
    }
}
