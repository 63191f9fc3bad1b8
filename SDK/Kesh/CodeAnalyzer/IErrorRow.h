#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"

#include <string>

namespace Kesh::CodeAnalyzer {

/// What an item of the errors bar is beside a row of texts, for a host that wants to know. GUI thread.
class IErrorRow
{
public:
    virtual const std::wstring& GetFile() const = 0;
    virtual SCAError GetError() const = 0;

protected:
    ~IErrorRow() = default;
};

} // namespace Kesh::CodeAnalyzer
