#!/bin/sh
# Stands for Ollama in the playground: it knows `list` and `rm` over the sample models and no network.
set -eu
library=$HOME/.ollama/models/manifests/registry.ollama.ai/library
blobs=$HOME/.ollama/models/blobs

digests_in() { grep -o 'sha256:[0-9a-f]*' "$1" | tr : -; }

remove_model() {
    manifest=$library/$(printf %s "$1" | tr : /)
    [ -f "$manifest" ] || {
        echo "Error: model '$1' not found (stand-in for Ollama)" >&2
        exit 1
    }
    digests=$(digests_in "$manifest")
    rm "$manifest"
    for digest in $digests; do
        grep -rqs "$(printf %s "$digest" | tr - :)" "$library" || rm -f "$blobs/$digest"
    done
    echo "deleted '$1' (stand-in for Ollama)"
}

case ${1:-} in
rm)
    shift
    for model in "$@"; do remove_model "$model"; done
    ;;
list | ls)
    echo "NAME (stand-in for Ollama)"
    (cd "$library" && find . -type f) | sed 's|^\./||; s|/|:|' | sort
    ;;
*)
    echo "A stand-in for Ollama, part of a playground: it knows list and rm."
    ;;
esac
