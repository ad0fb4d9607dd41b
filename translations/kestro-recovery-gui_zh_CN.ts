<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>备份</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>备份类型</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>保存方式</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>开始备份</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>全盘备份</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>系统备份</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>新增备份</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>系统增量备份</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>请选择备份文件的保存路径</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>正在对您的系统应用更改...</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>系统备份已准备就绪，是否立即重启并备份系统？</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>重启并备份</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>备份</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>系统克隆</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>备份与还原</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>备份系统环境和数据，还原系统状态或数据，并支持恢复出厂设置</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>备份出错，请重试</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>未找到备份</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>选择目录</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上一级</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>目录路径</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>存储设备</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>目录</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>系统盘</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>磁盘空间不足</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>备份不支持该文件系统，请选择 ext4、btrfs、xfs 或 reiserfs 格式的文件系统。</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>路径无效</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>保存位置不能在源磁盘上，请重新选择</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>备份文件无效</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>无法将数据备份到只读设备</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>该目录不能用于保存备份文件，请选择其他目录。</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>系统含有加密分区，请先解密再使用备份与还原功能。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>退出并重启</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>请勿关机或断开电源</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>立即重启</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>备份成功</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>还原成功</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>关机</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>备份失败</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>还原失败</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>备份失败，错误：%1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>还原失败，错误：%1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>确定要退出并重启电脑吗？</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>重启</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>正在备份，请稍候...</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>您的备份文件有问题</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>系统版本与备份文件不匹配，请更新系统后再还原</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>磁盘信息与备份信息不匹配，当前无法还原</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>找不到目标位置</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>备份文件</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>恢复出厂设置</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>初始备份文件不存在，无法恢复出厂设置。</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>保留个人文件和应用</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>从备份文件还原</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>备份目录</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>从还原点还原</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>还原点</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>正在对您的系统应用更改...</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>立即还原</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>初始备份文件已损坏，无法恢复出厂设置。</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>恢复出厂设置</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>保留个人文件</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>此设备上所有用户的数据将被永久清除，请确认后再继续</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>系统盘上的数据将被重置，但会保留您的个人数据。您需要创建一个与当前用户同名的帐户，之后才能访问您的个人数据。请确认后再继续。</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>确认重置</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>系统还原已准备就绪，是否立即重启并还原系统？</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>重启并还原</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>您的初始备份文件有问题</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>任务初始化失败</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>浏览...</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>目录路径</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>正在还原系统，请稍候...</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>请勿移除存储设备、关机或断开电源</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
</TS>
