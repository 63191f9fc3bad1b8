<?php
require_once __DIR__ . '/../src/helpers.php';

use Shop\Catalogue;

$config = require __DIR__ . '/../config.php';
$products = Catalogue::load();
$query = trim($_GET['q'] ?? '');
if ($query !== '') {
    $products = array_filter($products, static function ($product) use ($query): bool {
        return stripos($product->name(), $query) !== false;
    });
}
include __DIR__ . '/../templates/list.phtml';
