#pragma once

#include <functional>
#include <string>

namespace Kesh::CodeAnalyzer {

/// The check of HTML and CSS beyond their names, off until a host asks for it. It needs a host whose
/// documents offer the component "IMarkupTokens". GUI thread; what is set holds for checks that begin
/// afterwards.
class IMarkupCheck
{
public:
    virtual void SetEnabled(bool enabled) = 0;
    virtual bool IsEnabled() const = 0;

    using TChoices = std::function<bool(const std::wstring& path)>;
    /// Has files be checked or not, each in its own way, while the check is enabled. Asked by each check that
    /// begins, on its thread; an empty function ends it.
    virtual void SetChoices(TChoices choices) = 0;
    /// What holds for a file. Any thread.
    virtual bool IsWanted(const std::wstring& path) const = 0;

protected:
    ~IMarkupCheck() = default;
};

} // namespace Kesh::CodeAnalyzer
