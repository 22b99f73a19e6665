# shellcheck shell=bash disable=SC2034,SC2154  # variables that run.sh and these files share
# The Docker objects of the playground: in a private engine where one can be had, otherwise in a stand-in.

docker_context=playground
docker_socket_folder=/run/playground-docker
docker_description=''
engine=''
# Where nobody listens: what the tools behind a fence are told to be the engine.
no_engine=unix:///dev/null/no-engine

# The images: repository, tag, bytes. The last has lost its name to a newer one.
sample_images() {
    cat <<'IMAGES'
ghcr.io/open-webui/open-webui main 4168337203
ollama/ollama 0.12.6 3464907571
postgres 16-alpine 274928811
n8nio/n8n 1.116.2 962072673
vllm/vllm-openai v0.9.2 16893518221
- - 1124073472
IMAGES
}

engine_obstacle() {
    local needed
    [ "$walls" = cage ] || { echo "a private engine needs a root of its own" && return; }
    [ "$(id -u)" -eq 0 ] || { echo "a private engine needs root" && return; }
    for needed in dockerd docker busybox setpriv unshare; do
        command -v "$needed" >/dev/null || { echo "$needed is missing" && return; }
    done
}

# The engine keeps a few files in /run and /etc wherever its data is; here they go to layers that vanish with it.
engine_script() {
    cat <<'SCRIPT'
set -e
mount -t tmpfs tmpfs /run
mkdir /run/etc-changes /run/etc-work
mount -t overlay overlay -o lowerdir=/etc,upperdir=/run/etc-changes,workdir=/run/etc-work /etc
exec dockerd --config-file="$1/daemon.json" --host="unix://$1/socket/docker.sock" \
    --data-root="$1/data" --exec-root="$1/exec" --pidfile="$1/docker.pid" \
    --storage-driver=vfs --exec-opt native.cgroupdriver=cgroupfs --cgroup-parent="/$2" \
    --bridge=none --userland-proxy=false \
    --iptables=false --ip6tables=false --ip-forward=false --ip-masq=false
SCRIPT
}

sample_docker() {
    env -u DOCKER_CONTEXT DOCKER_CONFIG="$playground/docker" DOCKER_HOST="unix://$playground/docker/socket/docker.sock" \
        docker "$@"
}

# Everything of the engine ends with this script, because its process namespace does.
start_sample_engine() {
    local tries
    # Process ids of the engine that ran before, which mean something else in a new namespace.
    rm -rf "$playground/docker/docker.pid" "$playground/docker/exec"
    TMPDIR=$playground/docker/tmp setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child --mount-proc \
        /bin/sh -c "$(engine_script)" sh "$playground/docker" "${playground##*/}" >>"$playground/docker/log" 2>&1 &
    engine=$!
    for ((tries = 0; tries < 300; tries++)); do
        kill -0 "$engine" 2>/dev/null || break
        if sample_docker version >/dev/null 2>&1; then return; fi
        sleep 0.1
    done
    stop_sample_engine
    return 1
}

stop_sample_engine() {
    [ -n "$engine" ] || return 0
    local first=''
    # The number of an engine that has ended by itself may be somebody else's by now.
    if jobs -rp | grep -x "$engine" >/dev/null; then
        # The first process of the namespace is reaped when all of the others have ended.
        { read -r first <"/proc/$engine/task/$engine/children"; } 2>/dev/null || true
        kill -KILL "${first:-$engine}" 2>/dev/null || true
    fi
    wait "$engine" 2>/dev/null || true
    engine=''
    remove_control_groups
}

# The containers' control groups outlive them: below one of the playground's name in each hierarchy that there is.
remove_control_groups() {
    local group tries
    for group in /sys/fs/cgroup/"${playground##*/}" /sys/fs/cgroup/*/"${playground##*/}"; do
        # Busy until the last of the processes is reaped.
        for ((tries = 0; tries < 50; tries++)); do
            [ -d "$group" ] || break
            find "$group" -depth -type d -exec rmdir {} + 2>/dev/null || sleep 0.1
        done
    done
}

import_image() {
    local root=$playground/docker/root
    mkdir -p "$root/bin"
    cp "$(command -v busybox)" "$root/bin/busybox"
    printf '%s\n' "$1:$2" >"$root/name"
    if [ "$1" = - ]; then set --; else set -- "$1:$2"; fi
    tar --create --directory "$root" . | sample_docker import - "$@"
}

# The engine reads the sizes that it shows when it starts. Real ones would have to be written to the disk in full.
import_images() {
    local repository tag bytes id layer
    while read -r repository tag bytes; do
        id=$(import_image "$repository" "$tag")
        layer=$(sample_docker image inspect --format '{{index .RootFS.Layers 0}}' "$id")
        printf '%s %s\n' "${layer#sha256:}" "$bytes"
    done < <(sample_images) >"$playground/docker/sizes"
    stop_sample_engine
    while read -r layer bytes; do
        if [ -f "$playground/docker/data/image/vfs/layerdb/sha256/$layer/size" ]; then
            printf %s "$bytes" >"$playground/docker/data/image/vfs/layerdb/sha256/$layer/size"
        fi
    done <"$playground/docker/sizes"
    start_sample_engine
}

# start_container NAME IMAGE
start_container() {
    # shellcheck disable=SC2016
    sample_docker run --detach --network none --name "$1" "$2" /bin/busybox sh -c \
        'trap exit TERM; while :; do /bin/busybox sleep 0.2; done'
}

make_engine_objects() {
    start_sample_engine || return 1
    import_images || return 1
    {
        start_container open-webui ghcr.io/open-webui/open-webui:main &&
            start_container n8n-postgres postgres:16-alpine &&
            sample_docker run --network none --name ollama-gpu-test ollama/ollama:0.12.6 /bin/busybox true
    } >/dev/null 2>>"$playground/docker/log" || { stop_sample_engine && return 1; }
    sample_docker context create "$docker_context" --docker "host=unix://$docker_socket_folder/docker.sock" >/dev/null 2>&1
    mkdir -p "$sample_home/.docker"
    mv "$playground/docker/contexts" "$sample_home/.docker/"
    # The program looks for the tool in these two folders; the second one is covered by the samples.
    if [ ! -x /usr/bin/docker ]; then cp "$(command -v docker)" "$sample_tools/docker"; fi
}

# stand_in_container NAME IMAGE STATUS
stand_in_container() {
    local id
    id=$(digest "container $1")
    put "$sample_home/.local/share/docker-stand-in/containers/$id" "id=$id
name=$1
image=$2
image_id=$(digest "$2")
status=$3"
}

make_stand_in_objects() {
    local repository tag bytes
    cp "$here/stand-ins/docker.sh" "$sample_tools/docker"
    chmod +x "$sample_tools/docker"
    while read -r repository tag bytes; do
        if [ "$repository" = - ]; then repository='<none>' tag='<none>'; fi
        put "$sample_home/.local/share/docker-stand-in/images/$(digest "$repository:$tag")" "repository=$repository
tag=$tag
size=$(numfmt --to=si --format=%.2f --suffix=B "$bytes")"
    done < <(sample_images)
    stand_in_container open-webui ghcr.io/open-webui/open-webui:main 'Up 3 hours'
    stand_in_container n8n-postgres postgres:16-alpine 'Up 2 days'
    stand_in_container ollama-gpu-test ollama/ollama:0.12.6 'Exited (0) 5 weeks ago'
}

make_sample_docker() {
    local obstacle
    obstacle=$(engine_obstacle)
    if [ -z "$obstacle" ]; then
        mkdir -p "$playground"/docker/{socket,tmp}
        echo '{}' >"$playground/docker/daemon.json"
        if make_engine_objects; then
            docker_description='a private engine with sample containers and images'
            return
        fi
        obstacle="no engine can run here: $(tail -n 1 "$playground/docker/log")"
        rm -rf "$playground/docker/socket"
    fi
    make_stand_in_objects
    docker_description="a stand-in, labelled as such ($obstacle)"
    if [ "$walls" = fence ]; then obstacle=$(tool_before_samples docker); else obstacle=''; fi
    if [ -n "$obstacle" ]; then docker_description="nothing: $obstacle comes before the stand-in and reaches no engine"; fi
}
