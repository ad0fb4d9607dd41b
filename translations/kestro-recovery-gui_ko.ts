<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>백업</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>백업 유형</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>저장 방법</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>백업하기</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>전체 백업</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>시스템 백업</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>새 백업</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>시스템 증분 백업</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>백업 파일을 저장할 경로를 선택하세요</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>시스템에 변경 사항을 적용하는 중...</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>시스템 백업 준비가 끝났습니다. 지금 다시 시작하여 시스템을 백업하시겠습니까?</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>다시 시작하고 백업</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>백업</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>복원</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>시스템 복제</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>백업 및 복원</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>시스템 환경과 데이터를 백업하고, 시스템 상태나 데이터를 복원하며, 공장 초기화를 제공합니다</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>백업 오류가 발생했습니다. 다시 시도하세요</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>백업을 찾을 수 없습니다</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>디렉터리 선택</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>위로</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>디렉터리 경로</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>미디어</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>디렉터리</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>선택</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>시스템 디스크</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>디스크 공간이 부족합니다</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>이 파일 시스템은 백업에 사용할 수 없습니다. ext4, btrfs, xfs, reiserfs 형식 중 하나를 선택하세요.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>잘못된 경로</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>원본 디스크에는 저장할 수 없습니다. 다른 위치를 선택하세요</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>백업 파일이 올바르지 않습니다</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>읽기 전용 장치에는 백업할 수 없습니다</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>이 디렉터리에는 백업 파일을 저장할 수 없습니다. 다른 디렉터리를 선택하세요.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>시스템에 암호화된 파티션이 있습니다. 백업 및 복원 기능을 사용하기 전에 암호를 해제하세요.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>종료하고 다시 시작</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>컴퓨터를 끄거나 전원을 뽑지 마세요</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>지금 다시 시작</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>백업 완료</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>복원 완료</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>시스템 종료</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>백업 실패</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>복원 실패</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>백업 실패, 오류: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>복원 실패, 오류: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>종료하고 컴퓨터를 다시 시작하시겠습니까?</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>다시 시작</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>백업하는 중입니다. 잠시 기다려 주세요...</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>백업 파일에 문제가 있습니다</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>시스템 버전이 백업 파일과 맞지 않습니다. 시스템을 업데이트한 후 다시 복원하세요</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>디스크 정보와 백업 정보가 일치하지 않아 지금은 복원할 수 없습니다</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>대상 위치를 찾을 수 없습니다</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>백업 파일</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>시간</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>복원</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>공장 초기화</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>초기 백업 파일이 없어 시스템을 공장 초기화할 수 없습니다.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>개인 파일 및 앱 유지</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>백업 파일에서 복원</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>백업 디렉터리</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>복원 지점에서 복원</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>복원 지점</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>시스템에 변경 사항을 적용하는 중...</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>지금 복원</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>초기 백업 파일이 손상되어 시스템을 공장 초기화할 수 없습니다.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>공장 초기화</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>개인 파일 유지</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>이 장치에 있는 모든 사용자의 데이터가 영구적으로 지워집니다. 계속하기 전에 확인하세요</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>시스템 디스크의 데이터는 초기화되지만 개인 데이터는 유지됩니다. 나중에 개인 데이터를 사용하려면 현재 사용자와 같은 이름의 계정을 만들어야 합니다. 계속하기 전에 확인하세요.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>확인 및 초기화</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>시스템 복원 준비가 끝났습니다. 지금 다시 시작하여 시스템을 복원하시겠습니까?</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>다시 시작하고 복원</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>초기 백업 파일에 문제가 있습니다</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>작업을 준비하지 못했습니다</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>찾아보기...</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>디렉터리 경로</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>진행률</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>시스템을 복원하는 중입니다. 잠시 기다려 주세요...</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>저장 장치를 제거하거나 컴퓨터를 끄거나 전원을 뽑지 마세요</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>진행률</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
</TS>
