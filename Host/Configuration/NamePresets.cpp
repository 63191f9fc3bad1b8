#include "Configuration/NamePresets.h"

#include "Base/Exception.h"
#include "Configuration/Composer.h"
#include "Configuration/Configuration.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

namespace Kesh::Configuration {

namespace {

using nlohmann::json;

// Names that a project may extend at will are patterns; where the set is closed each is named, so that a
// mistyped one is still found.
constexpr auto Presets = std::to_array<SNamePreset>({
    {"alpine", "alpinejs @alpinejs/*", "",
     "x-data x-init x-show x-bind x-bind:* x-bind.* x-on:* x-text x-html x-model x-model.* x-modelable x-for "
     "x-transition x-transition.* x-transition:* x-effect x-ignore x-ignore.* x-ref x-cloak x-teleport "
     "x-teleport.* x-if x-id x-mask x-mask:* x-intersect x-intersect.* x-intersect:* x-resize x-resize.* "
     "x-trap x-trap.* x-collapse x-collapse.* x-anchor x-anchor.* x-sort x-sort.* x-sort:* :* @*"},
    {"angular", "@angular/core", "",
     "[*] (*) \\** #* @* i18n i18n-* let-* bind-* on-* bindon-* ref-* _nghost-* _ngcontent-* ng-version "
     "ngmodel ngform ngclass ngstyle ngif ngforof ngswitch ngtemplateoutlet ngsrc ngnonbindable "
     "ngprojectas formgroup formgroupname formcontrol formcontrolname formarrayname routerlink "
     "routerlinkactive routerlinkactiveoptions fragment queryparams"},
    {"angularjs", "angular", "", "ng-* ng:* x-ng-*"},
    {"blade", "laravel/framework illuminate/view", "x-slot:*", ":* @* {{* *}} {!!* *!!} $*"},
    {"fluid", "typo3/cms-fluid typo3fluid/fluid", "*:*", "xmlns:* data-namespace-typo3-fluid"},
    {"htmx", "htmx.org htmx", "",
     "hx-boost hx-confirm hx-delete hx-disable hx-disabled-elt hx-disinherit hx-encoding hx-ext hx-get "
     "hx-headers hx-history hx-history-elt hx-include hx-indicator hx-inherit hx-inherit:* hx-on hx-on:* "
     "hx-on-* hx-params hx-patch hx-post hx-preserve hx-prompt hx-push-url hx-put hx-replace-url "
     "hx-request hx-select hx-select-oob hx-swap hx-swap-oob hx-sync hx-target hx-target-* hx-trigger "
     "hx-validate hx-vals hx-vars hx-ws hx-sse sse-connect sse-swap sse-close ws-connect ws-send preload "
     "preload-images"},
    {"hyperscript", "hyperscript.org", "", "_ script"},
    {"latte", "latte/latte nette/application", "", "n:*"},
    {"lit", "lit lit-html lit-element", "", "@* .* ?*"},
    {"livewire", "livewire/livewire", "livewire:*", "wire:*"},
    {"rdfa", "", "", "about content datatype inlist prefix property rel resource rev typeof vocab"},
    {"stimulus", "@hotwired/stimulus stimulus", "", "data-*"},
    {"svelte", "svelte", "svelte:*",
     "on:* bind:* class:* style:* use:* transition:* in:* out:* animate:* let:* {* *} slot"},
    {"tal", "phptal/phptal", "tal:* metal:* i18n:* phptal:*", "tal:* metal:* i18n:* phptal:*"},
    {"twig", "symfony/ux-twig-component", "twig:*", ":*"},
    {"unpoly", "unpoly", "", "up-*"},
    {"vue", "vue @vue/* petite-vue nuxt",
     "component transition transition-group keep-alive teleport suspense",
     "v-* :* @* #* .* key ref slot-scope"},
});

template <typename TVisit> void ForEachWord(std::string_view words, const TVisit& visit)
{
    std::istringstream stream{std::string(words)};
    for (std::string word; stream >> word;)
        visit(word);
}

bool Names(std::string_view pattern, std::string_view package)
{
    return pattern.ends_with('*') ? package.starts_with(pattern.substr(0, pattern.size() - 1))
                                  : package == pattern;
}

/// What the objects at some keys of a file name.
void AddPackages(const std::wstring& folder, const std::wstring& name,
                 std::initializer_list<const char*> keys, std::set<std::string>& packages)
{
    const std::wstring file = folder + L'/' + name;
    if (!Host::IsRegularFile(file) || Host::LeadsOut(folder + L'/', file))
        return;
    try {
        const json document = json::parse(Host::ReadFileBytes(file), nullptr, false);
        for (const char* key : keys)
            if (document.is_object() && document.contains(key) && document[key].is_object())
                for (const auto& package : document[key].items())
                    packages.insert(package.key());
    } catch (const Base::CWorkError&) {
        // A file that cannot be read asks for nothing.
    }
}

} // namespace

std::span<const SNamePreset> NamePresets()
{
    return Presets;
}

const SNamePreset* FindNamePreset(std::string_view name)
{
    const auto found = std::ranges::find(Presets, name, &SNamePreset::name);
    return found == Presets.end() ? nullptr : &*found;
}

std::string NoNamePreset(std::string_view name)
{
    std::string known;
    for (const SNamePreset& preset : Presets)
        known += (known.empty() ? "" : ", ") + std::string(preset.name);
    return '"' + Host::PrintableBytes(std::string(name)) + "\" is no preset; those known are " + known;
}

void AddNamePreset(const SNamePreset& preset, SConfiguration& settings)
{
    const auto add = [](std::string_view words, std::vector<std::wstring>& names) {
        ForEachWord(words, [&](const std::string& word) { names.emplace_back(word.begin(), word.end()); });
    };
    add(preset.tags, settings.tags);
    add(preset.attributes, settings.attributes);
}

std::vector<std::string_view> DetectNamePresets(const std::wstring& folder)
{
    std::set<std::string> packages;
    AddPackages(folder, L"package.json", {"dependencies", "devDependencies"}, packages);
    AddPackages(folder, ComposerFileName, {"require", "require-dev"}, packages);
    std::vector<std::string_view> found;
    for (const SNamePreset& preset : Presets) {
        bool isUsed = false;
        ForEachWord(preset.packages, [&](const std::string& pattern) {
            isUsed = isUsed || std::ranges::any_of(packages, [&](const std::string& package) {
                         return Names(pattern, package);
                     });
        });
        if (isUsed)
            found.push_back(preset.name);
    }
    return found;
}

} // namespace Kesh::Configuration
