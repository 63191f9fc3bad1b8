#include "Components/CASavedDetails.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SScheme;

namespace {

constexpr int Version = 1;

/// A record by its numbers, as the text of the errors cuts them.
using TRecord = std::array<std::int32_t, 6>;
/// Equal records have their details in their order.
using TRecords = std::multimap<TRecord, SDetails>;

TRecord RecordOf(const SCAError& error)
{
    const auto cut = [](std::int64_t number) { return static_cast<std::int32_t>(number); };
    const auto& [start, end] = error.pos;
    return {cut(start.x), cut(start.y), cut(end.x), cut(end.y), error.code, error.type};
}

/// Const, so that to walk through it copies nothing.
const QJsonArray Items(const QJsonValue& value)
{
    return value.toArray();
}

QString Text(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

QString Text(const std::string& text)
{
    return QString::fromStdString(text);
}

QJsonArray WriteSpan(const SScheme& span)
{
    const TRecord numbers = RecordOf({span, 0, 0});
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

QJsonObject WriteDetails(const SCAError& error, const SDetails& details)
{
    QJsonArray record, arguments, related;
    for (const std::int32_t number : RecordOf(error))
        record.append(number);
    for (const SArgument& argument : details.arguments)
        arguments.append(QJsonArray{Text(argument.name), Text(argument.value), argument.kind});
    for (const SRelatedPlace& place : details.related)
        related.append(QJsonArray{WriteSpan(place.pos), Text(place.message)});
    QJsonObject object{{QStringLiteral("record"), record}};
    const std::pair<const char*, QJsonArray> parts[] = {{"arguments", arguments}, {"related", related}};
    for (const auto& [name, part] : parts)
        if (!part.isEmpty())
            object.insert(QLatin1String(name), part);
    return object;
}

/// None when it is no place: whoever shows or fixes it relies on that.
std::optional<SScheme> ReadSpan(const QJsonValue& value)
{
    const QJsonArray numbers = value.toArray();
    const auto number = [&](int i) { return numbers.at(i).toInt(-1); };
    const SScheme span{{number(0), number(1)}, {number(2), number(3)}};
    for (int i = 0; i < 4; ++i)
        if (number(i) < 0)
            return {};
    return span.end < span.start ? std::nullopt : std::optional(span);
}

/// None when any of them is wrong.
std::optional<SDetails> ReadDetails(const QJsonObject& object)
{
    SDetails details;
    for (const QJsonValue& value : Items(object[QLatin1String("arguments")])) {
        const QJsonArray parts = value.toArray();
        const int kind = parts.at(2).toInt(-1);
        if (kind < 0 || kind > SArgument::Key)
            return {};
        details.arguments.push_back({parts.at(0).toString().toStdString(),
                                     parts.at(1).toString().toStdWString(),
                                     static_cast<SArgument::EKind>(kind)});
    }
    for (const QJsonValue& value : Items(object[QLatin1String("related")])) {
        const std::optional<SScheme> span = ReadSpan(value.toArray().at(0));
        if (!span)
            return {};
        details.related.push_back({*span, value.toArray().at(1).toString().toStdString()});
    }
    return details;
}

TRecords ReadRecords(const QJsonValue& values)
{
    TRecords records;
    for (const QJsonValue& value : Items(values)) {
        const QJsonObject object = value.toObject();
        const QJsonArray numbers = object[QLatin1String("record")].toArray();
        TRecord record{};
        for (std::size_t i = 0; i < record.size(); ++i)
            record[i] = numbers.at(static_cast<int>(i)).toInt();
        if (std::optional<SDetails> details = ReadDetails(object))
            records.emplace(record, std::move(*details));
    }
    return records;
}

} // namespace

std::wstring WriteSavedDetails(const std::vector<SSavedFileErrors>& files)
{
    QJsonArray byFile; // an object takes long to grow
    for (const auto& [file, errors, details] : files) {
        QJsonArray records;
        for (std::size_t i = 0; details && i < errors.size(); ++i)
            if (!(*details)[i].IsEmpty())
                records.append(WriteDetails(errors[i], (*details)[i]));
        if (!records.isEmpty())
            byFile.append(QJsonArray{Text(file), records});
    }
    const QJsonObject all{{QStringLiteral("version"), Version}, {QStringLiteral("files"), byFile}};
    return QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact)).toStdWString();
}

void ReadSavedDetails(const std::wstring& text, std::vector<SSavedFileErrors>& files)
{
    const QJsonObject all = QJsonDocument::fromJson(Text(text).toUtf8()).object();
    if (all[QLatin1String("version")].toInt() != Version)
        return;
    std::unordered_map<std::wstring, QJsonValue> byFile;
    for (const QJsonValue& file : Items(all[QLatin1String("files")]))
        byFile[file.toArray().at(0).toString().toStdWString()] = file.toArray().at(1);
    for (auto& [file, errors, details] : files) {
        const auto known = byFile.find(file);
        if (known == byFile.end())
            continue;
        TRecords records = ReadRecords(known->second);
        auto found = std::make_shared<std::vector<SDetails>>(errors.size());
        for (std::size_t i = 0; i < errors.size(); ++i) {
            const auto next = records.lower_bound(RecordOf(errors[i]));
            if (next == records.end() || next->first != RecordOf(errors[i]))
                continue;
            (*found)[i] = std::move(next->second);
            records.erase(next);
        }
        details = std::move(found);
    }
}

} // namespace Kesh::CodeAnalyzer
