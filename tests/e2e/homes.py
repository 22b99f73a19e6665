"""What homes are furnished with."""

import json
import os
from pathlib import Path

# Ollama's own layout: one folder per registry, then the namespace, the model and the tag.
OLLAMA_LIBRARY = ".ollama/models/manifests/registry.ollama.ai/library"


def write(path: Path, content=b"", mode=0o644):
    """A file, with the folders above it."""
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content.encode() if isinstance(content, str) else content)
    path.chmod(mode)
    return path


def link(path: Path, target):
    path.parent.mkdir(parents=True, exist_ok=True)
    os.symlink(target, path)
    return path


def ollama_model(home: Path, model, tag, config=512, layers=(1000, 2000)):
    """A manifest; its size is the sum of the sizes that it states."""
    manifest = {"schemaVersion": 2, "config": {"size": config}, "layers": [{"size": size} for size in layers]}
    return write(home / OLLAMA_LIBRARY / model / tag, json.dumps(manifest))


def hub_model(home: Path, organisation, name, weights):
    """A HuggingFace hub folder as its client leaves it: the blob once, and a snapshot that links to it."""
    folder = home / f".cache/huggingface/hub/models--{organisation}--{name}"
    write(folder / "blobs/0a1b2c", weights)
    write(folder / "refs/main", "c0ffee")
    link(folder / "snapshots/c0ffee/model.safetensors", "../../blobs/0a1b2c")
    return folder


def gguf_model(home: Path, path, weights):
    """A model file of LM Studio's, below its newer folder."""
    return write(home / ".lmstudio/models" / path, weights)


def app_bundle(folder: Path, name):
    """An application bundle of that name in an applications folder."""
    write(folder / f"{name}.app/Contents/Info.plist", "<plist/>")
    write(folder / f"{name}.app/Contents/MacOS/{name}", "#!/bin/sh\n", 0o755)
    return folder / f"{name}.app"


def big_tree(folder: Path, folders=20, files=200):
    """That many folders with that many small files each."""
    for number in range(folders):
        for index in range(files):
            write(folder / f"{number:04}/{index:04}.jsonl", "{}")
