#pragma once

#include <string>

namespace Kesh::Host {

/// A shared library of the code validator. It stays loaded: Qt may still hold meta-objects and resources of
/// it.
class CPluginLibrary
{
public:
    /// Loads the library that the environment variable CODE_ANALYZER_PLUGIN names, else the one called `name`
    /// in ../lib of the program's folder, else the one in the place of its installation. Throws
    /// Base::CWorkError with a text for the user.
    explicit CPluginLibrary(const char* name);

    /// A function of the library by its declaration. Throws Base::CWorkError when the library lacks it.
    template <class TFunction> TFunction* Symbol(const char* name) const
    {
        return reinterpret_cast<TFunction*>(Address(name));
    }
    /// Null when the library lacks it.
    template <class TFunction> TFunction* Find(const char* name) const
    {
        return reinterpret_cast<TFunction*>(Lookup(name));
    }
    /// Where it was found.
    const std::string& GetPath() const { return m_path; }

private:
    void* Address(const char* name) const;
    void* Lookup(const char* name) const;

    std::string m_path;
    void* m_library = nullptr;
};

} // namespace Kesh::Host
