#include "Components/CADocParser.h"
#include "markup/FakeHost.h"

#include <QIcon>

// The errors store and the document checker, replaced: the real ones bring the whole plug-in with them.
namespace Kesh::CodeAnalyzer {

std::vector<SPosted>& Posted()
{
    static std::vector<SPosted> posted;
    return posted;
}

void CCAErrorsManager::AddErrors(const std::wstring& file, const std::vector<SCAError>& errors)
{
    Posted().push_back({file, errors});
}

bool CCAErrorsManager::IsErrorOnLine(const std::wstring&, int)
{
    return false;
}

QIcon CCAErrorsManager::GetIcon()
{
    return {};
}

std::wstring CCADocParser::GetFilePath() const
{
    return L"/p/owned.php";
}

} // namespace Kesh::CodeAnalyzer
