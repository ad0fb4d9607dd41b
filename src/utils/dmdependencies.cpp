// SPDX-License-Identifier: GPL-3.0-or-later
#include "dmdependencies.h"

#include <QHash>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// The first device in the list for each value of a field.
QHash<QString, BlockDevicePtr> firstBy(QString BlockDeviceInfo::*field, const BlockDeviceList& devices)
{
    QHash<QString, BlockDevicePtr> first;
    first.reserve(devices.size());
    for (const BlockDevicePtr& device : devices) {
        if (!first.contains((*device).*field)) {
            first.insert((*device).*field, device);
        }
    }
    return first;
}

} // namespace

void applyMapperLinks(const BlockDeviceList& devices, const QList<MapperLink>& links)
{
    const QHash<QString, BlockDevicePtr> byPath = firstBy(&BlockDeviceInfo::path, devices);
    for (const MapperLink& link : links) {
        if (const BlockDevicePtr device = byPath.value(link.target)) {
            device->mapperName = link.name;
            device->mapperPath = link.path;
        }
    }
}

QList<DmDependency> parseDmDependencies(const QString& output)
{
    // "vg-root: 2 dependencies	: (sdb1) (sda5)" gives sda5 only: the middle takes as much as it can, deliberately.
    static const QRegularExpression pattern(uR"(([^:]*)\:.*\((.*)\))"_s);
    QList<DmDependency> dependencies;
    const QStringList lines = output.split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = pattern.match(line.trimmed());
        if (match.hasMatch()) {
            dependencies.append({match.captured(1).trimmed(), match.captured(2).trimmed()});
        }
    }
    return dependencies;
}

void applyDmDependencies(const BlockDeviceList& devices, const QList<DmDependency>& dependencies)
{
    const QHash<QString, BlockDevicePtr> byKname = firstBy(&BlockDeviceInfo::kname, devices);
    const QHash<QString, BlockDevicePtr> byMapperName = firstBy(&BlockDeviceInfo::mapperName, devices);
    for (const DmDependency& line : dependencies) {
        const BlockDevicePtr parent = byKname.value(line.dependency);
        const BlockDevicePtr child = line.mapping.isEmpty() ? BlockDevicePtr() : byMapperName.value(line.mapping);
        if (parent && child) {
            child->pkname = parent->kname;
        }
    }
}
