#!/usr/bin/env python3
"""Holds what the grammar check says of classes and their parents against `php -l`.

    scripts/measure-inheritance.py [--checker BIN] [--files 2000] [--seed 1] [--list FILE]

Each file is a small made-up hierarchy: classes, interfaces, traits and enums with members of every kind, most of them
like those of their parents but for one change. It says how many files get the same verdict, and of those that both
reject how many get it within a line of where PHP does. --list keeps each file that is judged otherwise.
"""
import argparse
import collections
import concurrent.futures
import copy
import json
import pathlib
import random
import re
import subprocess
import tempfile

BASES = ['Exception', 'ArrayObject', 'ArrayIterator', 'DateTime', 'FilterIterator', 'SplHeap', 'stdClass', 'Closure',
         'Countable', 'IteratorIterator', 'ReflectionClass', 'SplObjectStorage', 'Error', 'SplFixedArray']
SIMPLE = ['int', 'string', 'float', 'bool', 'array', 'iterable', 'object', 'mixed', 'callable', 'false', 'null']
NAMES = ['a', 'b', 'c', 'd']
DEFAULTS = ['null', '1', "'x'", '[]', 'self::X', 'M_PI', 'array(1, [2])', '"a" . "b"']


class Maker:
    def __init__(self, seed):
        self.dice = random.Random(seed)
        self.classes = []  # those declared so far

    def chance(self, share):
        return self.dice.random() < share

    def class_name(self):
        declared = [c['name'] for c in self.classes]
        return self.dice.choice(declared * 3 + ['self', 'Unknown', 'Countable', 'Traversable', 'Iterator', 'Closure',
                                                'ArrayObject', 'Exception', 'A9'])

    def type(self, result=False, prop=False):
        dice = self.dice
        kind = dice.random()
        if kind < 0.45:
            simple = dice.choice([t for t in SIMPLE if not (prop and t == 'callable')])
            return simple if simple not in ('mixed', 'null') and self.chance(0.7) or simple in ('mixed', 'null') else '?' + simple
        if kind < 0.75:
            return ('?' if self.chance(0.2) else '') + self.class_name()
        if kind < 0.9:
            return '|'.join(dict.fromkeys([self.class_name(), dice.choice(['int', 'string', 'null', 'array']),
                                           *([self.class_name()] if self.chance(0.3) else [])]))
        if kind < 0.94:
            return '&'.join(dice.sample(['Countable', 'Traversable', 'Iterator', 'Unknown', 'Exception'], 2))
        if kind < 0.96:
            return '(Countable&Traversable)|' + dice.choice(['null', 'int', 'Exception'])
        return dice.choice(['static', 'void', 'never', '?static']) if result else 'int'

    def parameter(self, name):
        default = self.dice.choice(DEFAULTS) if self.chance(0.25) else None
        kind = self.type() if self.chance(0.6) else ''
        if default not in (None, 'null') or kind in ('false', 'null'):
            kind = ''
        return {'name': name, 'type': kind, 'ref': self.chance(0.1), 'default': default}

    def method(self, name):
        return {'kind': 'method', 'name': name, 'mods': self.modifiers(), 'ref': self.chance(0.05),
                'params': [self.parameter(n) for n in NAMES[:self.dice.randrange(4)]],
                'variadic': {'name': 'z', 'type': self.type() if self.chance(0.3) else '', 'ref': False, 'default': None}
                if self.chance(0.1) else None,
                'result': self.type(True) if self.chance(0.5) and name != '__construct' else ''}

    def modifiers(self):
        return {'access': self.dice.choice(['public', 'public', 'protected', '', 'private']),
                'static': self.chance(0.15), 'final': self.chance(0.06), 'abstract': False, 'readonly': False}

    def member(self):
        kind = self.dice.random()
        if kind < 0.65:
            return self.method(self.dice.choice(['f', 'g', 'h', '__construct', 'count', 'getMessage', 'jsonSerialize',
                                                 '__toString'] if self.chance(0.3) else ['f', 'g', 'h']))
        if kind < 0.85:
            mods = self.modifiers()
            mods['final'] = False
            mods['readonly'] = self.chance(0.15)
            mods['static'] = mods['static'] and not mods['readonly']
            kind = self.type(prop=True) if mods['readonly'] or self.chance(0.5) else ''
            return {'kind': 'property', 'name': self.dice.choice(['p', 'q', 'message']), 'mods': mods, 'type': kind}
        mods = self.modifiers()
        mods['static'] = False
        mods['final'] = mods['final'] and mods['access'] != 'private'
        return {'kind': 'const', 'name': self.dice.choice(['X', 'Y']), 'mods': mods}

    def changed(self, member):
        """What a child has in its place: mostly something that fits, or one change."""
        new = copy.deepcopy(member)
        new['mods']['final'] = False
        new['mods']['abstract'] = False
        way = self.dice.randrange(24)
        mods = new['mods']
        if way == 0:
            mods['access'] = self.dice.choice(['public', 'protected', 'private'])
        elif way == 1:
            mods['static'] = not mods['static'] and not mods['readonly']
        elif way == 2 and new['kind'] == 'property':
            mods['readonly'] = not mods['readonly'] and bool(new['type']) and not mods['static']
        elif way == 3 and new['kind'] == 'property':
            new['type'] = self.type(prop=True)
        elif new['kind'] == 'method':
            if way == 4:
                new['params'].append(self.parameter(NAMES[len(new['params'])])) if len(new['params']) < 4 else None
            elif way == 5 and new['params']:
                new['params'].pop()
            elif way == 6 and new['params']:
                self.dice.choice(new['params'])['type'] = self.type()
            elif way == 7 and new['params']:
                self.dice.choice(new['params'])['type'] = ''
            elif way == 8 and new['name'] != '__construct':
                new['result'] = self.type(True)
            elif way == 9:
                new['result'] = ''
            elif way == 10 and new['params']:
                p = self.dice.choice(new['params'])
                p['ref'] = not p['ref']
            elif way == 11:
                new['ref'] = not new['ref']
            elif way == 12:
                new['variadic'] = None if new['variadic'] else {'name': 'z', 'type': '', 'ref': False, 'default': None}
            elif way == 13 and new['params']:
                p = self.dice.choice(new['params'])
                p['default'] = None if p['default'] else 'null'
        return new

    def declaration(self, number):
        dice = self.dice
        kind = dice.choices(['class', 'interface', 'trait', 'enum'], [12, 1, 1, 1])[0]
        declared = [c for c in self.classes if c['kind'] == 'class' and not c['flags'] & {'final', 'readonly'}] * 20 + self.classes
        new = {'kind': kind, 'name': f'A{number}', 'parent': None, 'flags': set(), 'implements': '', 'use': '', 'members': []}
        if kind == 'class':
            if declared and self.chance(0.8):
                new['parent'] = dice.choice(declared)['name']
            elif self.chance(0.3):
                new['parent'] = dice.choice(BASES + ['Unknown', f'A{number + 1}'])
            for flag, share in (('abstract', 0.25), ('final', 0.05), ('readonly', 0.02)):
                if self.chance(share) and not (flag == 'final' and 'abstract' in new['flags']):
                    new['flags'].add(flag)
            if self.chance(0.06):
                new['implements'] = dice.choice(['Countable', 'JsonSerializable', 'Unknown'])
            traits = [c['name'] for c in self.classes if c['kind'] == 'trait']
            if self.chance(0.06):
                new['use'] = dice.choice(traits + ['UnknownTrait'])
        parent = next((c for c in self.classes if c['name'] == new['parent']), None)
        members = [self.changed(m) for m in (parent['all'] if parent else []) if self.chance(0.5)]
        members += [self.member() for _ in range(dice.randrange(5))]
        seen = set()
        for member in members:
            if member['kind'] == 'property':
                if 'readonly' in new['flags'] or member['mods']['readonly']:
                    member['mods']['static'] = False
                    member['type'] = member['type'] or 'int'
            if member['kind'] == 'property' and kind in ('interface', 'enum'):
                continue
            if member['kind'] == 'const':
                if kind == 'trait':
                    continue
                mods = member['mods']
                mods['static'] = False
            key = (member['kind'], member['name'].lower())
            if key not in seen:
                seen.add(key)
                new['members'].append(member)
        for member in new['members']:
            mods = member['mods']
            if kind == 'interface':
                mods.update(access='public', final=False, abstract=False)
            if member['kind'] == 'method' and 'abstract' in new['flags'] and self.chance(0.4) and mods['access'] != 'private':
                mods.update(abstract=True, final=False)
            if mods['final'] and mods['access'] == 'private':
                mods['final'] = False
            if member['name'] == '__construct':
                mods['static'] = False
                member['result'] = ''
            if member['name'] == '__toString':
                mods.update(static=False, access='public')
                member.update(params=[], variadic=None, result='string')
        new['all'] = new['members'] + [m for m in (parent['all'] if parent else []) if
                                       (m['kind'], m['name'].lower()) not in seen]
        self.classes.append(new)
        return self.text(new)

    def text(self, new):
        head = ' '.join([*sorted(new['flags']), new['kind'], new['name']])
        if new['parent']:
            head += ' extends ' + new['parent']
        if new['implements']:
            head += ' implements ' + new['implements']
        lines = ['if (PHP_VERSION_ID) {' if self.chance(0.04) and new['kind'] == 'class' else '', head, '{']
        if new['use']:
            lines.append(f"    use {new['use']};")
        for member in new['members']:
            lines += self.member_lines(member, new['kind'])
        lines.append('}' + ('}' if lines[0] else ''))
        return '\n'.join(lines)

    def member_lines(self, member, kind):
        mods = member['mods']
        words = [w for w in ('final', 'abstract', 'static', 'readonly') if mods[w]]
        self.dice.shuffle(words)
        words = [mods['access'], *words] if mods['access'] else words
        if member['kind'] == 'const':
            return ['', f"    {' '.join(w for w in words if w)} const {member['name']} = 1;"]
        if member['kind'] == 'property':
            words = words or ['var' if not member['type'] and not mods['readonly'] else 'public']
            return ['', f"    {' '.join(words)} {member['type']} ${member['name']};"]
        params = [self.parameter_text(p) for p in member['params']]
        if member['variadic']:
            v = member['variadic']
            params.append(f"{v['type']} ...${v['name']}".strip())
        body = ';' if mods['abstract'] or kind == 'interface' else ' {}'
        if body != ';' and 'never' not in member['result'] and 'void' not in member['result'] and self.chance(0.3):
            body = ' { return $this->x; }' if not mods['static'] else ' { throw new Exception(); }'
        result = ': ' + member['result'] if member['result'] else ''
        return ['', f"    {' '.join(words)} function {'& ' if member['ref'] else ''}{member['name']}({', '.join(params)}){result}{body}"]

    def parameter_text(self, p):
        text = f"{p['type']} {'&' if p['ref'] else ''}${p['name']}".strip()
        return text + (f" = {p['default']}" if p['default'] else '')


def made(seed):
    maker = Maker(seed)
    count = maker.dice.randrange(2, 7)
    head = maker.dice.choice(['<?php', '<?php namespace N; use Exception, Countable, ArrayObject, Iterator;'])
    return head + '\n' + '\n\n'.join(maker.declaration(i) for i in range(count)) + '\n'


def said_by_php(path):
    run = subprocess.run(['php', '-n', '-d', 'display_errors=1', '-d', 'log_errors=0', '-l', path], capture_output=True,
                         text=True, errors='replace')
    error = re.search(r'^(?:Parse|Fatal) error: +(.*) in .* on line (\d+)$', run.stdout, re.M)
    return (int(error[2]), error[1]) if error else None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--checker', default='build/dev/bin/code-analyzer')
    parser.add_argument('--files', type=int, default=2000)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--list')
    options = parser.parse_args()
    version = subprocess.run(['php', '-n', '-r', 'echo PHP_MAJOR_VERSION, ".", PHP_MINOR_VERSION;'], capture_output=True,
                             text=True).stdout
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for number in range(options.files):
            paths.append(pathlib.Path(folder) / f'{number:06}.php')
            paths[-1].write_text(made(options.seed * 1000000 + number))
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            php = list(pool.map(said_by_php, paths))
        run = subprocess.run([options.checker, 'check', '--php-version', version, '--format', 'json', '--quiet', '--include',
                              '*.php', folder], capture_output=True, text=True)
        ours = collections.defaultdict(list)
        for record in json.loads(run.stdout):
            if record['severity'] == 'error':
                ours[record['file']].append((record['startLine'], record['code'], record['message']))
        same = both = near = 0
        kinds = collections.Counter()
        listed = []
        for path, said in zip(paths, php):
            mine = sorted(ours.get(str(path), []))
            same += bool(mine) == bool(said)
            if mine and said:
                both += 1
                near += any(abs(line - said[0]) <= 1 for line, _, _ in mine)
            if said:
                kinds[re.sub(r'\S*(::|\$|A\d)\S*|\d+', '_', said[1])[:40]] += 1
            if bool(mine) != bool(said) or (mine and not any(abs(line - said[0]) <= 1 for line, _, _ in mine)):
                listed.append({'php': said, 'ours': mine, 'text': path.read_text()})
    print(f'{options.files} files, of which PHP rejects {sum(p is not None for p in php)}\n'
          f'  same verdict  {same / options.files:7.2%}\n  within a line {near / max(both, 1):7.2%}')
    for kind, count in kinds.most_common(25):
        print(f'  {count:5} {kind}')
    if options.list:
        pathlib.Path(options.list).write_text(json.dumps(listed, indent=1))


if __name__ == '__main__':
    main()
