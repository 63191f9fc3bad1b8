#pragma once

#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <string>

/// A folder that goes away with its test.
class CTempFolder
{
public:
    ~CTempFolder()
    {
        // Qt cannot remove what has a name that it cannot read.
        std::error_code ignored;
        std::filesystem::remove_all(m_folder.path().toStdString(), ignored);
    }

    std::wstring Path(const std::wstring& name = {}) const
    {
        const std::wstring folder = Kesh::Host::PathFromQt(m_folder.path());
        return name.empty() ? folder : folder + L'/' + name;
    }
    /// Makes a file, and the folders it lies in.
    std::wstring Write(const std::wstring& name, const std::string& bytes) const
    {
        const std::wstring path = Path(name);
        const std::filesystem::path file(Kesh::Host::PathToBytes(path));
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return path;
    }

private:
    QTemporaryDir m_folder;
};
