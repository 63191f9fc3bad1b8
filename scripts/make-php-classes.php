<?php
// Writes resources/php-classes.inc: the classes that every PHP has, and what a class that extends one must keep to.
//
//     php -n scripts/make-php-classes.php > resources/php-classes.inc
//
// A text for each class: `kind;parent;interfaces;member;member...`. A member is `c flags name`,
// `p flags name type` or `m flags name result parameter parameter...`; a parameter is `type:marks:$name`. `-` stands for no
// type. Flags: u public, o protected, i private, s static, a abstract, f final, r readonly, & by reference; of a result
// `~` says that PHP only warns when it is another. Marks: & by reference, ? optional, . variadic.

const EXTENSIONS = ['Core', 'date', 'hash', 'json', 'pcre', 'random', 'Reflection', 'SPL', 'standard'];

function type_text(?ReflectionType $type): string
{
    return $type === null ? '-' : str_replace(' ', '', (string)$type);
}

function flags($member): string
{
    $is = fn(string $question) => method_exists($member, $question) && $member->$question();
    return ($member->isPublic() ? 'u' : ($member->isProtected() ? 'o' : 'i')) . ($is('isStatic') ? 's' : '') .
        ($is('isAbstract') ? 'a' : '') . ($is('isFinal') ? 'f' : '') . ($is('isReadOnly') ? 'r' : '') .
        ($is('returnsReference') ? '&' : '');
}

function method_text(ReflectionMethod $method): string
{
    $result = $method->hasTentativeReturnType() ? '~' . type_text($method->getTentativeReturnType())
        : type_text($method->getReturnType());
    $text = 'm ' . flags($method) . ' ' . $method->getName() . ' ' . $result;
    foreach ($method->getParameters() as $parameter)
        $text .= ' ' . type_text($parameter->getType()) . ':' . ($parameter->isPassedByReference() ? '&' : '') .
            ($parameter->isVariadic() ? '.' : ($parameter->isOptional() ? '?' : '')) . ':$' . $parameter->getName();
    return $text;
}

function class_text(ReflectionClass $class): string
{
    $parent = $class->getParentClass() ?: null;
    $kind = $class->isInterface() ? 'interface' : ($class->isFinal() ? 'final' : 'class');
    $interfaces = $class->getInterfaceNames();
    sort($interfaces);
    $text = [$kind, $parent?->getName() ?? '', implode(',', $interfaces)];
    // What an interface declares is its class's too where nothing nearer does.
    $isOwn = fn($member) => $member->getDeclaringClass()->getName() === $class->getName() ||
        ($member->getDeclaringClass()->isInterface() &&
            !($parent && ($member instanceof ReflectionMethod ? $parent->hasMethod($member->getName())
                : $parent->hasConstant($member->getName()))));
    foreach (array_filter($class->getReflectionConstants(), $isOwn) as $constant)
        $text[] = 'c ' . flags($constant) . ' ' . $constant->getName();
    foreach (array_filter($class->getProperties(), $isOwn) as $property)
        $text[] = 'p ' . flags($property) . ' $' . $property->getName() . ' ' . type_text($property->getType());
    foreach (array_filter($class->getMethods(), $isOwn) as $method)
        $text[] = method_text($method);
    return implode(';', $text);
}

$classes = [];
foreach (array_merge(get_declared_classes(), get_declared_interfaces()) as $name) {
    $class = new ReflectionClass($name);
    if (in_array($class->getExtensionName(), EXTENSIONS, true) && !$class->isEnum())
        $classes[strtolower($name)] = [$name, class_text($class)];
}
ksort($classes, SORT_STRING);
echo "// Written by scripts/make-php-classes.php. Sorted by the lower-case name.\n";
echo "constexpr SBuiltinClass BuiltinClasses[] = {\n";
foreach ($classes as $lower => [$name, $text]) {
    $escape = fn(string $s) => '"' . addcslashes($s, '\\"') . '"';
    $pieces = str_split($text, 100);
    echo '    {', $escape($lower), ', ', $escape($name), ",\n     ", implode("\n     ", array_map($escape, $pieces)), "},\n";
}
echo "};\n";
