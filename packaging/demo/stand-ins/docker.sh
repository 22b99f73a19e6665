#!/bin/sh
# Stands for Docker in the playground where no engine can be had: one file for each container and each image, and
# of the commands those that an inventory and a removal need.
set -eu
label='stand-in, not Docker'
store=$HOME/.local/share/docker-stand-in

fail() {
    echo "Error ($label): $*" >&2
    exit 1
}

# field FILE NAME: the sheets hold lines of NAME=VALUE.
field() { sed -n "s/^$2=//p" "$1"; }

each() { find "$store/$1" -type f | sort; }

list_containers() {
    each containers | while read -r sheet; do
        printf '{"ID":"%s","Names":"%s","Image":"%s","Status":"%s (%s)"}\n' "$(field "$sheet" id)" \
            "$(field "$sheet" name)" "$(field "$sheet" image)" "$(field "$sheet" status)" "$label"
    done
}

list_images() {
    each images | while read -r sheet; do
        printf '{"ID":"sha256:%s","Repository":"%s","Tag":"%s","Size":"%s (%s)"}\n' "$(basename "$sheet")" \
            "$(field "$sheet" repository)" "$(field "$sheet" tag)" "$(field "$sheet" size)" "$label"
    done
}

container_sheet() {
    [ -f "$store/containers/$1" ] || fail "No such container: $1"
    printf %s "$store/containers/$1"
}

stop_container() {
    sheet=$(container_sheet "$1")
    sed -i 's/^status=.*/status=Exited (0) Less than a second ago/' "$sheet"
    echo "$1"
}

remove_container() {
    sheet=$(container_sheet "$1")
    case $(field "$sheet" status) in Up*) fail "cannot remove container \"$1\": container is running" ;; esac
    rm "$sheet"
    echo "$1"
}

remove_image() {
    id=${1#sha256:}
    [ -f "$store/images/$id" ] || fail "No such image: $1"
    if grep -rqs "^image_id=$id\$" "$store/containers"; then
        fail "conflict: unable to delete $1: image is being used by a container"
    fi
    rm "$store/images/$id"
    echo "Deleted: $1 ($label)"
}

while [ $# -gt 0 ]; do
    case $1 in
    --context | --host) shift 2 ;;
    *) break ;;
    esac
done
case "${1:-} ${2:-}" in
"context show") echo playground ;;
"version "*) echo "0.0 ($label)" ;;
"container ls") list_containers ;;
"image ls") list_images ;;
"inspect --type")
    shift 5
    for id in "$@"; do echo "sha256:$(field "$(container_sheet "$id")" image_id)"; done
    ;;
"container stop") stop_container "$3" ;;
"container rm") remove_container "$3" ;;
"image rm") remove_image "$4" ;;
*) echo "A $label, part of a playground: it lists, stops and removes containers and lists and removes images." ;;
esac
