// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>

#include <span>
#include <type_traits>
#include <variant>

/// One field of a record that travels as a JSON object: its key and the member that holds it. One table of these serves
/// both directions.
template <typename Record>
struct JsonField
{
    QLatin1StringView key;
    std::variant<QString Record::*, int Record::*, bool Record::*> member;
};

/// The object with all fields of the table.
template <typename Record>
[[nodiscard]] QJsonObject writeJsonFields(const Record& record, std::span<const JsonField<Record>> fields)
{
    QJsonObject object;
    for (const JsonField<Record>& field : fields) {
        std::visit([&](auto member) { object.insert(field.key, record.*member); }, field.member);
    }
    return object;
}

/// The record that the object describes. A field whose key is absent keeps its default; a value of another type gives
/// an empty text, 0 or false.
template <typename Record>
[[nodiscard]] Record readJsonFields(const QJsonObject& object, std::span<const JsonField<Record>> fields)
{
    Record record;
    const auto assign = [](const QJsonValue& value, auto& target) {
        using Value = std::remove_reference_t<decltype(target)>;
        if constexpr (std::is_same_v<Value, QString>) {
            target = value.toString();
        } else if constexpr (std::is_same_v<Value, int>) {
            target = value.toInt();
        } else {
            target = value.toBool();
        }
    };
    for (const JsonField<Record>& field : fields) {
        if (object.contains(field.key)) {
            std::visit([&](auto member) { assign(object.value(field.key), record.*member); }, field.member);
        }
    }
    return record;
}
