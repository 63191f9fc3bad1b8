// Settings files that add to others.

#include "Base/Exception.h"
#include "Configuration/Configuration.h"
#include "Files/FilePath.h"

#include <algorithm>

namespace Kesh::Configuration {

namespace {

constexpr std::size_t MostBases = 16;

/// What `own` says, and `base` where it says nothing; lists are added to, but what is included is not.
SConfiguration Over(const SConfiguration& base, SConfiguration own)
{
    const auto prepend = [](const auto& first, auto& list) {
        list.insert(list.begin(), first.begin(), first.end());
    };
    if (own.include.empty())
        own.include = base.include;
    prepend(base.exclude, own.exclude);
    own.phpVersion = own.phpVersion ? own.phpVersion : base.phpVersion;
    own.shortOpenTag = own.shortOpenTag ? own.shortOpenTag : base.shortOpenTag;
    own.grammar = own.grammar ? own.grammar : base.grammar;
    own.markup = own.markup ? own.markup : base.markup;
    prepend(base.rules, own.rules);
    prepend(base.tags, own.tags);
    prepend(base.attributes, own.attributes);
    prepend(base.properties, own.properties);
    if (own.baseline.empty())
        own.baseline = base.baseline;
    return own;
}

} // namespace

SConfiguration ReadConfiguration(const std::wstring& file)
{
    std::vector<SConfiguration> chain{ReadOneConfiguration(file)};
    std::vector<std::wstring> bases;
    while (!chain.back().bases.empty()) {
        const std::wstring next = chain.back().bases.front();
        const bool isKnown =
            std::ranges::any_of(chain, [&](const SConfiguration& read) { return read.file == next; });
        if (isKnown || chain.size() > MostBases)
            throw Base::CWorkError(Host::FileName(chain.back().file) + L": \"extends\": " + next +
                                       (isKnown ? L" adds to this file itself" : L" is one file too many"),
                                   __LINE__, "Host/Configuration/Bases");
        bases.push_back(next);
        chain.push_back(ReadOneConfiguration(next));
    }
    SConfiguration read = std::move(chain.back());
    for (auto own = chain.rbegin() + 1; own != chain.rend(); ++own)
        read = Over(read, std::move(*own));
    read.bases = std::move(bases);
    return read;
}

} // namespace Kesh::Configuration
