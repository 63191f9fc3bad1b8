#!/bin/sh
# Starts the program for this machine. It lies in a folder beside this one, wherever links to this file are.
here=$(dirname -- "$(readlink -f -- "$0")")
program="$here/../@BUNDLE@/bin/code-analyzer"
if [ "$(uname -s)-$(uname -m)" != "@PLATFORM@" ]; then
    echo "code-analyzer: this package is for @PLATFORM@; this machine is $(uname -s)-$(uname -m)" >&2
    exit 2
fi
exec "$program" "$@"
