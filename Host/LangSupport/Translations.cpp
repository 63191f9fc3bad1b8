#include "LangSupport/Translations.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"

#include <nlohmann/json.hpp>

namespace Kesh::LangSupport {

CTranslations::CTranslations(std::string_view json)
{
    try {
        for (const auto& [key, text] : nlohmann::json::parse(json).get<std::map<std::string, std::string>>())
            m_texts.emplace(key, Base::CCommonString::FromUtf8(text));
    } catch (const nlohmann::json::exception& fault) {
        throw Base::CWorkError(
            Base::CCommonString::FromUtf8(std::string("bad translation file: ") + fault.what()), __LINE__,
            "Host/LangSupport/Translations");
    }
}

std::wstring CTranslations::Translate(const char* key)
{
    const auto found = m_texts.find(std::string_view(key));
    return found == m_texts.end() ? std::wstring() : found->second;
}

} // namespace Kesh::LangSupport
