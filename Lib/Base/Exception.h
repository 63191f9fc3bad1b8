#pragma once

#include "Kesh/Base/Export.h"

#include <QString>
#include <cstdint>
#include <exception>
#include <string>

namespace Kesh::Base {

/// A broken invariant: the operation in progress ends. Carries a message and where it was raised.
class KESH_EXPORT CException : public std::exception
{
public:
    CException(const std::wstring& message, std::int32_t line, const std::string& file);

    /// The message in UTF-8.
    const char* what() const noexcept override { return m_what.c_str(); }
    /// The three give the same text: line and file are kept in fields of their own.
    virtual std::wstring GetMessage() const { return m_message.toStdWString(); }
    virtual std::wstring GetExceptionDescription() const { return m_message.toStdWString(); }
    virtual std::wstring GetMessageWithoutLineAndFunction() const { return m_message.toStdWString(); }

    const std::string& GetFile() const { return m_file; }
    std::int32_t GetLine() const { return m_line; }

private:
    std::string m_what;
    std::string m_file;
    QString m_message;
    std::int32_t m_line;
};

/// A fault that ends what was going on; the message gets the prefix "Critical error: ".
class KESH_EXPORT CCriticalError : public CException
{
public:
    CCriticalError(const std::wstring& message, std::int32_t line, const std::string& file);
    /// The message is UTF-8.
    CCriticalError(const std::string& message, std::int32_t line, const std::string& file);

protected:
    struct SExactMessage
    {
        std::wstring text;
    };
    CCriticalError(const SExactMessage& message, std::int32_t line, const std::string& file);
};

/// A call on a host object that has died.
class KESH_EXPORT CAccessViolation : public CCriticalError
{
public:
    CAccessViolation(std::int32_t line, const std::string& file);
};

/// A task that could not be carried out.
class KESH_EXPORT CWorkError : public CException
{
public:
    using CException::CException;
};

} // namespace Kesh::Base
