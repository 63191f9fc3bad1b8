#include "Components/CAErrorsBarItem.h"

#include "Components/CAErrorsBar.h"
#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/LangSupport/LangSupport.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

CCAErrorsBarItem::CCAErrorsBarItem(const std::wstring& file, const SyntaxParser::SScheme& pos,
                                   std::int32_t type, std::int32_t code, const std::wstring& description,
                                   CCAErrorsBar* bar)
    : QTreeWidgetItem(Type),
      m_type(type),
      m_code(code),
      m_file(file),
      m_fileKey(MakeFileKey(file)),
      m_pos(pos),
      m_bar(bar)
{
    const char* severity = type == SeverityError ? "Error" : "Warning";
    setText(0, QString::fromStdWString(LangSupport::CLangSupport::LoadStr(severity)));
    setText(1, QString::fromStdWString(file) + QStringLiteral(" - ") + QString::number(pos.start.y + 1));
    setText(2, QString::fromStdWString(description));
}

CCAErrorsBarItem::~CCAErrorsBarItem()
{
    if (m_bar)
        m_bar->ForgetRow(this);
}

std::wstring CCAErrorsBarItem::MakeFileKey(const std::wstring& file)
{
    // Character by character, as Qt's case-insensitive comparison folds.
    std::wstring key(file);
    std::transform(key.begin(), key.end(), key.begin(),
                   [](wchar_t c) { return static_cast<wchar_t>(QChar::toCaseFolded(static_cast<uint>(c))); });
    return key;
}

bool CCAErrorsBarItem::operator<(const QTreeWidgetItem& other) const
{
    const auto& that = static_cast<const CCAErrorsBarItem&>(other);
    if (!m_bar)
        return false;
    const int order = m_bar->GetSortOrder();
    switch (order) {
    case CCAErrorsBar::TypeAscending:
    case CCAErrorsBar::TypeDescending:
        if (m_type != that.m_type)
            return m_type < that.m_type;
        [[fallthrough]];
    case CCAErrorsBar::FileAscending:
    case CCAErrorsBar::FileDescending:
        if (const int files = m_fileKey.compare(that.m_fileKey); files != 0)
            return files < 0;
        return m_pos.start < that.m_pos.start;
    // The messages are sorted by their kind, which keeps alike ones together in every language.
    case CCAErrorsBar::DescriptionAscending:
    case CCAErrorsBar::DescriptionDescending: return m_code < that.m_code;
    default: return false;
    }
}

} // namespace Kesh::CodeAnalyzer
