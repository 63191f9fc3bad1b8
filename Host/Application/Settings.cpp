#include "Application/Settings.h"

#include "Files/FilePath.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

namespace Kesh::Host {

namespace {

QString UserFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/code-analyzer/workbench.ini");
}

QString StoreKey(const std::wstring& section, const std::wstring& key)
{
    return PathToQt(section) + QLatin1Char('/') + PathToQt(key);
}

} // namespace

int CMemorySettings::HasSection(const std::wstring& section)
{
    const auto found = m_values.lower_bound({section, {}});
    return found != m_values.end() && found->first.first == section;
}

std::wstring CMemorySettings::GetString(const std::wstring& section, const std::wstring& key,
                                        const std::wstring& defaultValue)
{
    const auto found = m_values.find({section, key});
    return found == m_values.end() ? defaultValue : found->second;
}

void CMemorySettings::SetString(const std::wstring& section, const std::wstring& key,
                                const std::wstring& value)
{
    m_values[{section, key}] = value;
}

CFileSettings::CFileSettings(const std::wstring& path)
    : m_store(path.empty() ? UserFile() : PathToQt(path), QSettings::IniFormat)
{
    m_store.setIniCodec("UTF-8");
}

int CFileSettings::HasSection(const std::wstring& section)
{
    return m_store.childGroups().contains(PathToQt(section));
}

std::wstring CFileSettings::GetString(const std::wstring& section, const std::wstring& key,
                                      const std::wstring& defaultValue)
{
    const QVariant value = m_store.value(StoreKey(section, key));
    // A text with commas that was typed into the file by hand arrives as a list.
    return value.isValid() ? PathFromQt(value.toStringList().join(QStringLiteral(", "))) : defaultValue;
}

void CFileSettings::SetString(const std::wstring& section, const std::wstring& key, const std::wstring& value)
{
    m_store.setValue(StoreKey(section, key), PathToQt(value));
}

std::wstring CFileSettings::GetFolder() const
{
    return PathFromQt(QFileInfo(m_store.fileName()).absolutePath());
}

} // namespace Kesh::Host
