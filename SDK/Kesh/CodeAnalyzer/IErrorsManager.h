#pragma once

#include <QIcon>
#include <string>

namespace Kesh::CodeAnalyzer {

/// What an editor's margin asks. Any thread.
class IErrorsManager
{
public:
    /// Whether an error of the file starts on this 0-based line.
    virtual bool IsErrorOnLine(const std::wstring& file, int line) = 0;
    /// The mark for such a line.
    virtual QIcon GetIcon() = 0;

protected:
    ~IErrorsManager() = default;
};

} // namespace Kesh::CodeAnalyzer
