<?php
// Reads and parses each PHP file below a folder, as one process that does nothing else.

foreach (new RecursiveIteratorIterator(new RecursiveDirectoryIterator($argv[1])) as $file) {
    if (!$file->isFile() || $file->getExtension() !== 'php') {
        continue;
    }
    try {
        token_get_all(file_get_contents($file->getPathname()), TOKEN_PARSE);
    } catch (ParseError) {
    }
}
