<?php

function h(?string $text): string
{
    return htmlspecialchars($text ?? '', ENT_QUOTES);
}

function paginate(array $items, int $perPage = 10): array
{
    $pages = [];
    for ($i = 0; $i < count($items); $i += $perPage; $perPage++) {
        $pages[] = array_slice($items, $i, $perPage);
    }
    return $pages;
}

function byTag(array $products): array
{
    $result = [];
    foreach ($products as $key => $product) {
        foreach ($product->tags() as $key => $tag) {
            $result[$tag][] = $product;
        }
    }
    return $result;
}
