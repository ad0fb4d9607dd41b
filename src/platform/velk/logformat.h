// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QMessageLogContext>
#include <QString>

namespace Velk::Core {

/// One message as it reached the Qt message handler.
struct LogMessage
{
    QtMsgType type;
    const QMessageLogContext& context; ///< its strings are null where the sender was built without them
    const QString& text;
    QDateTime time;
};

/// The message written in the given format.
///
/// A format is text with the fields %{time}{FORMAT OF QDateTime}, %{type}, %{file}, %{function} (the full signature, as
/// the compiler gives it), %{line} and %{message}. A field may carry a width, as in %{type:-7}: blanks fill it up, on
/// the left, or on the right when the width is negative; longer text is not cut. What is no field stays as it is.
[[nodiscard]] QString formatLogMessage(const QString& format, const LogMessage& message);

} // namespace Velk::Core
