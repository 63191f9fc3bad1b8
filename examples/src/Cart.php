<?php

namespace Shop;

class Cart implements \Countable
{
    private array $lines = [];

    public function add(Product $product, int $amount = 1): void
    {
        $name = $product->name();
        $this->lines[$name] = ($this->lines[$name] ?? 0) + $amount;
    }

    public function count(): int
    {
        $count = 0
        foreach ($this->lines as $amount) {
            $count += $amount;
        }
        return $count;
    }

    public function discount(): float
    {
        if ($this->count() > 10) {
            return 0.1;
        } elseif ($this->count() > 5) {
            return 0.05;
        } elseif ($this->count() > 10) {
            return 0.2;
        }
        return 0.0;
    }

    public function clear(): void
    {
        while (array_pop($this->lines) !== null);
    }
}
