#include "Application/PluginLibrary.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/FilePath.h"

#include <cstdlib>
#include <dlfcn.h>
#include <vector>

namespace Kesh::Host {

namespace {

[[noreturn]] void Fail(const std::string& message, int line)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(message), line, "Host/Application/PluginLibrary");
}

std::vector<std::string> Candidates(const char* name)
{
    if (const char* named = std::getenv("CODE_ANALYZER_PLUGIN"); named && *named)
        return {named};
    // Of a build; of an installation, wherever it was moved to, seen from its bin and from its libexec
    // folder.
    std::vector<std::string> places;
    const std::string program = ProgramFolder();
    for (const std::string& folder :
         {program + "/../lib", program + "/../" CODE_ANALYZER_LIBDIR,
          program + "/../../" CODE_ANALYZER_LIBDIR, std::string(CODE_ANALYZER_FULL_LIBDIR)})
        places.push_back(folder + '/' + name);
    return places;
}

} // namespace

CPluginLibrary::CPluginLibrary(const char* name)
{
    std::string tried;
    for (const std::string& candidate : Candidates(name)) {
        m_library = ::dlopen(candidate.c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (m_library) {
            m_path = candidate;
            return;
        }
        const char* reason = ::dlerror();
        tried += std::string("\n  ") + (reason ? reason : candidate.c_str());
    }
    Fail("the code validator could not be loaded (CODE_ANALYZER_PLUGIN may name it):" + tried, __LINE__);
}

void* CPluginLibrary::Address(const char* name) const
{
    void* address = Lookup(name);
    if (!address)
        Fail(m_path + " is no code validator: it lacks " + name, __LINE__);
    return address;
}

void* CPluginLibrary::Lookup(const char* name) const
{
    return ::dlsym(m_library, name);
}

} // namespace Kesh::Host
