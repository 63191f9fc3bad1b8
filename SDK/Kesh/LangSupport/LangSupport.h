#pragma once

#include <atomic>
#include <string>

namespace Kesh::LangSupport {

/// The host's translations. Owned by the host and outlives the plug-in.
class ILangSource
{
public:
    /// The text for an English key, or the empty text when it has no translation. Any thread.
    virtual std::wstring Translate(const char* key) = 0;

protected:
    ~ILangSource() = default;
};

/// Gives user-visible texts in the user's language. Each module (host, plug-in) has its own source.
class CLangSupport
{
public:
    static void SetSource(ILangSource* source) { s_source.store(source); }

    /// The translation of an ASCII key (trailing blanks are part of it); the key itself when there is none.
    /// Any thread.
    static std::wstring LoadStr(const char* key)
    {
        ILangSource* source = s_source.load();
        std::wstring text = source ? source->Translate(key) : std::wstring();
        if (text.empty())
            for (const char* c = key; *c; ++c)
                text += static_cast<wchar_t>(static_cast<unsigned char>(*c));
        return text;
    }

private:
    static inline std::atomic<ILangSource*> s_source{nullptr};
};

} // namespace Kesh::LangSupport
