<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>Copia de seguridad</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>Tipo de copia de seguridad</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>Método de guardado</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>Hacer copia</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>Copia de seguridad completa</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>Copia de seguridad del sistema</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>Nueva copia de seguridad</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>Copia incremental del sistema</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>Elija dónde guardar los archivos de la copia</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Aplicando los cambios en el sistema…</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>La copia de seguridad del sistema está preparada. ¿Desea reiniciar y hacer la copia ahora?</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>Reiniciar y hacer la copia</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>Copia de seguridad</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restauración</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>Clonación del sistema</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>Copia de seguridad y restauración</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>Haga copias del entorno y los datos del sistema, restaure su estado o sus datos y recupere la configuración de fábrica</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>Error al hacer la copia de seguridad, inténtelo de nuevo</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>No se encontraron copias de seguridad</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>Elegir un directorio</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Ruta del directorio</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Soportes</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Directorios</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Elegir</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>Disco del sistema</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>Espacio en disco insuficiente</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>El sistema de archivos no es apto para copias de seguridad. Elija uno en formato ext4, btrfs, xfs o reiserfs.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>Ruta no válida</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>La copia no se puede guardar en el disco de origen, elija otra ubicación</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>El archivo de copia de seguridad no es válido</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>No se pueden guardar copias en un dispositivo de solo lectura</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>Este directorio no se puede usar para guardar copias de seguridad, elija otro.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>El sistema contiene una partición cifrada. Descífrela antes de usar la copia de seguridad y la restauración.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>Salir y reiniciar</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>No apague ni desenchufe el equipo</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>Reiniciar ahora</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>Copia de seguridad correcta</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>Restauración correcta</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>Apagar</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>Error en la copia de seguridad</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>Error en la restauración</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>La copia de seguridad ha fallado, error: %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>La restauración ha fallado, error: %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>¿Seguro que desea salir y reiniciar el equipo?</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Reiniciar</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>Haciendo la copia de seguridad, espere…</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>Hay un problema con el archivo de copia de seguridad</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>La versión del sistema no coincide con la del archivo de copia. Actualice el sistema y vuelva a restaurar</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>La información del disco y la de la copia de seguridad no coinciden, por lo que ahora no es posible restaurar</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>No se encuentra la ubicación de destino</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>Archivo de copia</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Fecha</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>Restauración</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>Restablecer la configuración de fábrica</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>No existe la copia inicial, por lo que no se puede restablecer la configuración de fábrica.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>Conservar los archivos personales y las aplicaciones</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>Restaurar desde archivos de copia de seguridad</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>Directorio de la copia</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>Restaurar desde un punto de restauración</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>Puntos de restauración</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Aplicando los cambios en el sistema…</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>Restaurar ahora</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>La copia inicial está dañada, por lo que no se puede restablecer la configuración de fábrica.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>Restablecer la configuración de fábrica</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>Conservar los archivos personales</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>Se borrarán definitivamente los datos de todos los usuarios de este equipo. Confirme antes de continuar</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>Se restablecerán los datos del disco del sistema, pero se conservarán sus datos personales. Para acceder a ellos después, deberá crear una cuenta con el mismo nombre que el usuario actual. Confirme antes de continuar.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>Confirmar y restablecer</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>La restauración del sistema está preparada. ¿Desea reiniciar y restaurar el sistema ahora?</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>Reiniciar y restaurar</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>Hay un problema con la copia inicial</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>No se ha podido preparar la tarea</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>Examinar…</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Ruta del directorio</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>Restaurando el sistema, espere…</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>No retire el dispositivo de almacenamiento ni apague o desenchufe el equipo</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progreso</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
</TS>
