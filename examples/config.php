<?php

return [
    'title' => 'The small shop',
    'languages' => ['de', 'en'],
    'tax' => ['standard' => 0.19 => 0.07],
    'debug' => false,
];
