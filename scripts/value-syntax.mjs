// Reads the value definition syntax of CSS into trees: word, sign, type, function, repeat, nonempty, and the
// combinations Seq (in order), All (&&), Any (||) and One (|).

const pattern = new RegExp([
    /<(?<property>'[-\w]+')(?: ?\[(?<propertyRange>[^\]]*)\])?>/,
    /<(?<type>[-\w]+(?:\(\))?)(?: ?\[(?<range>[^\]]*)\])?>/,
    /<boolean-expr\[(?<condition>[^\]]*)\]>/,
    /<(?<token>[^\w\s]-token|[^>\s]+)>/,
    /'(?<quoted>[^']+)'/,
    /(?<function>-?[a-zA-Z][-\w]*)\(/,
    /(?<word>-?-?[a-zA-Z][-\w]*|\d[-\w]*)/,
    /(?<repeat>\{\d+(?:,\d*)?\})/,
    /(?<combine>&&|\|\||\|)/,
    /(?<sign>[^\s])/,
].map(({ source }) => source).join('|'), 'gu');

const levels = [['|', 'One'], ['||', 'Any'], ['&&', 'All']];

export function parseSyntax(text) {
    const tokens = [...text.matchAll(pattern)].map(({ groups }) =>
        Object.entries(groups).filter(([key, value]) => value !== undefined));
    const kinds = tokens.map((entries) => ({ ...Object.fromEntries(entries), is: entries[0][0] }));
    let at = 0;
    const is = (sign) => at < kinds.length && (kinds[at].sign === sign || kinds[at].combine === sign);
    const ends = (close) => at >= kinds.length || (close && is(close));

    function combination(close, level) {
        if (level === levels.length)
            return sequence(close);
        const [sign, kind] = levels[level];
        const items = [combination(close, level + 1)];
        while (!ends(close) && is(sign)) {
            ++at;
            items.push(combination(close, level + 1));
        }
        return items.length === 1 ? items[0] : { kind, items };
    }

    function sequence(close) {
        const items = [];
        while (!ends(close) && !kinds[at].combine)
            items.push(multiplied(item()));
        return items.length === 1 ? items[0] : { kind: 'Seq', items };
    }

    function group(close, make) {
        ++at;
        const inner = combination(close, 0);
        if (!ends(close) || at >= kinds.length)
            throw new Error(`no ${close} in ${text}`);
        ++at;
        return make(inner);
    }

    function item() {
        const token = kinds[at];
        const range = (token.range ?? token.propertyRange)?.split(',').map((end) => end.trim());
        switch (token.is) {
        case 'property':
        case 'type': ++at; return { kind: 'type', name: token.property ?? token.type, range };
        case 'condition': ++at; return { kind: 'type', name: 'any-value' };
        case 'token': ++at; return { kind: 'sign', sign: token.token[0] };
        case 'quoted': {
            ++at;
            const signs = [...token.quoted].map((sign) => ({ kind: 'sign', sign }));
            return signs.length === 1 ? signs[0] : { kind: 'Seq', items: signs };
        }
        case 'function': return group(')', (inner) => ({ kind: 'function', name: token.function, inner }));
        case 'word': ++at; return { kind: 'word', name: token.word };
        default:
            if (token.sign === '[')
                return group(']', (inner) => inner);
            ++at;
            return { kind: 'sign', sign: token.sign };
        }
    }

    function multiplied(tree) {
        for (;;) {
            const token = kinds[at] ?? {};
            const next = kinds[at + 1] ?? {};
            if (token.sign === '*')
                tree = { kind: 'repeat', item: tree, min: 0, max: 255 };
            else if (token.sign === '+')
                tree = { kind: 'repeat', item: tree, min: 1, max: 255 };
            else if (token.sign === '?')
                tree = { kind: 'repeat', item: tree, min: 0, max: 1 };
            else if (token.sign === '!')
                tree = { kind: 'nonempty', item: tree };
            else if (token.repeat || (token.sign === '#' && next.repeat)) {
                const [, min, comma, max] = (token.repeat ?? next.repeat).match(/\{(\d+)(,?)(\d*)\}/);
                tree = { kind: 'repeat', item: tree, min: Number(min), max: comma ? Number(max || 255) : Number(min),
                    comma: token.sign === '#' };
                at += token.repeat ? 0 : 1;
            } else if (token.sign === '#')
                tree = { kind: 'repeat', item: tree, min: 1, max: 255, comma: true };
            else
                return tree;
            ++at;
        }
    }

    const tree = combination(null, 0);
    if (at !== kinds.length)
        throw new Error(`stops at ${JSON.stringify(kinds[at])} of ${text}`);
    return tree;
}
