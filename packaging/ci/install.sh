#!/bin/sh
# install.sh ARCHIVE FOLDER: puts the program of an archive (a file, or an address to fetch it from) into FOLDER, and says
# where it is. With CODE_ANALYZER_SHA256 the archive has to be that one.
set -eu
archive=$1
folder=$2
mkdir -p "$folder"
case $archive in
    http://* | https://*)
        curl --fail --silent --show-error --location --output "$folder/archive.tar.xz" "$archive"
        archive=$folder/archive.tar.xz
        ;;
esac
if [ -n "${CODE_ANALYZER_SHA256:-}" ]; then
    echo "$CODE_ANALYZER_SHA256  $archive" | sha256sum --check --status || {
        echo "$archive is another archive than the one that is wanted" >&2
        exit 2
    }
fi
tar -C "$folder" --strip-components=1 -xJf "$archive"
"$folder/bin/code-analyzer" --version >&2
echo "$folder/bin"
