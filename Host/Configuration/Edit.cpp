#include "Configuration/Edit.h"

#include "Base/Exception.h"
#include "Configuration/Configuration.h"
#include "Configuration/JsonLines.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <nlohmann/json.hpp>

namespace Kesh::Configuration {

namespace {

const SJsonValue* Member(const SJsonValue& object, const std::string& key)
{
    for (const auto& [name, value] : object.members)
        if (name == key)
            return &value;
    return nullptr;
}

std::string Quoted(const std::string& text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// Puts something first into an array or object.
std::string Inserted(std::string_view text, const SJsonValue& into, std::string item)
{
    if (!into.items.empty() || !into.members.empty())
        item += into.kind == SJsonValue::EKind::Array ? ", " : ",";
    return std::string(text.substr(0, into.inside)) + item + std::string(text.substr(into.inside));
}

/// The text when there is a file, checked to be one; else an empty one.
std::string Base(std::string_view text)
{
    if (text.empty())
        return "{\n}\n";
    ParseConfiguration(L"/code-analyzer.json", text);
    return std::string(text);
}

} // namespace

std::string WithOwnName(std::string_view given, const std::string& list, const std::wstring& name)
{
    const std::string text = Base(given);
    const std::string item = Quoted(Host::PathToBytes(name));
    const SJsonValue root = ReadJsonLines(text);
    const SJsonValue* names = Member(root, "ownNames");
    if (!names)
        return Inserted(text, root, "\n  \"ownNames\": { \"" + list + "\": [" + item + "] }");
    if (const SJsonValue* present = Member(*names, list))
        return Inserted(text, *present, item);
    return Inserted(text, *names, "\n    \"" + list + "\": [" + item + "]");
}

std::string WithCodeOff(std::string_view given, std::int32_t code)
{
    const std::string text = Base(given);
    const SJsonValue root = ReadJsonLines(text);
    const std::string key = std::to_string(code);
    const SJsonValue* codes = Member(root, "codes");
    if (!codes)
        return Inserted(text, root, "\n  \"codes\": { \"" + key + "\": \"off\" }");
    if (const SJsonValue* level = Member(*codes, key)) {
        const std::size_t length = level->text.size() + 2; // with its quotes
        return std::string(text).replace(level->inside - length, length, "\"off\"");
    }
    return Inserted(text, *codes, "\n    \"" + key + "\": \"off\"");
}

void ChangeSettings(const std::wstring& file, const std::function<std::string(const std::string&)>& change)
{
    if (Host::LeadsOut(file.substr(0, file.rfind(L'/') + 1), file))
        throw Base::CWorkError(L"is a link that leads out of its folder, and nothing is written through it",
                               __LINE__, "Host/Configuration/Edit");
    const std::string text =
        change(Host::StampOf(file).size >= 0 ? Host::ReadFileBytes(file) : std::string());
    try {
        Host::WriteFileBytes(file, text);
    } catch (const Base::CWorkError& fault) {
        throw Base::CWorkError(L"cannot be written: " + fault.GetMessage(), __LINE__,
                               "Host/Configuration/Edit");
    }
}

} // namespace Kesh::Configuration
