#!/usr/bin/env bash
# bench/against-php.sh [FOLDER]: our whole check of a folder, the region source and the full check in memory, and
# PHP's own tokenizer and parser on the same files, in one run; the best of three rounds each. MB are 10^6 bytes of
# PHP.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
folder=$(realpath -- "${1:-$here/examples}")
cd "$here"
source scripts/setup.sh
build release code-analyzer CodeAnalyzer bench_checker >&2

bytes=$(find "$folder" -type f -name '*.php' -printf '%s\n' | awk '{ s += $1 } END { print s }')
read -r _ tokenize _ parse < <(php -d memory_limit=-1 bench/php-speed.php "$folder")
memory=$(CORPUS=$folder build/release/bench/checker/bench_checker --benchmark_repetitions=3 --benchmark_format=json 2>/dev/null |
    php -r '
        foreach (json_decode(stream_get_contents(STDIN))->benchmarks as $b) {
            if ($b->run_type === "iteration")
                $best[$b->run_name] = max($best[$b->run_name] ?? 0, $b->bytes_per_second / 1e6);
        }
        foreach ($best as $speed) printf("%.1f ", $speed);')
read -r decode regions check <<<"$memory"

best=
for _ in 1 2 3; do
    start=$(date +%s%N)
    build/release/bin/code-analyzer check --include '*.php' "$folder" >/dev/null 2>&1 || [ $? -eq 1 ]
    took=$(($(date +%s%N) - start))
    [ -z "$best" ] || [ "$took" -lt "$best" ] && best=$took
done
awk -v b="$bytes" -v ns="$best" -v t="$tokenize" -v p="$parse" -v d="$decode" -v r="$regions" -v c="$check" 'BEGIN {
    whole = b / (ns / 1000)
    printf "PHP tokenizes %17.1f MB/s\nPHP parses    %17.1f MB/s\n", t, p
    printf "decoding      %17.1f MB/s\n", d
    printf "region source %17.1f MB/s  %5.2f times the tokenizer\n", r, r / t
    printf "full check    %17.1f MB/s  %5.2f times the parser\n", c, c / p
    printf "whole command %17.1f MB/s  %5.2f times the parser (files read, documents opened, errors printed)\n", whole, whole / p
}'
