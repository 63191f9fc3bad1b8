<?php

declare(strict_types=1);

namespace Shop;

final class Product
{
    public const CURRENCY = 'EUR';

    private static int $created = 0;

    public function __construct(
        private readonly string $name,
        private readonly int $cents,
        private array $tags = [],
    ) {
        self::$created++;
    }

    public function name(): string
    {
        return $this->name;
    }

    public function price(): string
    {
        return sprintf('%d,%02d %s', intdiv($this->cents, 100), $this->cents % 100, self::CURRENCY);
    }

    public function tags(): array
    {
        return array_map(fn (string $tag) => strtolower($tag), $this->tags);
    }

    public static function created(): int
    {
        return static::$created;
    }
}
