// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TreeViewModel;

/// Fills the model anew with the recorded manual backups (application property "savePathJson") whose directory holds at
/// least one image and one archive, and reports that it is ready, also when there is none.
///
/// The first item of a row carries the directory and the UUID of the partition that holds it as data.
void fillBackupList(TreeViewModel* model);
