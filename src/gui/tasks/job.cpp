// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/job.h"

#include <algorithm>
#include <array>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

enum class Archive { IsSource, IsDestination };

struct ArchiveJob
{
    JobType type;
    QLatin1StringView operation;
    Archive archive;
};

constexpr std::array archiveJobs{
    ArchiveJob{JobType::TarCreate, "-cpf"_L1, Archive::IsDestination},
    ArchiveJob{JobType::TarExtract, "-xpf"_L1, Archive::IsSource},
    ArchiveJob{JobType::TarAppend, "-rpf"_L1, Archive::IsDestination},
};

} // namespace

JobProcess::JobProcess(QObject* parent)
    : QProcess(parent)
{
    // What tar has to say must not end it when nobody listens any more.
    setChildProcessModifier([] { ::signal(SIGPIPE, SIG_IGN); });
}

// QProcess would kill what still runs and wait for its end. As an unprivileged user it can only wait.
JobProcess::~JobProcess()
{
    setProcessState(NotRunning);
}

QProcessEnvironment jobEnvironment()
{
    QProcessEnvironment environment;
    environment.insert(u"LC_ALL"_s, u"C"_s);
    return environment;
}

QString nameOfPath(const QString& path)
{
    return path.split(u'/').constLast().simplified();
}

QString directoryOfPath(const QString& path)
{
    // Deliberate: every occurrence goes, not only the last part, so "/opt/x/opt" gives "//x/".
    return QString(path).remove(nameOfPath(path));
}

bool isNameOnlyAtEnd(const QString& path)
{
    const QString name = nameOfPath(path);
    return !name.isEmpty() && directoryOfPath(path) == path.chopped(name.size());
}

QStringList tarArguments(const QString& operation, const QString& archive)
{
    // GNU tar itself keeps members with absolute names or ".." inside the directory; never add "-P" here.
    return {u"tar"_s, u"--xattrs"_s, u"--xattrs-include=*"_s, operation, archive};
}

QStringList jobArguments(JobType type, const QString& from, const QString& to)
{
    if (type == JobType::Clone) {
        return {u"kestro-clone"_s, u"--tui"_s, from, to};
    }
    const auto* const row = std::ranges::find(archiveJobs, type, &ArchiveJob::type);
    if (row == archiveJobs.end()) {
        return {};
    }
    const bool isSource = row->archive == Archive::IsSource;
    const QString& archive = isSource ? from : to;
    const QString& entry = isSource ? to : from;
    return tarArguments(row->operation, archive) + QStringList{u"-C"_s, directoryOfPath(entry), nameOfPath(entry)};
}
