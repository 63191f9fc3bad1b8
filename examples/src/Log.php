<?php

namespace Shop;

trait Log
{
    private function log($message)
    {
        try {
            file_put_contents('/tmp/shop.log', $message . PHP_EOL, FILE_APPEND);
        } catch ($e) {
            error_log($e->getMessage());
        }
    }
}
