#!/usr/bin/env bash
# bench/against-php.sh [FOLDER]: the region source and the full check in memory against PHP's own tokenizer and parser,
# then whole processes: our check of the folder against a PHP script that parses the same files, with one job, with two,
# and two of them at once, and the start for one small file. All in one run, the best of three rounds each. MB are 10^6
# bytes of PHP.
# OPTIONS holds options for the check, such as --no-grammar.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
folder=$(realpath -- "${1:-$here/examples}")
cd "$here"
source scripts/setup.sh
{
    install_missing "${packages[@]}" "${bench_packages[@]}" php-cli
    configure release -DCODE_ANALYZER_BENCHMARKS=ON
    build release code-analyzer bench_checker
} >&2
read -ra options <<<"${OPTIONS:-}"
checker=(build/release/bin/code-analyzer check --quiet --include '*.php')

# best COUNT COMMAND...: the least wall and CPU time of three rounds, in ms, each of COUNT runs.
best() {
    local count=$1 TIMEFORMAT='%R %U %S'
    shift
    for _ in 1 2 3; do
        { time for ((run = 0; run < count; ++run)); do "$@" >/dev/null 2>&1 || [ $? -eq 1 ]; done; } 2>&1
    done | awk -v n="$count" '{
        cpu = $2 + $3
        if (NR == 1 || $1 < wall) wall = $1
        if (NR == 1 || cpu < least) least = cpu
    } END { printf "%.2f %.2f\n", wall * 1000 / n, least * 1000 / n }'
}

# twice COMMAND...: two of them at once, which shows what a second core of this machine adds.
twice() {
    "$@" &
    "$@" &
    wait
}

bytes=$(find "$folder" -type f -name '*.php' -printf '%s\n' | awk '{ s += $1 } END { print s }')
read -r _ tokenize _ parse < <(php -d memory_limit=-1 bench/php-speed.php "$folder")
memory=$(CORPUS=$folder build/release/bench/checker/bench_checker --benchmark_repetitions=3 --benchmark_format=json 2>/dev/null |
    php -r '
        foreach (json_decode(stream_get_contents(STDIN))->benchmarks as $b) {
            if ($b->run_type === "iteration")
                $best[$b->run_name] = max($best[$b->run_name] ?? 0, $b->bytes_per_second / 1e6);
        }
        foreach ($best as $speed) printf("%.1f ", $speed);')
read -r decode regions check grammar both <<<"$memory"

read -r php_wall php_cpu < <(best 1 php -d memory_limit=-1 bench/php-parse.php "$folder")
read -r one_wall one_cpu < <(best 1 "${checker[@]}" --jobs 1 "${options[@]}" "$folder")
read -r two_wall two_cpu < <(best 1 "${checker[@]}" --jobs 2 "${options[@]}" "$folder")
read -r twice_wall _ < <(best 1 twice "${checker[@]}" --jobs 1 "${options[@]}" "$folder")
small=$(mktemp --suffix .php)
trap 'rm -f "$small"' EXIT
echo '<?php echo 1;' >"$small"
read -r lint_wall lint_cpu < <(best 20 php -n -l "$small")
read -r start_wall start_cpu < <(best 20 "${checker[@]}" "${options[@]}" "$small")

awk -v b="$bytes" -v t="$tokenize" -v p="$parse" -v d="$decode" -v r="$regions" -v c="$check" \
    -v g="$grammar" -v a="$both" \
    -v pw="$php_wall" -v pc="$php_cpu" -v ow="$one_wall" -v oc="$one_cpu" -v tw="$two_wall" -v tc="$two_cpu" -v aw="$twice_wall" \
    -v lw="$lint_wall" -v lc="$lint_cpu" -v sw="$start_wall" -v sc="$start_cpu" 'BEGIN {
    printf "In memory\n"
    printf "  PHP tokenizes %17.1f MB/s\n  PHP parses    %17.1f MB/s\n", t, p
    printf "  decoding      %17.1f MB/s\n", d
    printf "  region source %17.1f MB/s  %5.2f times the tokenizer\n", r, r / t
    printf "  full check    %17.1f MB/s  %5.2f times the parser\n", c, c / p
    printf "  grammar check %17.1f MB/s  %5.2f times the parser\n", g, g / p
    printf "  both          %17.1f MB/s  %5.2f times the parser\n", a, a / p
    printf "Whole processes                CPU ms     wall ms\n"
    printf "  PHP parses            %14.1f  %10.1f\n", pc, pw
    printf "  check, one job        %14.1f  %10.1f   %5.2f times as fast as PHP in CPU time\n", oc, ow, pc / oc
    printf "  check, two jobs       %14.1f  %10.1f   %5.2f times as fast as one job in wall time\n", tc, tw, ow / tw
    printf "  two checks at once                    %10.1f   %5.2f times one: what the machine has to give\n", aw, 2 * ow / aw
    printf "One small file\n"
    printf "  php -n -l             %14.1f  %10.1f\n", lc, lw
    printf "  check                 %14.1f  %10.1f   %5.2f of its CPU time\n", sc, sw, sc / lc
}'
