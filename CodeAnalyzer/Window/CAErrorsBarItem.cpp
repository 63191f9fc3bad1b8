#include "Window/CAErrorsBarItem.h"

#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/LangSupport/LangSupport.h"

#include <algorithm>
#include <functional>

namespace Kesh::CodeAnalyzer {

SBarFile::SBarFile(const std::wstring& path)
    : name(path), key(CCAErrorsBarItem::MakeFileKey(path)), shown(QString::fromStdWString(path))
{
}

CCAErrorsBarItem::CCAErrorsBarItem(const std::wstring& file, const SyntaxParser::SScheme& pos,
                                   std::int32_t type, std::int32_t code, const std::wstring& description,
                                   IErrorsBarList* bar)
    : CCAErrorsBarItem(std::make_shared<SBarFile>(file), {pos, code, type}, SeverityText(type),
                       QString::fromStdWString(description), bar)
{
}

CCAErrorsBarItem::CCAErrorsBarItem(std::shared_ptr<const SBarFile> file, const SCAError& error,
                                   const QString& severity, const QString& description, IErrorsBarList* bar)
    : QTreeWidgetItem({severity, file->shown + QStringLiteral(" - ") + QString::number(error.pos.start.y + 1),
                       description}),
      m_type(error.type),
      m_code(error.code),
      m_file(std::move(file)),
      m_pos(error.pos),
      m_bar(bar)
{
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

QString CCAErrorsBarItem::SeverityText(std::int32_t type)
{
    return QString::fromStdWString(
        LangSupport::CLangSupport::LoadStr(type == SeverityError ? "Error" : "Warning"));
}

bool CCAErrorsBarItem::operator<(const QTreeWidgetItem& other) const
{
    const auto& that = static_cast<const CCAErrorsBarItem&>(other);
    if (!m_bar)
        return false;
    const int order = m_bar->GetSortOrder();
    switch (order) {
    case IErrorsBarList::TypeAscending:
    case IErrorsBarList::TypeDescending:
        if (m_type != that.m_type)
            return m_type < that.m_type;
        [[fallthrough]];
    case IErrorsBarList::FileAscending:
    case IErrorsBarList::FileDescending:
        if (const int files = CompareFile(that); files != 0)
            return files < 0;
        return m_pos.start < that.m_pos.start;
    // The messages are sorted by their kind, which keeps alike ones together in every language.
    case IErrorsBarList::DescriptionAscending:
    case IErrorsBarList::DescriptionDescending: return m_code < that.m_code;
    default: return false;
    }
}

int CCAErrorsBarItem::CompareFile(const CCAErrorsBarItem& other) const
{
    if (m_file == other.m_file)
        return 0;
    const bool ranked = m_file->rank && other.m_file->rank;
    return ranked ? m_file->rank - other.m_file->rank : m_file->key.compare(other.m_file->key);
}

std::int32_t CCAErrorsBarItem::GetPart() const
{
    const int order = m_bar->GetSortOrder();
    return order >= IErrorsBarList::DescriptionAscending ? m_code
           : order >= IErrorsBarList::FileAscending      ? 0
                                                         : m_type;
}

bool CCAErrorsBarItem::IsBeforeInFile(const CCAErrorsBarItem& other) const
{
    if (m_pos.start != other.m_pos.start)
        return m_pos.start < other.m_pos.start;
    if (m_code != other.m_code)
        return m_code < other.m_code;
    return m_type != other.m_type ? m_type < other.m_type : std::less<>()(this, &other);
}

bool CCAErrorsBarItem::IsBefore(const CCAErrorsBarItem& other) const
{
    if (const std::int32_t part = GetPart(), otherPart = other.GetPart(); part != otherPart)
        return part < otherPart;
    const int files = CompareFile(other);
    return files != 0 ? files < 0 : IsBeforeInFile(other);
}

} // namespace Kesh::CodeAnalyzer
