// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

/// One line of an fstab file (fstab(5)). Nothing is unescaped or converted: an octal escape such as "\040" stays.
struct FSTabInfo
{
    bool isComment = false;             ///< the trimmed line begins with "#"
    bool isEmpty = false;               ///< the trimmed line is empty
    QString device;                     ///< a "UUID=" reference, a device path or a bind source
    QString mountPoint;                 ///< an absolute path, or "none"
    QString type;                       ///< file-system type
    QString options;                    ///< mount options, separated by commas
    QString dump = QStringLiteral("0"); ///< fifth field
    QString pass = QStringLiteral("0"); ///< sixth field
    QString text;                       ///< the line as read; empty for an empty line
};

using FSTabInfoPtr = QSharedPointer<FSTabInfo>;

/// The lines of one fstab file in file order, comments and empty lines included. Skip entries whose `device` is empty.
using FSTabInfoList = QList<FSTabInfoPtr>;

/// Reads the fstab of the installed system and answers questions about it. Never writes one.
class FSTab
{
public:
    /// All lines of the file; empty when it does not exist (with a warning) or cannot be opened.
    static FSTabInfoList getFSTabFromFile(const QString& fileName);

    /// The lines of an fstab's content. Only a line of exactly six fields has its fields filled: a mount with fewer or
    /// more is never treated as one. Content that ends in a line break ends with an empty entry.
    [[nodiscard]] static FSTabInfoList parseFSTab(const QByteArray& content);

    /// The UUID that an entry's "UUID=" device names; empty for every other kind of device and for null.
    [[nodiscard]] static QString getUUID(const FSTabInfoPtr& entry);

    /// The first entry that names the UUID, or null. An empty UUID names nothing, here and below.
    [[nodiscard]] static FSTabInfoPtr findByUUID(const FSTabInfoList& list, const QString& uuid);

    /// Whether the fstab under @p rootDir mounts the UUID exactly at "/".
    [[nodiscard]] static bool isRootUUID(const QString& uuid, const QString& rootDir);

    /// Whether the entry is a bind mount; null is none.
    [[nodiscard]] static bool isBind(const FSTabInfoPtr& entry);

    /// Whether some bind entry names the UUID.
    [[nodiscard]] static bool hasBindForUUID(const FSTabInfoList& list, const QString& uuid);

    /// The UUIDs that bind entries name, in file order.
    [[nodiscard]] static QStringList getBindUUIDs(const FSTabInfoList& list);
};
