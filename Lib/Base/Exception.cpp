#include "Base/Exception.h"

#include "Base/CommonString.h"

namespace Kesh::Base {

CException::CException(const std::wstring& message, std::int32_t line, const std::string& file)
    : m_what(CCommonString::ToUtf8(message)),
      m_file(file),
      m_message(QString::fromStdWString(message)),
      m_line(line)
{
}

CCriticalError::CCriticalError(const std::wstring& message, std::int32_t line, const std::string& file)
    : CException(L"Critical error: " + message, line, file)
{
}

CCriticalError::CCriticalError(const std::string& message, std::int32_t line, const std::string& file)
    : CCriticalError(CCommonString::FromUtf8(message), line, file)
{
}

CCriticalError::CCriticalError(const SExactMessage& message, std::int32_t line, const std::string& file)
    : CException(message.text, line, file)
{
}

CAccessViolation::CAccessViolation(std::int32_t line, const std::string& file)
    : CCriticalError(SExactMessage{L"Access violation"}, line, file)
{
}

} // namespace Kesh::Base
