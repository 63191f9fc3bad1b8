#pragma once

#include "Application/FileIO.h"
#include "Application/FilePath.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <string>

/// A folder that goes away with its test.
class CTempFolder
{
public:
    std::wstring Path(const std::wstring& name = {}) const
    {
        const std::wstring folder = Kesh::Host::PathFromQt(m_folder.path());
        return name.empty() ? folder : folder + L'/' + name;
    }
    /// Makes a file, and the folders it lies in.
    std::wstring Write(const std::wstring& name, const std::string& bytes) const
    {
        const std::wstring path = Path(name);
        QDir().mkpath(QFileInfo(Kesh::Host::PathToQt(path)).path());
        Kesh::Host::WriteFileBytes(path, bytes);
        return path;
    }

private:
    QTemporaryDir m_folder;
};
