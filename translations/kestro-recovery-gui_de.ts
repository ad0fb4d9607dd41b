<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>Sicherung</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>Art der Sicherung</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>Speicherart</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>Vollständige Sicherung</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>Systemsicherung</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>Neue Sicherung</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>Inkrementelle Systemsicherung</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>Pfad für die Sicherungsdateien wählen</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Änderungen werden auf Ihr System angewendet …</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>Die Systemsicherung ist vorbereitet. Möchten Sie jetzt neu starten und Ihr System sichern?</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>Neu starten und sichern</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>Sicherung</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellung</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>Systemklon</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>Sicherung und Wiederherstellung</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>Systemumgebung und Daten sichern, Systemzustand oder Daten wiederherstellen und auf Werkseinstellungen zurücksetzen</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>Fehler bei der Sicherung, bitte versuchen Sie es erneut</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>Keine Sicherungen gefunden</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>Verzeichnis wählen</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Pfad des Verzeichnisses</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Datenträger</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Verzeichnisse</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>Systemdatenträger</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>Nicht genügend Speicherplatz</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>Das Dateisystem eignet sich nicht für Sicherungen. Bitte wählen Sie eines im Format ext4, btrfs, xfs oder reiserfs.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>Ungültiger Pfad</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>Der Speicherort darf nicht auf dem zu sichernden Datenträger liegen, bitte wählen Sie einen anderen</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>Die Sicherungsdatei ist ungültig</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>Auf das schreibgeschützte Gerät können keine Daten gesichert werden</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>In diesem Verzeichnis können keine Sicherungsdateien gespeichert werden, bitte wählen Sie ein anderes.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>Das System enthält eine verschlüsselte Partition. Bitte entschlüsseln Sie diese, bevor Sie Sicherung und Wiederherstellung verwenden.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>Beenden und neu starten</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>Schalten Sie Ihren Rechner nicht aus und trennen Sie ihn nicht vom Strom</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>Jetzt neu starten</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>Sicherung erfolgreich</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>Wiederherstellung erfolgreich</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>Ausschalten</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>Sicherung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>Wiederherstellung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>Sicherung fehlgeschlagen, Fehler: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>Wiederherstellung fehlgeschlagen, Fehler: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>Möchten Sie wirklich beenden und Ihren Rechner neu starten?</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Neu starten</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>Sicherung läuft, bitte warten …</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>Mit Ihrer Sicherungsdatei stimmt etwas nicht</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>Ihre Systemversion passt nicht zur Sicherungsdatei. Bitte aktualisieren Sie das System und versuchen Sie die Wiederherstellung erneut</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>Die Angaben zu Ihrem Datenträger stimmen nicht mit denen der Sicherung überein, daher ist jetzt keine Wiederherstellung möglich</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>Der Zielort wurde nicht gefunden</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>Sicherungsdatei</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellung</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>Auf Werkseinstellungen zurücksetzen</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>Es gibt keine anfängliche Sicherung, daher kann Ihr System nicht auf Werkseinstellungen zurückgesetzt werden.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>Persönliche Dateien und Anwendungen behalten</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>Aus Sicherungsdateien wiederherstellen</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>Sicherungsverzeichnis</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>Aus einem Wiederherstellungspunkt wiederherstellen</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>Wiederherstellungspunkte</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Änderungen werden auf Ihr System angewendet …</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>Jetzt wiederherstellen</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>Die anfängliche Sicherung ist beschädigt, daher kann Ihr System nicht auf Werkseinstellungen zurückgesetzt werden.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>Auf Werkseinstellungen zurücksetzen</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>Persönliche Dateien behalten</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>Die Daten aller Benutzer auf diesem Gerät werden endgültig gelöscht. Bitte bestätigen Sie, bevor Sie fortfahren</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>Die Daten auf Ihrem Systemdatenträger werden zurückgesetzt, Ihre persönlichen Daten bleiben erhalten. Damit Sie später darauf zugreifen können, müssen Sie ein Konto mit dem jetzigen Benutzernamen anlegen. Bitte bestätigen Sie, bevor Sie fortfahren.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>Bestätigen und zurücksetzen</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>Die Systemwiederherstellung ist vorbereitet. Möchten Sie jetzt neu starten und Ihr System wiederherstellen?</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>Neu starten und wiederherstellen</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>Mit Ihrer anfänglichen Sicherung stimmt etwas nicht</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>Die Aufgabe konnte nicht vorbereitet werden</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen …</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Pfad des Verzeichnisses</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>Ihr System wird wiederhergestellt, bitte warten …</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>Entfernen Sie kein Speichergerät und schalten Sie Ihren Rechner nicht aus</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
</TS>
