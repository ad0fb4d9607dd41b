<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>BackupPage</name>
    <message>
        <source>Backup</source>
        <translation>Sauvegarde</translation>
    </message>
    <message>
        <source>Backup Type</source>
        <translation>Type de sauvegarde</translation>
    </message>
    <message>
        <source>Saving Method</source>
        <translation>Mode d’enregistrement</translation>
    </message>
    <message>
        <source>Back Up</source>
        <translation>Sauvegarder</translation>
    </message>
    <message>
        <source>Full Backup</source>
        <translation>Sauvegarde complète</translation>
    </message>
    <message>
        <source>System Backup</source>
        <translation>Sauvegarde du système</translation>
    </message>
    <message>
        <source>New Backup</source>
        <translation>Nouvelle sauvegarde</translation>
    </message>
    <message>
        <source>System Incremental Backup</source>
        <translation>Sauvegarde incrémentielle du système</translation>
    </message>
    <message>
        <source>Select a path to save backup files</source>
        <translation>Choisissez où enregistrer les fichiers de sauvegarde</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Application des modifications à votre système…</translation>
    </message>
    <message>
        <source>System backup is ready. Do you want to reboot and backup your system now?</source>
        <translation>La sauvegarde du système est prête. Voulez-vous redémarrer et sauvegarder votre système maintenant ?</translation>
    </message>
    <message>
        <source>Reboot and Backup</source>
        <translation>Redémarrer et sauvegarder</translation>
    </message>
</context>
<context>
    <name>BackupRestoreWidget</name>
    <message>
        <source>Backup</source>
        <translation>Sauvegarde</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Restauration</translation>
    </message>
    <message>
        <source>System Clone</source>
        <translation>Clonage du système</translation>
    </message>
    <message>
        <source>Backup and Restore</source>
        <translation>Sauvegarde et restauration</translation>
    </message>
    <message>
        <source>Backup system environment and data, restore the system status or data, and provide the restoration of factory settings</source>
        <translation>Sauvegarder l’environnement et les données du système, restaurer son état ou ses données et rétablir les réglages d’usine</translation>
    </message>
</context>
<context>
    <name>BackupTask</name>
    <message>
        <source>Backup error, please try again</source>
        <translation>Erreur de sauvegarde, veuillez réessayer</translation>
    </message>
</context>
<context>
    <name>BaseTableView</name>
    <message>
        <source>No backups found</source>
        <translation>Aucune sauvegarde trouvée</translation>
    </message>
</context>
<context>
    <name>DirectoryChooser</name>
    <message>
        <source>Select a directory</source>
        <translation>Choisir un répertoire</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Remonter</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Chemin du répertoire</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Supports</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Répertoires</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Choisir</translation>
    </message>
    <message>
        <source>System disk</source>
        <translation>Disque système</translation>
    </message>
</context>
<context>
    <name>ErrorType</name>
    <message>
        <source>Insufficient disk space</source>
        <translation>Espace disque insuffisant</translation>
    </message>
    <message>
        <source>The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs format.</source>
        <translation>Ce système de fichiers ne convient pas aux sauvegardes. Choisissez-en un au format ext4, btrfs, xfs ou reiserfs.</translation>
    </message>
    <message>
        <source>Invalid path</source>
        <translation>Chemin non valide</translation>
    </message>
    <message>
        <source>The storage location cannot be in source disk, please reselect</source>
        <translation>L’emplacement ne peut pas se trouver sur le disque source, veuillez en choisir un autre</translation>
    </message>
    <message>
        <source>Backup file is invalid</source>
        <translation>Le fichier de sauvegarde n’est pas valide</translation>
    </message>
    <message>
        <source>Cannot back up data to the read-only device</source>
        <translation>Impossible de sauvegarder sur un périphérique en lecture seule</translation>
    </message>
    <message>
        <source>This directory cannot be used to store backup files, please select a different directory.</source>
        <translation>Ce répertoire ne peut pas contenir de fichiers de sauvegarde, veuillez en choisir un autre.</translation>
    </message>
    <message>
        <source>The system contains encrypted partition, please decrypt it before using the backup and restore function.</source>
        <translation>Le système contient une partition chiffrée. Déchiffrez-la avant d’utiliser la sauvegarde et la restauration.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Exit and reboot</source>
        <translation>Quitter et redémarrer</translation>
    </message>
    <message>
        <source>Do not power off or unplug your machine</source>
        <translation>N’éteignez pas et ne débranchez pas votre machine</translation>
    </message>
    <message>
        <source>Reboot Now</source>
        <translation>Redémarrer maintenant</translation>
    </message>
    <message>
        <source>Backup Successful</source>
        <translation>Sauvegarde réussie</translation>
    </message>
    <message>
        <source>Restore Successful</source>
        <translation>Restauration réussie</translation>
    </message>
    <message>
        <source>Shut Down</source>
        <translation>Éteindre</translation>
    </message>
    <message>
        <source>Backup Failed</source>
        <translation>Échec de la sauvegarde</translation>
    </message>
    <message>
        <source>Restore Failed</source>
        <translation>Échec de la restauration</translation>
    </message>
    <message>
        <source>Backup failed, error: %1</source>
        <translation>Échec de la sauvegarde, erreur : %1</translation>
    </message>
    <message>
        <source>Restore failed, error: %1</source>
        <translation>Échec de la restauration, erreur : %1</translation>
    </message>
    <message>
        <source>Are you sure you want to exit and reboot your computer?</source>
        <translation>Voulez-vous vraiment quitter et redémarrer votre ordinateur ?</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Redémarrer</translation>
    </message>
    <message>
        <source>Backing up, please wait...</source>
        <translation>Sauvegarde en cours, veuillez patienter…</translation>
    </message>
</context>
<context>
    <name>ManualRestoreTask</name>
    <message>
        <source>There is something wrong with your backup file</source>
        <translation>Votre fichier de sauvegarde présente un problème</translation>
    </message>
    <message>
        <source>Your system version does not match the backup file, please update the system and restore again</source>
        <translation>La version de votre système ne correspond pas au fichier de sauvegarde. Mettez le système à jour, puis relancez la restauration</translation>
    </message>
    <message>
        <source>Your disk info and the backup info do not match, so you cannot restore now</source>
        <translation>Les informations de votre disque et celles de la sauvegarde ne correspondent pas : la restauration est impossible pour le moment</translation>
    </message>
    <message>
        <source>Cannot find the target location</source>
        <translation>Emplacement de destination introuvable</translation>
    </message>
</context>
<context>
    <name>Recovery.Table.Header</name>
    <message>
        <source>Backup File</source>
        <translation>Fichier de sauvegarde</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Date</translation>
    </message>
</context>
<context>
    <name>RestorePage</name>
    <message>
        <source>Restore</source>
        <translation>Restauration</translation>
    </message>
    <message>
        <source>Reset to factory settings</source>
        <translation>Rétablir les réglages d’usine</translation>
    </message>
    <message>
        <source>The initial backup file does not exist, so your system cannot be reset to factory settings.</source>
        <translation>La sauvegarde initiale n’existe pas : les réglages d’usine ne peuvent pas être rétablis.</translation>
    </message>
    <message>
        <source>Keep personal files and apps</source>
        <translation>Conserver les fichiers personnels et les applications</translation>
    </message>
    <message>
        <source>Restore from backup files</source>
        <translation>Restaurer à partir de fichiers de sauvegarde</translation>
    </message>
    <message>
        <source>Backup directory</source>
        <translation>Répertoire de sauvegarde</translation>
    </message>
    <message>
        <source>Restore from a restore point</source>
        <translation>Restaurer à partir d’un point de restauration</translation>
    </message>
    <message>
        <source>Restore points</source>
        <translation>Points de restauration</translation>
    </message>
    <message>
        <source>Applying changes to your system...</source>
        <translation>Application des modifications à votre système…</translation>
    </message>
    <message>
        <source>Restore Now</source>
        <translation>Restaurer maintenant</translation>
    </message>
    <message>
        <source>The initial backup file is broken, so your system cannot be reset to factory settings.</source>
        <translation>La sauvegarde initiale est endommagée : les réglages d’usine ne peuvent pas être rétablis.</translation>
    </message>
    <message>
        <source>Reset to Factory Settings</source>
        <translation>Rétablir les réglages d’usine</translation>
    </message>
    <message>
        <source>Keep Personal Files</source>
        <translation>Conserver les fichiers personnels</translation>
    </message>
    <message>
        <source>It will permanently clear data of all users on this device, please confirm before proceeding</source>
        <translation>Les données de tous les utilisateurs de cet appareil seront définitivement effacées. Veuillez confirmer avant de continuer</translation>
    </message>
    <message>
        <source>It will reset data on your system disk but keep your personal data. You need to create an account with the same username as the current user so that you can access your personal data later. Please confirm before proceeding.</source>
        <translation>Les données du disque système seront réinitialisées, mais vos données personnelles seront conservées. Pour y accéder ensuite, vous devrez créer un compte portant le même nom que l’utilisateur actuel. Veuillez confirmer avant de continuer.</translation>
    </message>
    <message>
        <source>Confirm and Reset</source>
        <translation>Confirmer et réinitialiser</translation>
    </message>
    <message>
        <source>System restore is ready. Do you want to reboot and restore your system now?</source>
        <translation>La restauration du système est prête. Voulez-vous redémarrer et restaurer votre système maintenant ?</translation>
    </message>
    <message>
        <source>Reboot and Restore</source>
        <translation>Redémarrer et restaurer</translation>
    </message>
</context>
<context>
    <name>SystemRestoreTask</name>
    <message>
        <source>There is something wrong with your initial backup file</source>
        <translation>Votre sauvegarde initiale présente un problème</translation>
    </message>
</context>
<context>
    <name>Task</name>
    <message>
        <source>Failed to initialize the task</source>
        <translation>Impossible de préparer la tâche</translation>
    </message>
</context>
<context>
    <name>VFileChooserEdit</name>
    <message>
        <source>Browse...</source>
        <translation>Parcourir…</translation>
    </message>
    <message>
        <source>Path of the directory</source>
        <translation>Chemin du répertoire</translation>
    </message>
</context>
<context>
    <name>VWaterProgress</name>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
</context>
<context>
    <name>WorkingPage</name>
    <message>
        <source>Restoring your system, please wait...</source>
        <translation>Restauration de votre système, veuillez patienter…</translation>
    </message>
    <message>
        <source>Do not remove your storage device, power off or unplug your machine</source>
        <translation>Ne retirez pas le support de stockage, n’éteignez pas et ne débranchez pas votre machine</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
</context>
<context>
    <name>button</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
</TS>
