// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/logformat.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace Velk::Core {

namespace {

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return u"Debug"_s;
    case QtInfoMsg:
        return u"Info"_s;
    case QtWarningMsg:
        return u"Warning"_s;
    case QtCriticalMsg:
        return u"Critical"_s;
    case QtFatalMsg:
        return u"Fatal"_s;
    }
    return {};
}

using FieldText = QString (*)(const LogMessage&, const QString& argument);

struct Field
{
    QLatin1StringView name;
    FieldText text;
};

constexpr Field fields[] = {
    {"time"_L1, [](const LogMessage& message, const QString& argument) { return message.time.toString(argument); }},
    {"type"_L1, [](const LogMessage& message, const QString&) { return levelName(message.type); }},
    {"file"_L1, [](const LogMessage& message, const QString&) { return QString::fromUtf8(message.context.file); }},
    {"function"_L1,
        [](const LogMessage& message, const QString&) { return QString::fromUtf8(message.context.function); }},
    {"line"_L1, [](const LogMessage& message, const QString&) { return QString::number(message.context.line); }},
    {"message"_L1, [](const LogMessage& message, const QString&) { return message.text; }},
};

QString padded(const QString& text, int width)
{
    return width < 0 ? text.leftJustified(-width) : text.rightJustified(width);
}

/// The text of one field; of an unknown one, the field itself.
QString fieldText(const QRegularExpressionMatch& match, const LogMessage& message)
{
    for (const Field& field : fields) {
        if (match.capturedView(u"name"_s) == field.name) {
            return padded(field.text(message, match.captured(u"argument"_s)), match.captured(u"width"_s).toInt());
        }
    }
    return match.captured();
}

} // namespace

QString formatLogMessage(const QString& format, const LogMessage& message)
{
    static const QRegularExpression field(uR"(%\{(?<name>\w+)(?::(?<width>-?\d+))?\}(?:\{(?<argument>[^}]*)\})?)"_s);
    QString line;
    qsizetype end = 0;
    for (auto matches = field.globalMatch(format); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        line += format.sliced(end, match.capturedStart() - end) + fieldText(match, message);
        end = match.capturedEnd();
    }
    return line + format.sliced(end);
}

} // namespace Velk::Core
