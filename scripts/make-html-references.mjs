// Writes resources/html-references.inc, the names of HTML's character references, from the npm packages of
// package.json. Run "npm ci" once, then this script; commit what it writes.
import { writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { characterEntities } from 'character-entities';
import { characterEntitiesLegacy } from 'character-entities-legacy';

const sorted = (names) => [...new Set(names)].sort();

// As an array of C++, several items to a line.
function array(name, items) {
    const lines = ['   '];
    for (const item of items) {
        if (lines.at(-1).length + item.length + 4 > 110)
            lines.push('   ');
        lines[lines.length - 1] += ` "${item}",`;
    }
    return `constexpr std::string_view ${name}[] = {\n${lines.join('\n')}\n};\n`;
}

writeFileSync(
    fileURLToPath(new URL('../resources/html-references.inc', import.meta.url)),
    '// Written by scripts/make-html-references.mjs. Names without "&" and ";", sorted.\n' +
        array('ReferenceNames', sorted(Object.keys(characterEntities))) +
        '// Those that need no semicolon.\n' +
        array('BareNames', sorted(characterEntitiesLegacy)),
);
