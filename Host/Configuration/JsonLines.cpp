#include "Configuration/JsonLines.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"

#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace Kesh::Configuration {

namespace {

constexpr std::size_t MaxDepth = 32;

[[noreturn]] void Fail(std::size_t line, const std::string& what)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(std::to_string(line) + ": " + what), __LINE__,
                           "Host/Configuration/JsonLines");
}

/// How far the reader has come.
struct SProgress
{
    std::size_t line = 1;
    std::size_t bytes = 0;
};

class CCountingIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CCountingIterator(const char* at, SProgress* progress) : m_at(at), m_progress(progress) {}
    reference operator*() const { return *m_at; }
    CCountingIterator& operator++()
    {
        m_progress->line += *m_at++ == '\n';
        ++m_progress->bytes;
        return *this;
    }
    CCountingIterator operator++(int)
    {
        CCountingIterator old = *this;
        ++*this;
        return old;
    }
    bool operator==(const CCountingIterator& other) const { return m_at == other.m_at; }
    bool operator!=(const CCountingIterator& other) const { return m_at != other.m_at; }

private:
    const char* m_at;
    SProgress* m_progress;
};

class CBuilder final : public nlohmann::json_sax<nlohmann::json>
{
public:
    using EKind = SJsonValue::EKind;

    CBuilder(std::string_view text, const SProgress& progress) : m_text(text), m_progress(progress) {}
    SJsonValue Take() { return std::move(m_root); }

    bool null() override { return Add(EKind::Null), true; }
    bool boolean(bool value) override { return Add(EKind::Boolean).boolean = value, true; }
    bool number_integer(number_integer_t) override { return Add(EKind::Number), true; }
    bool number_unsigned(number_unsigned_t) override { return Add(EKind::Number), true; }
    bool number_float(number_float_t, const string_t&) override { return Add(EKind::Number), true; }
    bool string(string_t& value) override
    {
        SJsonValue& added = Add(EKind::String);
        added.text = value;
        added.inside = m_progress.bytes;
        return true;
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return Open(EKind::Object); }
    bool start_array(std::size_t) override { return Open(EKind::Array); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(string_t& name) override
    {
        if (!m_names.back().insert(name).second)
            Fail(m_progress.line, "the key \"" + name + "\" stands there twice");
        m_open.back()->members.push_back({name, {}});
        m_open.back()->members.back().value.line = m_progress.line;
        return true;
    }
    bool parse_error(std::size_t, const std::string& token, const nlohmann::json::exception& fault) override
    {
        const std::string_view before = m_text.substr(0, m_progress.bytes > 0 ? m_progress.bytes - 1 : 0);
        const std::size_t last = before.find_last_not_of(" \t\r\n");
        const bool isEnd =
            before.size() < m_text.size() && (m_text[before.size()] == '}' || m_text[before.size()] == ']');
        if (isEnd && last != std::string_view::npos && before[last] == ',')
            Fail(m_progress.line, "no valid JSON: a comma with nothing behind it");
        const std::string what = fault.what();
        const std::size_t reason = what.find(": ", what.find("parse error at"));
        Fail(m_progress.line,
             "no valid JSON" + (reason == std::string::npos ? ": " + token : what.substr(reason)));
    }

private:
    SJsonValue& Add(EKind kind)
    {
        SJsonValue* value = &m_root;
        if (!m_open.empty() && m_open.back()->kind == EKind::Array)
            value = &m_open.back()->items.emplace_back();
        else if (!m_open.empty())
            value = &m_open.back()->members.back().value;
        value->kind = kind;
        value->line = m_progress.line;
        return *value;
    }
    bool Open(EKind kind)
    {
        if (m_open.size() == MaxDepth)
            Fail(m_progress.line, "nested too deeply");
        m_open.push_back(&Add(kind));
        m_open.back()->inside = m_progress.bytes;
        m_names.emplace_back();
        return true;
    }
    bool Close()
    {
        m_open.pop_back();
        m_names.pop_back();
        return true;
    }

    std::string_view m_text;
    const SProgress& m_progress;
    SJsonValue m_root;
    std::vector<SJsonValue*> m_open; ///< an open value gets no siblings, so it stays where it is
    std::vector<std::unordered_set<std::string>> m_names; ///< of each, its keys so far
};

} // namespace

SJsonValue ReadJsonLines(std::string_view text)
{
    SProgress progress;
    CBuilder builder(text, progress);
    nlohmann::json::sax_parse(CCountingIterator(text.data(), &progress),
                              CCountingIterator(text.data() + text.size(), &progress), &builder,
                              nlohmann::json::input_format_t::json, true, true);
    return builder.Take();
}

} // namespace Kesh::Configuration
