<?php

namespace Shop;

class Catalogue extends
{
    private const FILE = __DIR__ . '/../products.json';

    public static function load(): array
    {
        $rows = json_decode(file_get_contents(self::FILE), true);
        return array_map(function (array $row) {
            return new Product($row['name'], $row['cents'], $row['tags'] ?? []);
        }, $rows);
    }
}
