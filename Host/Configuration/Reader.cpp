#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Configuration/Configuration.h"
#include "Configuration/JsonLines.h"
#include "Configuration/NamePresets.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Kesh/CodeAnalyzer/Catalog.h"

#include <algorithm>
#include <charconv>
#include <functional>

namespace Kesh::Configuration {

namespace {

using EKind = SJsonValue::EKind;

[[noreturn]] void Fail(std::size_t line, const std::string& what)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(std::to_string(line) + ": " + what), __LINE__,
                           "Host/Configuration/Reader");
}

void Require(const SJsonValue& value, EKind kind, const std::string& key, const char* what)
{
    if (value.kind != kind)
        Fail(value.line, '"' + key + "\" must be " + what);
}

using TReader = std::function<void(const SJsonValue& value)>;

/// Calls the reader of each member; an unknown key is an error.
void ReadObject(const SJsonValue& object, const std::string& name,
                const std::vector<std::pair<std::string, TReader>>& readers)
{
    Require(object, EKind::Object, name, "an object in braces");
    for (const auto& [key, value] : object.members) {
        const auto known = std::find_if(readers.begin(), readers.end(),
                                        [&key = key](const auto& reader) { return reader.first == key; });
        if (known == readers.end()) {
            std::string choices;
            for (const auto& [choice, reader] : readers)
                if (choice[0] != '$')
                    choices += (choices.empty() ? "" : ", ") + choice;
            Fail(value.line, "unknown key \"" + key + "\"; those known here are " + choices);
        }
        known->second(value);
    }
}

std::vector<std::string> Strings(const SJsonValue& value, const std::string& key)
{
    Require(value, EKind::Array, key, "an array of texts");
    std::vector<std::string> strings;
    for (const SJsonValue& item : value.items) {
        if (item.kind != EKind::String || item.text.empty())
            Fail(item.line, '"' + key + "\" must hold texts, none of them empty");
        strings.push_back(item.text);
    }
    return strings;
}

void AddNames(const SJsonValue& value, const std::string& key, std::vector<std::wstring>& names)
{
    for (const std::string& name : Strings(value, key))
        names.push_back(Base::CCommonString::LowerCaseFast(Base::CCommonString::FromUtf8(name)));
}

std::string TextOf(const SJsonValue& value, const std::string& key)
{
    Require(value, EKind::String, key, "a text");
    return value.text;
}

std::map<std::int32_t, ELevel> Codes(const SJsonValue& value)
{
    Require(value, EKind::Object, "codes", "an object in braces");
    std::map<std::int32_t, ELevel> codes;
    for (const auto& [key, level] : value.members) {
        std::int32_t code = 0;
        const auto [end, fault] = std::from_chars(key.data(), key.data() + key.size(), code);
        if (fault != std::errc() || end != key.data() + key.size())
            Fail(level.line, '"' + key + "\" is no code of an error, which is a number in quotes");
        if (!CodeAnalyzer::FindKind(code))
            Fail(level.line, "there is no error " + key);
        if (level.kind == EKind::String && level.text == "off")
            codes[code] = ELevel::Off;
        else if (level.kind == EKind::String && level.text == "warning")
            codes[code] = ELevel::Warning;
        else if (level.kind == EKind::String && level.text == "error")
            codes[code] = ELevel::Error;
        else
            Fail(level.line, "a code is \"off\", \"warning\" or \"error\"");
    }
    return codes;
}

void AddPresets(const SJsonValue& value, SConfiguration& settings)
{
    for (const std::string& name : Strings(value, "presets")) {
        const SNamePreset* preset = FindNamePreset(name);
        if (!preset)
            Fail(value.line, "\"presets\": " + NoNamePreset(name));
        AddNamePreset(*preset, settings);
    }
}

SCodeRule Override(const SJsonValue& value)
{
    SCodeRule rule;
    ReadObject(value, "overrides",
               {{"paths", [&](const SJsonValue& v) { rule.paths = Strings(v, "paths"); }},
                {"codes", [&](const SJsonValue& v) { rule.codes = Codes(v); }}});
    if (rule.paths.empty())
        Fail(value.line, "an entry of \"overrides\" needs \"paths\"");
    return rule;
}

std::wstring PathFrom(const std::wstring& root, const std::string& bytes)
{
    const std::wstring path = Host::PathFromBytes(bytes);
    return Host::AbsolutePath(path.starts_with(L'/') ? path : root + L'/' + path);
}

} // namespace

SConfiguration ParseConfiguration(const std::wstring& file, std::string_view text)
{
    SConfiguration read;
    read.file = Host::AbsolutePath(file);
    read.root = read.file.substr(0, std::max<std::size_t>(1, read.file.rfind(L'/')));
    SCodeRule everywhere;
    std::vector<SCodeRule> overrides;
    const auto ownNames = [&](const SJsonValue& value) {
        ReadObject(
            value, "ownNames",
            {{"tags", [&](const SJsonValue& v) { AddNames(v, "tags", read.tags); }},
             {"attributes", [&](const SJsonValue& v) { AddNames(v, "attributes", read.attributes); }},
             {"properties", [&](const SJsonValue& v) { AddNames(v, "properties", read.properties); }}});
    };
    const auto choice = [&](const char* name, std::optional<bool>& chosen) {
        return std::pair(name, [&, name](const SJsonValue& v) {
            Require(v, EKind::Boolean, name, "true or false");
            chosen = v.boolean;
        });
    };
    ReadObject(ReadJsonLines(text), "the whole",
               {{"$schema", [&](const SJsonValue& v) { TextOf(v, "$schema"); }},
                {"extends",
                 [&](const SJsonValue& v) {
                     if (TextOf(v, "extends").empty())
                         Fail(v.line, "\"extends\" must name a file");
                     read.bases = {PathFrom(read.root, v.text)};
                     if (!Host::IsRegularFile(read.bases.front()))
                         Fail(v.line,
                              "\"extends\": there is no file " + Host::PathToBytes(read.bases.front()));
                 }},
                {"include", [&](const SJsonValue& v) { read.include = Strings(v, "include"); }},
                {"exclude", [&](const SJsonValue& v) { read.exclude = Strings(v, "exclude"); }},
                {"phpVersion",
                 [&](const SJsonValue& v) {
                     read.phpVersion = PhpVersionOf(TextOf(v, "phpVersion"));
                     if (!read.phpVersion)
                         Fail(v.line, "\"phpVersion\": " + NoPhpVersion(v.text));
                 }},
                choice("shortOpenTag", read.shortOpenTag),
                choice("grammar", read.grammar),
                choice("markup", read.markup),
                {"codes", [&](const SJsonValue& v) { everywhere.codes = Codes(v); }},
                {"overrides",
                 [&](const SJsonValue& v) {
                     Require(v, EKind::Array, "overrides", "an array of objects");
                     for (const SJsonValue& item : v.items)
                         overrides.push_back(Override(item));
                 }},
                {"presets", [&](const SJsonValue& v) { AddPresets(v, read); }},
                {"ownNames", ownNames},
                {"baseline", [&](const SJsonValue& v) {
                     if (TextOf(v, "baseline").empty())
                         Fail(v.line, "\"baseline\" must name a file");
                     read.baseline = PathFrom(read.root, v.text);
                 }}});
    read.rules = std::move(overrides);
    read.rules.insert(read.rules.begin(), std::move(everywhere));
    return read;
}

SConfiguration ReadOneConfiguration(const std::wstring& file)
{
    const std::wstring name = Host::FileName(file);
    try {
        const std::string text = Host::ReadFileBytes(file);
        return ParseConfiguration(file,
                                  std::string_view(text).substr(text.starts_with("\xEF\xBB\xBF") ? 3 : 0));
    } catch (const Base::CWorkError& fault) {
        const std::wstring what = fault.GetMessage();
        const bool line = !what.empty() && what[0] >= L'0' && what[0] <= L'9';
        throw Base::CWorkError(name + (line ? L":" : L": ") + what, __LINE__, "Host/Configuration/Reader");
    }
}

} // namespace Kesh::Configuration
