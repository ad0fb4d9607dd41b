// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace kestro::clone {

/// What a hang-up or a reader that went away means for the run.
enum class WhenAlone { Stop, GoOn };

/// Turns SIGINT and SIGTERM, and SIGHUP unless the run goes on alone, into a request to stop; ignores SIGPIPE.
void watchSignals(WhenAlone whenAlone);

/// Asks the run to stop at the next chunk.
void requestStop();

/// Throws Interrupted once a stop has been asked for.
void throwIfInterrupted();

} // namespace kestro::clone
