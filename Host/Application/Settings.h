#pragma once

#include "Kesh/SDK/IServices.h"

#include <QSettings>
#include <map>
#include <string>
#include <utility>

namespace Kesh::Host {

/// Settings that last as long as the process: what the command line uses, so that it neither depends on nor
/// changes what the user chose in the window.
class CMemorySettings final : public SDK::ISettings
{
public:
    int HasSection(const std::wstring& section) override;
    std::wstring GetString(const std::wstring& section, const std::wstring& key,
                           const std::wstring& defaultValue) override;
    void SetString(const std::wstring& section, const std::wstring& key, const std::wstring& value) override;

private:
    std::map<std::pair<std::wstring, std::wstring>, std::wstring> m_values;
};

/// Settings in an INI file.
class CFileSettings final : public SDK::ISettings
{
public:
    /// An empty path means the user's own file.
    explicit CFileSettings(const std::wstring& path = {});

    int HasSection(const std::wstring& section) override;
    std::wstring GetString(const std::wstring& section, const std::wstring& key,
                           const std::wstring& defaultValue) override;
    void SetString(const std::wstring& section, const std::wstring& key, const std::wstring& value) override;

    /// The rest of the user's choices (window layout, lists), which have types of their own.
    QSettings& GetStore() { return m_store; }
    /// The folder of the settings file.
    std::wstring GetFolder() const;

private:
    QSettings m_store;
};

} // namespace Kesh::Host
