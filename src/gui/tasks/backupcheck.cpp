// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/backupcheck.h"

#include "gui/tasks/imagerecord.h"
#include "gui/tasks/toolfile.h"
#include "utils/core/command.h"
#include "utils/utils.h"

#include <QDebug>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString recordIn(const QString& image)
{
    if (!ToolFile::removeFormer(ImageRecord::name)) {
        return {};
    }
    SpawnCmd(u"sudo"_s, ImageRecord::readCommand(image));
    return QString::fromUtf8(ToolFile::take(ImageRecord::name).value_or(QByteArray()));
}

QString firstMemberOf(const QString& archive)
{
    QString text;
    QString error;
    // Ends at the first member of that name, however large the archive is.
    SpawnCmd(u"sudo"_s, {u"tar"_s, u"--occurrence=1"_s, u"-xOf"_s, archive, u"datainfo"_s}, text, error);
    return text;
}

} // namespace

bool wouldRelabel(const BackupPlan& plan)
{
    if (!QFileInfo::exists(plan.job.to)) {
        return false;
    }
    const QString record = recordIn(plan.job.to).trimmed();
    // What a backup that was cut short has left has no record either, and may go.
    const bool isOther = record.isEmpty() ? Utils::checkImageFile(plan.job.to) : record != plan.description.trimmed();
    if (isOther) {
        qWarning() << "image of something else:" << plan.job.to << record << "instead of" << plan.description;
    }
    return isOther;
}

bool isDescribedAsPlanned(const BackupPlan& plan)
{
    const QString text = plan.job.type == JobType::Clone ? recordIn(plan.job.to) : firstMemberOf(plan.job.to);
    const bool isRight = text.trimmed() == plan.description.trimmed();
    if (!isRight) {
        qWarning() << "wrong description:" << plan.job.to << text << "instead of" << plan.description;
    }
    return isRight;
}
