<?php
// Writes resources/php-functions.inc: the functions that every PHP has, each with the version that first had it.
//
//     php -n scripts/make-php-functions.php > resources/php-functions.inc

const EXTENSIONS = ['Core', 'date', 'hash', 'json', 'pcre', 'random', 'Reflection', 'SPL', 'standard'];
// What came after 5.3; major * 100 + minor.
const SINCE = [
    504 => 'hex2bin http_response_code getimagesizefromstring trait_exists get_declared_traits class_uses
            header_register_callback stream_set_chunk_size',
    505 => 'array_column boolval json_last_error_msg password_get_info password_hash password_needs_rehash
            password_verify hash_pbkdf2 cli_get_process_title cli_set_process_title date_create_immutable
            date_create_immutable_from_format',
    506 => 'hash_equals',
    700 => 'random_bytes random_int intdiv error_clear_last preg_replace_callback_array get_resources gc_mem_caches',
    701 => 'is_iterable hash_hkdf',
    702 => 'stream_isatty spl_object_id hash_hmac_algos',
    703 => 'is_countable array_key_first array_key_last hrtime gc_status net_get_interfaces',
    704 => 'get_mangled_object_vars password_algos',
    800 => 'str_contains str_starts_with str_ends_with get_debug_type get_resource_id fdiv preg_last_error_msg',
    801 => 'array_is_list fsync fdatasync enum_exists',
    802 => 'ini_parse_quantity memory_reset_peak_usage',
];

$since = [];
foreach (SINCE as $version => $names)
    $since += array_fill_keys(preg_split('/\s+/', $names), $version);
$functions = [];
foreach (get_defined_functions()['internal'] as $name)
    if (in_array((new ReflectionFunction($name))->getExtensionName(), EXTENSIONS, true))
        $functions[strtolower($name)] = $since[strtolower($name)] ?? 0;
ksort($functions, SORT_STRING);
echo "// Written by scripts/make-php-functions.php. Sorted.\nconstexpr SBuiltinFunction BuiltinFunctions[] = {";
$line = '';
foreach ($functions as $name => $version) {
    $item = '{"' . $name . "\", $version},";
    if ($line === '' || strlen($line) + strlen($item) > 105) {
        echo rtrim($line), "\n    ";
        $line = '';
    }
    $line .= $item . ' ';
}
echo rtrim($line), "\n};\n";
