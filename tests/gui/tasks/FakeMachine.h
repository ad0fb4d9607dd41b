// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/FakePrograms.h"
#include "support/FakeUDisks.h"
#include "support/LogCapture.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// The recovery environment of one machine, in the sandbox: two disks behind a fake UDisks2, fake programs, and the
/// files that the installed system keeps. The working directory is a fresh folder. What only root may do fails the test
/// when it is called without sudo.
///
/// | device | UUID     | mounted at    |                                 |
/// |--------|----------|---------------|---------------------------------|
/// | sda1   | EFI      | /media/EFI    | drive DISK_A                    |
/// | sda2   | BOOT     | /media/BOOT   |                                 |
/// | sda3   | ROOT     | /media/ROOT   | fstab, os-version, locale, …    |
/// | sda4   | RECOVERY | /media/RECOVERY | backup/_nox_data.info names DATA |
/// | sda5   | DATA     | /media/DATA   |                                 |
/// | sda6   | SWAP     |               | type swap                       |
/// | sdb1   | TARGET   | /media/TARGET | drive DISK_B                    |
/// | sdc    |          |               | unformatted                     |
class FakeMachine
{
public:
    FakeMachine();
    ~FakeMachine();
    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

    FakeUDisks udisks;
    FakePrograms programs;
    LogCapture log;

    /// The device of that name as the constructor made it, for changing and adding it again.
    [[nodiscard]] static FakeUDisks::Device device(const QString& name);

    /// Makes mounting the device fail.
    void refuseMount(const QString& name);

    /// Lets file commands and archives run for real, in the sandbox.
    void allowFileCommands();

    /// Prepares the image tool: writing and checking images succeed; a job leaves a small file in place of an image.
    void allowImages();

    /// The recorded calls of these programs, each without "sudo", the scripts' folder and tar's fixed options.
    [[nodiscard]] QStringList callsOf(const QStringList& programNames) const;

    /// The image jobs that ran, each as "FROM TO".
    [[nodiscard]] QStringList jobs() const;

private:
    QTemporaryDir m_workingDirectory;
    QString m_formerDirectory;
};

/// One element of a pending task.
[[nodiscard]] QJsonObject taskElement(const QString& command, const QStringList& args = {});
