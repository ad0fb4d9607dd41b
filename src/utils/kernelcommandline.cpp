// SPDX-License-Identifier: GPL-3.0-or-later
#include "kernelcommandline.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct ParameterKey
{
    QLatin1StringView prefix;
    QString CmdLineInfo::*field;
};

constexpr ParameterKey parameterKeys[] = {
    {"BOOT_IMAGE="_L1, &CmdLineInfo::bootImage},
    {"boot="_L1, &CmdLineInfo::boot},
    {"boot-from="_L1, &CmdLineInfo::bootFrom},
    {"live-media-path="_L1, &CmdLineInfo::liveMediaPath},
    {"toram="_L1, &CmdLineInfo::toram},
    {"union="_L1, &CmdLineInfo::unionType},
    {"root="_L1, &CmdLineInfo::rootUuid},
};

} // namespace

QList<KernelParameter> parseKernelParameters(const QByteArray& commandLine)
{
    QList<KernelParameter> parameters;
    for (const QByteArray& bytes : commandLine.split(' ')) {
        const QString token = QString::fromUtf8(bytes);
        const auto row = std::ranges::find_if(
            parameterKeys, [&token](const ParameterKey& key) { return token.startsWith(key.prefix); });
        if (row != std::end(parameterKeys)) {
            const bool isDevicePath = row->field == &CmdLineInfo::rootUuid && !token.contains("UUID="_L1);
            parameters.append({row->field, token.section(u'=', -1).simplified(), isDevicePath});
        }
    }
    return parameters;
}
