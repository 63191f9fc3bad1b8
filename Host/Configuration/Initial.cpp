#include "Configuration/Configuration.h"

namespace Kesh::Configuration {

namespace {

std::string PresetsLine(const std::vector<std::string_view>& presets)
{
    std::string names;
    for (const std::string_view preset : presets)
        names += (names.empty() ? "\"" : ", \"") + std::string(preset) + '"';
    return names.empty() ? "// \"presets\": [\"vue\"]," : "\"presets\": [" + names + "],";
}

} // namespace

std::string InitialConfiguration(const std::vector<std::string_view>& presets)
{
    return R"({
  // Settings of code-analyzer for this folder and what is below it. Whatever is left out stays as it is.

  // Which files are checked in folders: names ("*.php") or paths from here ("src/*.module").
  // "include": ["*.php", "*.phtml", "*.inc", "*.html", "*.htm", "*.css"],

  // Files and folders that are left out, besides hidden ones, "vendor" and "node_modules".
  "exclude": [],

  // The PHP version to judge by. Without it, composer.json tells; without that, every version passes.
  // "phpVersion": "8.2",

  // Whether "<?" alone opens PHP, as short_open_tag in php.ini. "<?php" and "<?=" always do.
  "shortOpenTag": true,

  // Whether PHP is checked against its whole grammar.
  "grammar": true,

  // Whether HTML and CSS are checked beyond their names.
  "markup": true,

  // Errors by their codes: "off", "warning" or "error". "code-analyzer explain CODE" tells what they mean.
  "codes": {
    // "901": "error"
  },

  // The same for some places.
  "overrides": [
    // { "paths": ["templates", "*.phtml"], "codes": { "2002": "warning" } }
  ],

  // Frameworks and template languages whose names HTML does not know, but this project does.
  )" + PresetsLine(presets) +
           R"(

  // The project's own names of this kind; * stands for any characters: "x:*".
  "ownNames": {
    "tags": [],
    "attributes": [],
    "properties": []
  }

  // Old findings that are to be silent: code-analyzer check --generate-baseline writes the file.
  // , "baseline": "code-analyzer-baseline.json"
}
)";
}

} // namespace Kesh::Configuration
