#pragma once

#include "Kesh/Base/Export.h"

#include <string>

namespace Kesh::SyntaxParser {

/// Root of the parsing service's own exceptions, which stand apart from std::exception.
class KESH_EXPORT CSPException
{
public:
    virtual ~CSPException() = default;
};

/// A text was asked for by positions that do not make a span.
class KESH_EXPORT CCriticalError : public CSPException
{
public:
    const std::wstring& GetMessage() const { return m_message; }
    /// The text in which "%s" stands for the message.
    const std::wstring& GetFormat() const { return m_format; }

private:
    std::wstring m_message;
    std::wstring m_format = L"Critical error:\r\n%s\r\n";
};

} // namespace Kesh::SyntaxParser
