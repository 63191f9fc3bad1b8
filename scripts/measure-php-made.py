#!/usr/bin/env python3
"""Holds the grammar check against `php -l` on made programs, and looks at what it says while a line is typed.

    scripts/measure-php-made.py random [--programs 1000] [--seed 1] [--list FILE] [--cache DIR]
    scripts/measure-php-made.py typing [--texts 100] [--seed 1] [--list FILE] FOLDER...

random: programs derived by chance from the rules of PhpGrammar.y, so that each is right but for what its tokens mean:
how often the verdict is PHP's, and how far the first error is from PHP's line. typing: lines of real files are taken out
and typed anew, key by key; a record farther than the line after the caret is listed unless something is open there.
"""
import argparse
import importlib.util
import pathlib
import random
import re
import subprocess
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
SPEC = importlib.util.spec_from_file_location('measure_php', HERE / 'measure-php.py')
MEASURE = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(MEASURE)

GRAMMAR = HERE.parent / 'CodeAnalyzer/Grammar/PhpGrammar.y'
# What each token may be written as; all others are their own words.
TEXTS = {
    'Variable': ['$a', '$b', '$c', '$d', '$this'], 'Number': ['1', '0', '2.5', '0x1F', '07'],
    'Identifier': ['A', 'B', 'C', 'foo', 'bar', 'baz', 'X', 'null'], 'QualifiedName': ['N\\A', 'N\\foo'],
    'FullyQualifiedName': ['\\A', '\\strlen'], 'RelativeName': ['namespace\\A'], 'String': ["'s'", '"t"', "''"],
    'MagicConstant': ['__LINE__', '__CLASS__'], 'Cast': ['(int)', '(array)', '(string)'], 'VoidCast': ['(void)'],
    'Quote': ['"'], 'Backtick': ['`'], 'Dollar': ['$'], 'At': ['@'], 'Backslash': ['\\'], 'Arrow': ['->'],
    'NullsafeArrow': ['?->'], 'OpAssign': ['+=', '.=', '**=', '<<='], 'CoalesceAssign': ['??='], 'Coalesce': ['??'],
    'BooleanOr': ['||'], 'BooleanAnd': ['&&'], 'BitXor': ['^'], 'BitAndBeforeVariable': ['&'],
    'Equality': ['==', '!==', '<=>'], 'Comparison': ['<', '>='], 'Pipe': ['|>'], 'Dot': ['.'], 'Shift': ['<<'],
    'Additive': ['+', '-'], 'Multiplicative': ['*', '%'], 'Power': ['**'], 'Not': ['!'], 'Complement': ['~'],
    'IncDec': ['++', '--'], 'Access': ['public', 'private', 'protected'], 'AccessSet': ['private(set)'],
    'AttributeStart': ['#['], 'InlineHtml': ['?>text<?php'], 'YieldFrom': ['yield from'], 'Include': ['require', 'include_once'],
    'HeredocStart': ['<<<T\n'], 'HeredocEnd': ['\nT\n'],
}
# What no program of today's PHP has, what hides the rest of a file, and what depends on blanks.
LEFT_OUT = {'HaltCompiler', 'OffsetBrace', 'VoidCast', 'AccessSet', 'Pipe'}
IN_STRINGS = ['a', '$a', ' {$b->c} ', '${a}', '$a[0]', '$a[x]', '$a->b', '\\n']


def read_grammar():
    """The productions of each symbol, and what a token that has a text of its own is written as."""
    text = GRAMMAR.read_text()
    written = {}
    for name, quoted in re.findall(r'(\w+) "([^"]+)"', text[:text.index('%precedence')]):
        written['"' + quoted + '"'] = quoted
        written[name] = quoted
    body = re.sub(r'/\*.*?\*/', '', text.split('\n%%\n')[1], flags=re.S)
    rules = {}
    for name, alternatives in re.findall(r'^(\w+):\n(.*?)^;$', body, re.M | re.S):
        rules[name] = []
        for alternative in re.split(r'^\|| \| (?=[A-Z])', without_actions(alternatives), flags=re.M):
            symbols = re.findall(r'"[^"]+"|\w+', re.sub(r'%prec \w+|%empty', '', alternative))
            # `static` as the name of a class would be refused nearly everywhere.
            if not LEFT_OUT & set(symbols) and not (name in ('class_name', 'plain_reference') and 'Static' in symbols):
                rules[name].append(symbols)
    rules['string_parts'] = [['StringParts']]
    return rules, written


def without_actions(text):
    result, depth = '', 0
    quoted = False
    for i, c in enumerate(text):
        if depth == 0 and c == '"':
            quoted = not quoted
        depth += c == '{' and not quoted
        result += c if depth == 0 else ''
        depth -= c == '}' and not quoted
    return result


class Maker:
    def __init__(self, seed):
        self.dice = random.Random(seed)
        self.rules, self.written = read_grammar()
        self.heights = dict.fromkeys(self.rules, 99)
        for _ in range(40):
            for name, alternatives in self.rules.items():
                self.heights[name] = min([self.heights[name]] + [self.height(a) for a in alternatives])

    def height(self, symbols):
        return 1 + max([self.heights.get(s, 0) for s in symbols], default=0)

    def derive(self, name, room):
        """The texts of tokens that the symbol stands for, in about so many levels."""
        if name not in self.rules:
            return [self.token(name)]
        alternatives = self.rules[name]
        fitting = [a for a in alternatives if self.height(a) <= room] or \
            [min(alternatives, key=self.height)]
        return [t for symbol in self.dice.choice(fitting) for t in self.derive(symbol, room - 1)]

    def token(self, name):
        if name == 'StringParts':
            return ''.join(self.dice.choice(IN_STRINGS) for _ in range(self.dice.randrange(1, 4)))
        return self.dice.choice(TEXTS.get(name) or [self.written.get(name, name.lower())])

    def program(self):
        text = '<?php\n'
        for _ in range(self.dice.randrange(1, 4)):
            symbol = self.dice.choice(['statement', 'statement', 'declaration', 'declaration', 'top_only'])
            line = ''
            for piece in self.derive(symbol, self.dice.randrange(5, 13)):
                line += piece if line.endswith(('"', '\n', '\\', '`')) or piece in ('"', '\\', '`') else ' ' + piece
            text += re.sub(r'([;{}]) ', lambda m: m[1] + self.dice.choice([' ', '\n']), line.strip()) + '\n'
        return text


def measure_random(options):
    maker = Maker(options.seed)
    php = MEASURE.Php(options.cache)
    listed = []
    accepted = near = 0
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for i in range(options.programs):
            paths.append(pathlib.Path(folder) / f'{i:05}.php')
            paths[-1].write_text(maker.program())
        said = php.verdicts(paths)
        found = MEASURE.ours(options.checker, folder, options.version)
        for path, verdict in zip(paths, said):
            mine = sorted(found.get(str(path), []))
            accepted += verdict is None
            near += bool(verdict and mine) and any(abs(m[0] - verdict[1]) <= 1 for m in mine)
            if bool(mine) != bool(verdict):
                listed.append(f'PHP: {verdict}\nours: {mine[:3]}\n{path.read_text()}')
    rejected = options.programs - accepted
    print(f'{options.programs} programs, of which PHP takes {accepted}\n'
          f'  same verdict             {1 - len(listed) / options.programs:7.2%}\n'
          f"  an error at PHP's line   {near / max(rejected, 1):7.2%} (within a line)")
    report(options, listed)


def report(options, listed):
    if options.list:
        pathlib.Path(options.list).write_text('\n----\n'.join(listed))


def open_at(text):
    """Whether a bracket, a string or a comment is open at the end of a piece of a line."""
    plain = re.sub(r"'(?:[^'\\]|\\.)*'|\"(?:[^\"\\]|\\.)*\"|/\*.*?\*/", '', text)
    return any(plain.count(a) != plain.count(b) for a, b in ('()', '[]', '{}')) or bool(re.search(r"['\"`]|/\*|<<<", plain))


def typed_texts(options):
    """For each chosen line: its file's text before it, the line, the rest, and where the line is."""
    dice = random.Random(options.seed)
    sources = sorted(p for f in options.folders for p in pathlib.Path(f).rglob('*.php')
                     if p.is_file() and not p.is_symlink() and 1000 < p.stat().st_size < 20000)
    made = 0
    while made < options.texts and sources:
        source = dice.choice(sources)
        lines = source.read_bytes().decode(errors='replace').split('\n')
        fitting = [i for i, line in enumerate(lines) if 12 < len(line.strip()) < 90 and not open_at(line) and
                   not re.match(r'\s*(/?\*|//|#|<)|.*\?>', line) and re.search(r'[;}]$', line.rstrip())]
        if not fitting:
            continue
        at = dice.choice(fitting)
        made += 1
        yield source, lines, at


def measure_typing(options):
    keys = 0
    far = []
    with tempfile.TemporaryDirectory() as folder:
        places = {}
        for number, (source, lines, at) in enumerate(typed_texts(options)):
            indent = len(lines[at]) - len(lines[at].lstrip())
            for end in range(indent, len(lines[at]) + 1):
                path = pathlib.Path(folder) / f'{number:03}-{end:03}.php'
                path.write_bytes('\n'.join(lines[:at] + [lines[at][:end]] + lines[at + 1:]).encode())
                places[str(path)] = source, at + 1, lines[at][:end]
                keys += 1
        found = MEASURE.ours(options.checker, folder, options.version)
        whole = {name[:-8] for name in found if name[:-8] + max(p[-8:] for p in places if p[:-8] == name[:-8]) == name}
        for name, records in sorted(found.items()):
            source, line, text = places[name]
            for record in records:
                if record[0] > line + 1 and not open_at(text) and name[:-8] not in whole:
                    far.append(f'{source}:{line}: {text.strip()}\n    {record}')
    print(f'{options.texts} lines typed with {keys} keys: {len(far)} errors farther than the line after the caret')
    report(options, far)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--checker', default='build/dev/bin/code-analyzer')
    parser.add_argument('--version', default=subprocess.run(
        ['php', '-n', '-r', 'echo PHP_MAJOR_VERSION, ".", PHP_MINOR_VERSION;'], capture_output=True, text=True).stdout)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--list', help='a file for all that is not as it should be')
    parser.add_argument('--cache', type=pathlib.Path)
    commands = parser.add_subparsers(dest='command', required=True)
    commands.add_parser('random').add_argument('--programs', type=int, default=1000)
    typing = commands.add_parser('typing')
    typing.add_argument('--texts', type=int, default=100)
    typing.add_argument('folders', nargs='+')
    options = parser.parse_args()
    measure_random(options) if options.command == 'random' else measure_typing(options)


if __name__ == '__main__':
    main()
