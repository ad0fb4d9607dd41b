// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>

/// A folder of fake external programs, first on PATH as long as the object lives.
///
/// Each call is recorded and answered as the test prepared it. A call that nobody prepared ends with exit code 127 and
/// fails the test, at the latest when the object is destroyed. "sudo" is always a fake: it answers as the program in
/// its first argument was told to, with or without an absolute path, and is recorded as one call. A program that the
/// product starts by its absolute path and without sudo is faked with installAt(). What only root may do is told with
/// needsRoot(), because a rule without "sudo" answers a direct call as well.
///
/// The fakes know their folder from their own path, so they work in an empty environment too.
class FakePrograms
{
public:
    /// How a fake answers. All parts are optional; they take effect in the order in which they stand here.
    struct Reply
    {
        int delayMs = 0;     ///< waits before everything else
        QByteArray out = {}; ///< bytes for standard output, as they are
        QByteArray err = {}; ///< bytes for standard error, as they are
        QByteArray snippet =
            {};           ///< bash code, run with the call's arguments as "$@" ($0 is the program) and real programs
        int exitCode = 0; ///< exit code; with a snippet that fails, the snippet's own one is used instead
        int signal = 0;   ///< when not 0 the program kills itself with this signal
    };

    FakePrograms();
    ~FakePrograms();
    FakePrograms(const FakePrograms&) = delete;
    FakePrograms& operator=(const FakePrograms&) = delete;

    /// Prepares an answer for every call that begins with the given program and arguments, for example
    /// {"kestro-clone", "--kim-info"}. A rule of more words goes before one of fewer; {"sudo", "tar"} holds only for
    /// the call through sudo and goes before {"tar"}. The same words given again add a successive reply: the first
    /// call gets the first one, the last one stays.
    void reply(const QStringList& call, const Reply& reply);

    /// As above, for a program that succeeds with this output.
    void reply(const QStringList& call, const QByteArray& out = {});

    /// Lets the tools of the device inventory list nothing.
    void listNoDevices();

    /// Lets calls that begin so run the real program. Only inside the sandbox, and never for a program that acts on
    /// the machine beyond the file system (reboot, poweroff, mkswap, systemctl, kestro-clone, …): that ends the
    /// process.
    void passThrough(const QStringList& call);

    /// Makes a call that begins so, without sudo, count as one that nobody prepared, whatever rule answers it.
    void needsRoot(const QStringList& call);

    /// Puts a fake at an absolute path of the sandbox; its calls carry that path as the program.
    void installAt(const QString& absolutePath);

    /// The recorded calls in the order in which they began, each as program and arguments.
    [[nodiscard]] QList<QStringList> calls() const;

    /// calls(), each joined by single blanks.
    [[nodiscard]] QStringList callLines() const;

    /// The environment of a recorded call as sorted "NAME=value" lines, exactly as the program was started with.
    /// @param call index into calls()
    [[nodiscard]] QStringList environment(qsizetype call) const;

    /// The calls that nobody prepared, as in callLines(). Asking for them leaves the judgement to the caller: the
    /// destructor then no longer fails the test for those.
    [[nodiscard]] QStringList unexpectedCalls();

    /// Forgets the recorded calls; prepared replies stay where they are in their succession.
    void forgetCalls();

private:
    [[nodiscard]] QString path(const QString& relative) const { return m_folder.filePath(relative); }
    [[nodiscard]] QStringList callFolders() const;
    [[nodiscard]] QStringList unexpectedLines() const;
    [[nodiscard]] bool lacksSudo(const QStringList& call) const;
    void failOfUnexpected() const;
    [[nodiscard]] QString ruleFolder(const QStringList& call);
    void addProgram(const QString& name) const;

    QTemporaryDir m_folder;
    QByteArray m_formerPath;
    QList<QStringList> m_rules;
    QList<QStringList> m_needRoot;
    QStringList m_judged;
};
