// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/FsTab.h"
#include "utils/blkid.h"
#include "utils/partitioncheckitem.h"
#include "utils/restorebaseinfo.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>

/// A worker thread that does one job of the live restore interface and reports by one signal.
///
/// Set what the job needs, connect, then start(); a worker is used once. Receivers in other threads get the signal
/// queued. Nothing but stop() may be called while it runs.
class AsyncTask : public QThread
{
    Q_OBJECT

public:
    /// The jobs, by the numbers that callers pass.
    enum Mode : int {
        FixPartition = 1,       ///< repairs the device with fsck
        PartitionCheckList = 2, ///< lists the partitions to check; fsck looks at each
        WaitForRestoreGui = 3,  ///< waits for the flag file of the started restore environment
        LiveRestorePage = 4,    ///< gathers the facts that the restore page shows
        SystemRepairTool = 5,   ///< runs the system repair tool to its end
    };

    /// @param mode a Mode; any other number makes a worker that does nothing
    explicit AsyncTask(int mode);

    /// Stops a waiting job, and waits for the end of any other.
    ~AsyncTask() override;

    /// The device that mode 1 repairs.
    void setDevicePath(const QString& path) { m_devicePath = path; }

    /// The file-system UUID of the installed system's root, by which modes 2 and 4 mount it.
    void setSystemUUID(const QString& uuid) { m_systemUUID = uuid; }

    /// Where the installed system's root is mounted already; mode 2 then neither mounts nor unmounts it.
    void setRootMountPoint(const QString& path) { m_rootMountPoint = path; }

    /// The kind of boot environment (Utils::getBootEnvironment()). Mode 2 determines it anew, but only when it was set
    /// to anything but -1.
    void setBootEnvKind(int kind) { m_bootEnvKind = kind; }

    /// Ends the wait of mode 3 within a second, without its signal, unless what it waits for has come already. May be
    /// called from any thread.
    void stop() { m_stopFlag = true; }

    /// Fills the list of partitions to check: file systems first, in blkid's order, then partitions without one.
    /// @param kind of boot environment; in the live systems (2 and 3) no item is classified
    /// @return false when the installed system's root cannot be mounted: the items of file systems are in the list
    /// then, not classified, and the others are not
    bool GetPartitionCheckItemList(
        QList<PartitionCheckItem>& items, int kind, const QList<Utils::BlkIdInfo>& blkidList);

Q_SIGNALS:
    void fixPartitionSuccess();
    void fixPartitionFailed(QString error); ///< with what fsck printed on standard error
    void showSystemRestoreFinish();
    void getPartitionCheckItemFinish(QString itemListJson); ///< an object with the array "PartitionCheckItemList"
    void initLiveRestorePageFinish(QString data);           ///< a RestoreBaseInfo as JSON text
    void initSystemRepairToolPageFinish();
    void initSystemRepairToolPageFailed(QString error); ///< with what the tool printed on standard error

protected:
    void run() override;

private:
    void fixPartition();
    void getPartitionCheckItems();
    void waitForStartedFlag();
    void initLiveRestorePageInfo();
    void initSystemRepairToolPage();

    [[nodiscard]] QString fstabPath() const;
    [[nodiscard]] bool loadSystemFstab();
    void addSystemFacts(RestoreBaseInfo& info);
    void addRecoveryFacts(RestoreBaseInfo& info);

    int m_mode;
    QString m_devicePath;
    QString m_systemUUID;
    QString m_rootMountPoint;
    QString m_recoveryUUID;
    QStringList m_fstabUUIDs;
    FSTabInfoList m_fstabList;
    bool m_mountedByMe = false;
    std::atomic_bool m_stopFlag = false;
    int m_bootEnvKind = -1;
};
