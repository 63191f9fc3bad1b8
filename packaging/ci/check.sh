#!/bin/sh
# check.sh FOLDER [PATH...]: checks what a job of a forge wants checked: in folder FOLDER the program's bin, reports to
# where CODE_ANALYZER_REPORTS says. CODE_ANALYZER_ARGUMENTS are more words for `check`.
set -eu
bin=$1
shift
[ $# -gt 0 ] || set -- .
reports=${CODE_ANALYZER_REPORTS:-.}
case ${CODE_ANALYZER_FORGE:-} in
    github) formats="--format github --format sarif -o $reports/code-analyzer.sarif" ;;
    gitlab) formats="--format text --format gitlab -o $reports/gl-code-quality-report.json --format junit -o $reports/junit.xml" ;;
    *) formats="--format text" ;;
esac
# shellcheck disable=SC2086 # words
exec "$bin/code-analyzer" check $formats ${CODE_ANALYZER_ARGUMENTS:-} "$@"
