#pragma once

#include "Kesh/LangSupport/LangSupport.h"

#include <map>
#include <string>
#include <string_view>

namespace Kesh::LangSupport {

/// The texts of one language: a JSON object of key and text, both UTF-8. A key is used letter for letter,
/// trailing blanks included. Immutable once loaded, so any thread may ask.
class CTranslations final : public ILangSource
{
public:
    /// No translations: every text is its key.
    CTranslations() = default;
    /// Throws Base::CWorkError when the bytes are no such object.
    explicit CTranslations(std::string_view json);

    std::wstring Translate(const char* key) override;

private:
    std::map<std::string, std::wstring, std::less<>> m_texts;
};

} // namespace Kesh::LangSupport
